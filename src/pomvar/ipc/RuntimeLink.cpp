#include "ipc/RuntimeLink.h"

#include "ipc/IpcLog.h"
#include "ipc/JsonDocument.h"
#include "ipc/RecordReader.h"
#include "ipc/RuntimeConnection.h"
#include "log/ProcessEnd.h"
#include "wire/Frame.h"
#include "wire/Protocol.h"
#include "wire/Utf8.h"

#include <semaphore>
#include <unistd.h>

namespace pomvar {

namespace {

// One awaited exchange: the queue fills `reply` and releases `done`; the caller waits.
struct Exchange
{
    std::counting_semaphore<> done{ 0 };
    std::string reply;
};

} // namespace

RuntimeLink::RuntimeLink(PomvarRT srv)
    : m_srv(std::move(srv))
{
    if (m_srv.port < 0 || m_srv.port > 65535)
        fatalStop(concat("Pomvar: PomvarViewModel: invalid port ", m_srv.port));
    m_connection = std::make_unique<RuntimeConnection>(
        m_srv.address, static_cast<std::uint16_t>(m_srv.port), "Pomvar IPC Queue");
    m_connection->setStateHandler([](RuntimeConnection::State state, std::error_code error) {
        using State = RuntimeConnection::State;
        switch (state) {
            case State::waiting:
                if (error == std::errc::connection_refused) {
                    printLine(lcIpc(), concat("Pomvar: PomvarViewModel: Error: ", error.message()));
                    ProcessEnd::cleanUp();
                    ::_exit(1);
                }
                fatalStop(concat("Pomvar: PomvarViewModel: Error: ", error.message()));
            case State::failed:
                trace(lcIpc(), "PomvarViewModel: Failed to start IPC: ", error.message());
                break;
            case State::ready:
                trace(lcIpc(), "PomvarViewModel: IPC ready");
                break;
            default:
                break;
        }
    });
    trace(lcIpc(), "PomvarViewModel: Starting IPC...");
    m_connection->start();
}

RuntimeLink::~RuntimeLink() = default;

void RuntimeLink::sendMessage(std::string_view message)
{
    auto prefix = wire::requestPrefix(message.size());
    if (!prefix)
        fatalStop(concat("PomvarViewModel.sendMessage(): a request of ",
                         message.size(),
                         " bytes does not fit a frame"));
    trace(lcIpc(), "PomvarViewModel.sendMessage(): Sending ", message.size(), " bytes");
    std::vector<RuntimeConnection::Chunk> batch;
    batch.push_back({ std::move(*prefix), [](std::error_code error) {
                         if (error)
                             printLine(lcIpc(),
                                       concat("Pomvar: PomvarViewModel.sendMessage(): Error "
                                              "sending message size: ",
                                              error.message()));
                     } });
    batch.push_back({ std::string(message), [](std::error_code error) {
                         if (error)
                             printLine(lcIpc(),
                                       concat("Pomvar: PomvarViewModel.sendMessage(): Error "
                                              "sending message body: ",
                                              error.message()));
                     } });
    m_connection->send(std::move(batch));
}

std::optional<std::string> RuntimeLink::sendMessageAndAwaitResponseData(std::string_view message)
{
    sendMessage(message);
    auto exchange = std::make_shared<Exchange>();
    RuntimeConnection* connection = m_connection.get();
    connection->receive(
        wire::kReplyPrefixSize,
        [exchange, connection](std::optional<std::string> prefix, std::error_code error) {
            if (error) {
                printLine(lcIpc(),
                          concat("Pomvar: PomvarViewModel.sendMessageAndAwaitResponseData(): Error "
                                 "receiving response: ",
                                 error.message()));
                exchange->done.release();
                return;
            }
            if (!prefix || prefix->empty()) {
                exchange->done.release();
                return;
            }
            const std::uint32_t length = wire::decodeLength(*prefix, wire::kReplyPrefixSize);
            if (length == 0)
                return; // the caller stays blocked: a server must never send an empty reply
            connection->receive(length,
                                [exchange](std::optional<std::string> body, std::error_code) {
                                    if (!body || body->empty())
                                        return;
                                    if (wire::isValidUtf8(*body))
                                        exchange->reply = std::move(*body);
                                    exchange->done.release();
                                });
        });
    exchange->done.acquire();
    if constexpr (kTracing) // not even counted otherwise: a reply can run to megabytes
        trace(lcIpc(),
              "PomvarViewModel.sendMessageAndAwaitResponseData(): Response received: ",
              wire::utf8Length(exchange->reply),
              " bytes");
    if (exchange->reply.empty()) {
        trace(lcIpc(), "No data received");
        return std::nullopt;
    }
    return std::move(exchange->reply);
}

std::optional<JsonDocument> RuntimeLink::sendMessageAndAwaitResponse(std::string_view message)
{
    auto data = sendMessageAndAwaitResponseData(message);
    if (!data)
        return std::nullopt;
    std::string error;
    auto value = JsonDocument::parse(*data, &error);
    m_connection->recycle(std::move(*data));
    if (!value)
        trace(
            lcIpc(),
            "⚠️ PomvarViewModel.sendMessageAndAwaitResponse(): Error decoding JSON response: ",
            error);
    return value;
}

std::string RuntimeLink::awaitRecord(std::string_view operation, std::string_view id)
{
    trace(lcIpc(), "PomvarViewModel.", operation, "(): Sending message '", id, "'");
    auto reply = sendMessageAndAwaitResponseData(request::plain(id));
    if (!reply)
        fatalStop(concat("PomvarViewModel.", operation, "(): no reply to '", id, "'"));
    return std::move(*reply);
}

AppStatus RuntimeLink::getAppStatus()
{
    return readAppStatus(awaitRecord("getAppStatus", request::getAppStatus));
}

UserPrefs RuntimeLink::getUserPrefs()
{
    return readUserPrefs(awaitRecord("getUserPrefs", request::getUserPrefs));
}

MenuDataStatus RuntimeLink::getMenuDataModifiedStatus()
{
    return readMenuDataStatus(
        awaitRecord("getMenuDataModifiedStatus", request::getMenuDataModifiedStatus));
}

} // namespace pomvar
