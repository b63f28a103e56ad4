#include "pomvarsrv/app/ServerOptions.h"

#include "pomvarsrv/app/ServerLog.h"
#include "wire/RuntimeEndpoint.h"

namespace pomvar::srv {

ServerOptions ServerOptions::parse(const QStringList& arguments)
{
    ServerOptions options;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == QStringLiteral("--clear-recent"))
            options.clearRecent = true;
        else if (argument == QStringLiteral("--refresh"))
            options.refresh = true;
        else if (argument == QStringLiteral("--welcome"))
            options.welcome = true;
        else
            qCWarning(lcApp) << "ignoring the unknown argument" << argument;
    }
    return options;
}

quint16 ServerOptions::port()
{
    bool ok = false;
    const int port = qEnvironmentVariableIntValue("POMVARSRV_PORT", &ok);
    if (ok && port > 0 && port <= 65535)
        return static_cast<quint16>(port);
    return wire::kRuntimePort;
}

pid_t ServerOptions::takeFrontEnd()
{
    bool ok = false;
    const int pid = qEnvironmentVariableIntValue(wire::kFrontEndPidVariable, &ok);
    qunsetenv(wire::kFrontEndPidVariable);
    return ok && pid > 0 ? pid : 0;
}

} // namespace pomvar::srv
