#include "pomvarsrv/app/StartRefusal.h"

#include "desktop/DesktopNotification.h"
#include "i18n/Translations.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace pomvar::srv {

namespace {

constexpr int kNotificationTimeoutMs = 2000;

QString body(const PortHolder& holder, quint16 port)
{
    if (holder.kind == PortHolder::Kind::otherUsersPomvar)
        return QCoreApplication::translate("pomvar::srv::StartRefusal",
                                           "Port %1 is in use by another user's Pomvar on this "
                                           "computer. One user at a time can run Pomvar on a "
                                           "computer.")
            .arg(port);
    if (holder.program.empty())
        return QCoreApplication::translate("pomvar::srv::StartRefusal",
                                           "Port %1 is in use by another program.")
            .arg(port);
    return QCoreApplication::translate("pomvar::srv::StartRefusal",
                                       "Port %1 is in use by another program (%2).")
        .arg(port)
        .arg(QString::fromStdString(holder.program));
}

} // namespace

int StartRefusal::refuse(const PortHolder& holder,
                         quint16 port,
                         pid_t frontEnd,
                         int argc,
                         char** argv)
{
    std::fprintf(stderr, "pomvarsrv: %s\n", holder.message(port).c_str());
    if (frontEnd > 0)
        ::kill(frontEnd, SIGTERM);
    QCoreApplication application(argc, argv);
    Translations::install(Translations::folderFor(QCoreApplication::applicationDirPath(), 2));
    DesktopNotification(
        QCoreApplication::translate("pomvar::srv::StartRefusal", "Pomvar cannot start"),
        body(holder, port))
        .postAndWait(kNotificationTimeoutMs);
    return kExitStatus;
}

} // namespace pomvar::srv
