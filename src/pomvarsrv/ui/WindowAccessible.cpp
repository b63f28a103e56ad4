#include "pomvarsrv/ui/WindowAccessible.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace pomvar::srv {

namespace {

QAccessibleInterface* windowInterface(const QString& className, QObject* object)
{
    const bool ours =
        className == u"pomvar::srv::OrganizerWindow" || className == u"pomvar::srv::SearchWindow";
    if (!ours || !object || !object->isWidgetType())
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Window);
}

} // namespace

void WindowAccessible::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(windowInterface);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace pomvar::srv
