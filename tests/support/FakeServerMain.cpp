// pomvar-fakesrv: the fake runtime server as a program, to stand in for pomvarsrv in the
// install layout. Controlled through the environment:
//   POMVAR_FAKE_DIR       folder for argv.json (its arguments), requests.jsonl (one JSON string
//                         per request, exact text) and an optional script.json
//   POMVAR_FAKE_PORT      port to listen on (default 50818)
//   POMVAR_FAKE_LIFETIME  seconds before it gives up on its own (default 120)
// script.json: {"listenDelayMs": n, "defaults": {id: reply}, "replies": {id: [reply, ...]}},
// each reply as FakeRuntimeServer::Reply::fromScript reads it. It exits on "quit".
#include "FakeRuntimeServer.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <future>
#include <iostream>
#include <thread>

using pomvar::test::FakeRuntimeServer;

namespace {

std::string envOr(const char* name, const std::string& fallback)
{
    const char* value = std::getenv(name);
    return value && *value ? value : fallback;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string dir = envOr("POMVAR_FAKE_DIR", ".");
    const auto port = static_cast<std::uint16_t>(std::stoi(envOr("POMVAR_FAKE_PORT", "50818")));
    const int lifetime = std::stoi(envOr("POMVAR_FAKE_LIFETIME", "120"));

    nlohmann::json args = nlohmann::json::array();
    for (int i = 1; i < argc; ++i)
        args.push_back(argv[i]);
    std::ofstream(dir + "/argv.json") << args.dump() << '\n';

    nlohmann::json script = nlohmann::json::object();
    if (std::ifstream in(dir + "/script.json"); in)
        script = nlohmann::json::parse(in, nullptr, false);
    if (script.is_discarded())
        script = nlohmann::json::object();

    FakeRuntimeServer server(port);
    // value() returns a copy: keep it alive for the whole loop.
    const nlohmann::json defaults = script.value("defaults", nlohmann::json::object());
    for (const auto& [id, reply] : defaults.items())
        server.setDefaultReply(id, FakeRuntimeServer::Reply::fromScript(reply));
    const nlohmann::json queued = script.value("replies", nlohmann::json::object());
    for (const auto& [id, replies] : queued.items()) {
        for (const auto& reply : replies)
            server.queueReply(id, FakeRuntimeServer::Reply::fromScript(reply));
    }

    std::promise<void> quit;
    auto quitRequested = quit.get_future();
    std::ofstream log(dir + "/requests.jsonl", std::ios::app);
    std::once_flag quitOnce;
    server.setRequestObserver([&](const std::string& body) {
        log << nlohmann::json(body).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)
            << std::endl;
        if (FakeRuntimeServer::requestId(body) == "quit")
            std::call_once(quitOnce, [&] { quit.set_value(); });
    });

    std::this_thread::sleep_for(std::chrono::milliseconds(script.value("listenDelayMs", 0)));
    if (!server.listen()) {
        std::cerr << "pomvar-fakesrv: port " << port << " is already in use\n";
        return 0;
    }
    quitRequested.wait_for(std::chrono::seconds(lifetime));
    return 0;
}
