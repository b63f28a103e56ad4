#include "pomvarsrv/ui/CategoryInfoWindow.h"

#include <QBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>

namespace pomvar::srv {

namespace {

constexpr int kAppKey = Qt::UserRole;

QString count(std::size_t apps)
{
    if (apps == 0)
        return CategoryInfoWindow::tr("No apps");
    return CategoryInfoWindow::tr("%n app(s)", nullptr, int(apps));
}

} // namespace

CategoryInfoWindow::CategoryInfoWindow(QWidget* parent)
    : ServerWindow(QStringLiteral("categoryInfoWindow"), parent)
    , m_name(headingLabel(QStringLiteral("categoryName")))
    , m_count(textLabel(QStringLiteral("categoryCount")))
    , m_apps(new QListWidget)
{
    m_apps->setObjectName(QStringLiteral("categoryApps"));
    m_apps->setAccessibleName(tr("Apps"));
    m_apps->setIconSize(QSize(24, 24));
    m_apps->setFixedSize(360, 200);
    QLabel* icon = iconLabel(QStringLiteral("categoryIcon"));
    icon->setPixmap(style()->standardIcon(QStyle::SP_DirIcon).pixmap(48));
    auto* heading = new QHBoxLayout;
    auto* lines = new QVBoxLayout;
    lines->addWidget(m_name);
    lines->addWidget(m_count);
    lines->addStretch();
    heading->addWidget(icon);
    heading->addLayout(lines, 1);
    body()->addLayout(heading);
    body()->addWidget(m_apps);
    m_organize = addButton(tr("O&rganize…"), QStringLiteral("organize"));
    m_close = addButton(tr("&Close"), QStringLiteral("close"));
    m_apps->installEventFilter(this);
    connect(m_apps, &QListWidget::itemDoubleClicked, this, &CategoryInfoWindow::showAppInfo);
    connect(m_organize, &QPushButton::clicked, this, [this] {
        Q_EMIT organizeRequested(m_category);
        close();
    });
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);
}

void CategoryInfoWindow::showAppInfo(const QListWidgetItem* item)
{
    if (item)
        Q_EMIT appInfoRequested(item->data(kAppKey).toString());
}

bool CategoryInfoWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_apps && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            showAppInfo(m_apps->currentItem());
            return true;
        }
    }
    return ServerWindow::eventFilter(watched, event);
}

void CategoryInfoWindow::showCategory(const CategoryInfo& info)
{
    m_category = info.name;
    m_apps->clear();
    const bool found = info.apps.has_value();
    m_apps->setVisible(found);
    m_organize->setVisible(found);
    if (!found) {
        setTitle(tr("Category Info"));
        m_name->setText(info.name);
        m_count->setText(tr("There is no category named \u201c%1\u201d.").arg(info.name));
        m_close->setFocus();
        return;
    }
    setTitle(info.name);
    m_name->setText(info.name);
    m_count->setText(count(info.apps->size()));
    for (const auto& app : *info.apps) {
        auto* item = new QListWidgetItem(QIcon(app.icon), app.name, m_apps);
        item->setData(kAppKey, app.appkey);
    }
    if (info.apps->empty())
        m_organize->setFocus();
    else
        m_apps->setFocus();
}

} // namespace pomvar::srv
