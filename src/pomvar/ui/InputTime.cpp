#include "ui/InputTime.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputEvent>

namespace pomvar {

namespace {

unsigned long lastTime = 0;

class InputWatch : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
            case QEvent::KeyPress:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
                if (const auto time = static_cast<QInputEvent*>(event)->timestamp())
                    lastTime = time;
                break;
            default:
                break;
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void InputTime::watch()
{
    static const bool watching = [] {
        qApp->installEventFilter(new InputWatch(qApp));
        return true;
    }();
    Q_UNUSED(watching);
}

std::optional<std::string> InputTime::activationToken()
{
    return activationToken(lastTime);
}

std::optional<std::string> InputTime::activationToken(unsigned long time)
{
    if (time == 0 || QGuiApplication::platformName() != QLatin1String("xcb"))
        return std::nullopt;
    return "pomvar_TIME" + std::to_string(time);
}

} // namespace pomvar
