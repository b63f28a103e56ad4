#pragma once

#include "InProcessServer.h"
#include "TestDesktop.h"

#include <QString>

#include <utility>
#include <vector>

class QWidget;

namespace pomvar::test {

// What the screenshots of the server's windows share: a runtime server run in-process over a
// throw-away desktop whose entries use icons of the system theme, and the grabbing of its
// windows into the documentation's folder. The program is run under Xvfb with that folder, under
// a dark palette with SCREENSHOTS_PALETTE=dark (ScreenshotPalette.h).
class ScreenshotServer
{
public:
    // Desktop entry ids and their lines, "Exec=true %U" added to each.
    using Entries = std::vector<std::pair<const char*, const char*>>;

    // Writes the entries and the store (none when empty), links the system's icon themes in and
    // points this process at the desktop. Made after the QApplication, as its windows go first.
    ScreenshotServer(const char* tool, const Entries& entries, const char* store = "");

    // The folder given on the command line; empty (usage said) without one.
    QString outputFolder(int argc, char* argv[]) const;
    // Starts the server and waits for the icons rendered in the background.
    bool start(const srv::ServerOptions& options = {});
    InProcessServer& server() { return m_server; }
    // Grabs the shown window into <folder>/<file>; false, and says so, when it cannot.
    bool save(QWidget* window, const QString& file) const;

private:
    const char* m_tool;
    TestDesktop m_desktop;
    InProcessServer m_server;
    QString m_suffix; // "-dark" under the dark palette
    mutable QString m_folder;
};

} // namespace pomvar::test
