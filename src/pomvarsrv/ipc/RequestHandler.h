#pragma once

#include "pomvarsrv/ipc/Request.h"

#include <QString>

#include <optional>
#include <string>

namespace pomvar::srv {

class ServerActions;
class ServerModel;

// Carries out one request and gives its reply: a JSON text exactly for the requests the front
// end awaits, nothing for the others. The store's changes go to the model; launching, the
// windows, quitting and the update status to the server's actions.
class RequestHandler
{
public:
    RequestHandler(ServerModel& model, ServerActions& actions);

    std::optional<std::string> handle(const Request& request);

private:
    std::string reply(const Request& request);
    void act(const Request& request);

    ServerModel& m_model;
    ServerActions& m_actions;
};

} // namespace pomvar::srv
