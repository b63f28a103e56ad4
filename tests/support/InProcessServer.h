#pragma once

#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/app/ServerApp.h"

#include <nlohmann/json.hpp>

#include <QApplication>
#include <QWidget>

#include <memory>
#include <string_view>
#include <vector>

namespace pomvar::test {

// The real runtime server (ServerApp) run in this process on a free port of its own, in a
// throw-away desktop: its windows are driven as widgets while requests reach it over TCP, served
// by this thread's event loop.
class InProcessServer
{
public:
    // Points this process's HOME, XDG folders and PATH at `desktop`: call it before anything
    // reads them.
    static void useDesktop(const TestDesktop& desktop);

    // Opens the port and starts the server; false when the port could not be taken.
    bool start(const srv::ServerOptions& options = {});
    srv::ServerApp& app() { return *m_app; }
    quint16 port() const { return m_port; }

    // Sends a request whose reply nobody reads, over a connection kept open: the server serves
    // only a connection whose process it has found holding it.
    bool send(std::string_view body) const;
    // An awaited request, answered while this thread's event loop serves it; null on failure.
    nlohmann::json ask(std::string_view body) const;

    // The visible top-level widget of that object name, once it is shown; null after 5 s.
    static QWidget* waitForWindow(const QString& objectName);
    template <typename T>
    static T* waitForWindow(const QString& objectName)
    {
        return qobject_cast<T*>(waitForWindow(objectName));
    }

private:
    quint16 m_port = 0;
    mutable std::vector<std::unique_ptr<SrvClient>> m_senders;
    std::unique_ptr<srv::ServerApp> m_app;
};

} // namespace pomvar::test
