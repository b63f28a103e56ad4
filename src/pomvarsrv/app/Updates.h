#pragma once

#include "pomvarsrv/app/FrontEndExit.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <string_view>

namespace pomvar::srv {

// Updates the Linux way: the package manager installs newer programs while Pomvar keeps running
// the old ones. The version file installed beside the server tells which version the installed
// programs are; it is read whenever the front end asks and whenever the install folder changes.
// Once the user asks to restart into the newer programs, the front end quits at its next update
// poll, and `restartDue` tells the server to hand over to the installed front end.
class Updates : public QObject
{
    Q_OBJECT

public:
    // `installDir`: the running server's folder; empty: no update is ever offered.
    Updates(QString installDir, QString running, QObject* parent = nullptr);

    const QString& running() const { return m_running; }
    // The version of the programs installed now; empty when there is no version file.
    QString installed() const;
    bool isNewerInstalled() const;
    // The get-app-update-status answer: noUpdate, updateAvailable or readyToInstall.
    std::string_view status() const;
    bool isConfirmed() const { return m_confirmed; }

    // The user asks to restart into the installed programs; nothing when none are newer.
    void confirm();
    // The front end that started this server, waited for before the restart.
    void setFrontEnd(pid_t pid) { m_frontEnd.setStartedBy(pid); }
    // Starts the installed front end, detached; false, and `why`, when it is not the installed
    // Pomvar (FrontEndProgram) or could not be started.
    bool startInstalledFrontEnd(QString* why = nullptr) const;
    QString frontEndProgram() const;

Q_SIGNALS:
    // The install folder changed, and with it the installed version.
    void installedChanged(const QString& version);
    // The old front end is gone after the user's confirmation: time to restart.
    void restartDue();

private:
    QString versionFile() const;
    void watch();
    void noticeChange();

    QString m_dir;
    QString m_running;
    QString m_seen; // the installed version last noticed
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
    FrontEndExit m_frontEnd;
    bool m_confirmed = false;
};

} // namespace pomvar::srv
