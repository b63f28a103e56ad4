#pragma once

#include "ipc/PomvarRT.h"
#include "wire/Records.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pomvar {

class JsonDocument;
class RuntimeConnection;

// The view model's one connection to the runtime server: framed requests out, framed replies
// in, matched by order alone. Awaited requests block the calling (main) thread until the
// reply has been read on the connection's queue.
class RuntimeLink
{
public:
    // Opens the connection at once; sends made before it is up are written once it is.
    explicit RuntimeLink(PomvarRT srv = {});
    ~RuntimeLink();

    // Writes one request frame and returns without waiting.
    void sendMessage(std::string_view message);
    // Writes one request frame and blocks until one reply frame has been read.
    std::optional<std::string> sendMessageAndAwaitResponseData(std::string_view message);
    // The reply parsed (include ipc/JsonDocument.h to call it); nothing when absent or not JSON.
    std::optional<JsonDocument> sendMessageAndAwaitResponse(std::string_view message);

    // Strictly decoded records; a missing or malformed reply stops the process.
    AppStatus getAppStatus();
    UserPrefs getUserPrefs();
    MenuDataStatus getMenuDataModifiedStatus();

private:
    std::string awaitRecord(std::string_view operation, std::string_view id);

    PomvarRT m_srv;
    std::unique_ptr<RuntimeConnection> m_connection;
};

} // namespace pomvar
