#include "ui/MenuSelectorButton.h"

#include "model/UserDefaults.h"
#include "ui/CheckedButtonStyle.h"
#include "ui/FocusRing.h"

#include <QKeyEvent>
#include <QPainter>

namespace pomvar {

VStackButtonLabel MenuSelectorButton::labelFor(Pomvar menu)
{
    switch (menu) {
        case Pomvar::MyApps:
            //: The selector of the pinned apps and categories (a star), 56 pixels wide at 12
            //: pixels: keep it short, as the others.
            return { tr("My Apps"), QStringLiteral("myapps") };
        case Pomvar::Recent:
            //: The selector of the recently launched apps.
            return { tr("Recent"), QStringLiteral("recent") };
        case Pomvar::AllApps:
            break;
    }
    return { tr("All Apps"), QStringLiteral("allapps") };
}

MenuSelectorButton::MenuSelectorButton(Pomvar menu, QWidget* parent)
    : QAbstractButton(parent)
    , m_menu(menu)
    , m_label(labelFor(menu))
{
    setCheckable(true);
    setAutoExclusive(false);
    setText(m_label.title());
    setAccessibleName(m_label.title());
    // Reached by Tab (a click leaves the focus where it is) and pressed by Space or Enter.
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(CheckedButtonStyle::size());
    connect(this, &QAbstractButton::clicked, this, [this] {
        // A click never unchecks the selected menu's button.
        setChecked(true);
        UserDefaults::setLastMenu(static_cast<long long>(m_menu));
        Q_EMIT menuSelected(m_menu);
    });
}

QSize MenuSelectorButton::sizeHint() const
{
    return CheckedButtonStyle::size();
}

void MenuSelectorButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const CheckedButtonStyle style(isChecked());
    style.paintBackground(painter, rect(), isDown(), palette());
    m_label.paint(painter, CheckedButtonStyle::labelRect(rect()), palette());
    if (hasFocus())
        FocusRing::paint(painter, rect(), palette(), CheckedButtonStyle::cornerRadius);
}

void MenuSelectorButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace pomvar
