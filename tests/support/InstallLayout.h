#pragma once

#include "ChildProcess.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace pomvar::test {

// A copy of the install layout in a temporary folder: bin/pomvar (the real program, copied so
// that it finds its server beside it) and libexec/pomvar/pomvarsrv (the fake runtime server),
// with a home folder of its own and tools/ first on the PATH. Fake servers started from it are
// killed when it goes away. Paths are relative to the layout's folder.
class InstallLayout
{
public:
    InstallLayout();
    ~InstallLayout();

    bool isValid() const { return m_ready; }
    // Runs pomvar to its end; with `terminal`, a pseudo-terminal from script(1) is its output.
    ChildOutcome run(const QStringList& arguments, bool terminal = false);
    // Starts pomvar and waits until it is connected to the runtime server, or a minute passed.
    // A session of its own has environment() with changes.
    std::unique_ptr<QProcess> start(const QStringList& arguments = {},
                                    const std::optional<QProcessEnvironment>& session = {});
    // Its home, runtime folder, offscreen platform, the fake's folder and tools/ on the PATH.
    QProcessEnvironment environment() const;
    static bool isConnectedToServer(const QProcess& process);

    // The content, or "<missing>".
    QByteArray read(const QString& path) const;
    bool write(const QString& path, const QByteArray& content, bool executable = false);

private:
    QTemporaryDir m_dir;
    bool m_ready = false;
};

} // namespace pomvar::test
