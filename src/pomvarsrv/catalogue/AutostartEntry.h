#pragma once

#include <QString>

namespace pomvar::srv {

// The XDG autostart entry that starts Pomvar at login, $XDG_CONFIG_HOME/autostart/pomvar.desktop,
// for the Settings pane's "Start Pomvar at login". It is read as the desktop reads it: present,
// and neither hidden nor turned off in GNOME's key.
class AutostartEntry
{
public:
    explicit AutostartEntry(QString path = defaultPath());
    static QString defaultPath();
    // The installed front end beside this server: <prefix>/bin/pomvar for
    // <prefix>/libexec/pomvar/pomvarsrv.
    static QString installedFrontEnd();

    const QString& path() const { return m_path; }
    bool isEnabled() const;
    // Writes the entry (GKeyFile, then AtomicFile) to run `program`, or removes it. A program
    // that is not the installed front end (FrontEndProgram) is refused, and `why` tells why.
    bool setEnabled(bool enabled,
                    const QString& program = installedFrontEnd(),
                    QString* why = nullptr) const;

private:
    QString m_path;
};

} // namespace pomvar::srv
