#include "pomvarsrv/ui/ServerWindow.h"

#include "pomvarsrv/ui/WindowPresenter.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace pomvar::srv {

namespace {

constexpr int kIconSize = 48;
// Lines of text wrap within these widths.
constexpr int kTextWidth = 340;
constexpr int kMaxTextWidth = 440;

} // namespace

ServerWindow::ServerWindow(const QString& objectName, QWidget* parent)
    : QDialog(parent)
    , m_body(new QVBoxLayout)
    , m_buttons(new QDialogButtonBox(Qt::Horizontal))
{
    setObjectName(objectName);
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(m_body);
    layout->addSpacing(8);
    layout->addWidget(m_buttons);
}

void ServerWindow::setTitle(const QString& title)
{
    setWindowTitle(title);
    setAccessibleName(title);
}

QPushButton* ServerWindow::addButton(const QString& label, const QString& objectName)
{
    auto* button = m_buttons->addButton(label, QDialogButtonBox::ActionRole);
    button->setObjectName(objectName);
    button->setAccessibleName(QString(label).remove(u'&'));
    return button;
}

QLabel* ServerWindow::textLabel(const QString& objectName, bool selectable)
{
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setWordWrap(true);
    label->setMinimumWidth(kTextWidth);
    label->setMaximumWidth(kMaxTextWidth);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(selectable
                                       ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                       : Qt::TextSelectableByMouse);
    if (selectable)
        label->setFocusPolicy(Qt::StrongFocus); // reached by Tab, not only by a click
    return label;
}

QLabel* ServerWindow::headingLabel(const QString& objectName)
{
    QLabel* label = textLabel(objectName);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);
    label->setFont(font);
    return label;
}

QLabel* ServerWindow::iconLabel(const QString& objectName)
{
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setFixedSize(kIconSize, kIconSize);
    label->setAlignment(Qt::AlignTop);
    return label;
}

QLabel* ServerWindow::pomvarIconLabel(const QString& objectName)
{
    QLabel* label = iconLabel(objectName);
    setIcon(label, QStringLiteral(":/pomvarsrv/pomvar.svg"));
    label->setAccessibleName(QStringLiteral("Pomvar"));
    return label;
}

void ServerWindow::setIcon(QLabel* label, const QString& file)
{
    QPixmap pixmap = QIcon(file).pixmap(kIconSize, kIconSize);
    if (pixmap.isNull())
        pixmap = QApplication::style()->standardIcon(QStyle::SP_DesktopIcon).pixmap(kIconSize);
    label->setPixmap(pixmap);
}

void ServerWindow::present()
{
    if (!isVisible())
        adjustSize();
    WindowPresenter::present(*this);
}

} // namespace pomvar::srv
