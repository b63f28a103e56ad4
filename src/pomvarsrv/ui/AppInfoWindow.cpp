#include "pomvarsrv/ui/AppInfoWindow.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>

namespace pomvar::srv {

namespace {

QString yesNo(bool value)
{
    return value ? AppInfoWindow::tr("Yes") : AppInfoWindow::tr("No");
}

QString listOrNone(const QStringList& items)
{
    //: No categories.
    return items.isEmpty() ? AppInfoWindow::tr("None") : items.join(QStringLiteral(", "));
}

} // namespace

AppInfoWindow::AppInfoWindow(QWidget* parent)
    : ServerWindow(QStringLiteral("appInfoWindow"), parent)
    , m_details(new QWidget)
    , m_missing(textLabel(QStringLiteral("appMissing")))
    , m_icon(iconLabel(QStringLiteral("appIcon")))
    , m_name(headingLabel(QStringLiteral("appName")))
    , m_genericName(textLabel(QStringLiteral("appGenericName")))
    , m_comment(textLabel(QStringLiteral("appComment")))
{
    auto* heading = new QHBoxLayout;
    auto* names = new QVBoxLayout;
    names->addWidget(m_name);
    names->addWidget(m_genericName);
    names->addWidget(m_comment);
    heading->addWidget(m_icon, 0, Qt::AlignTop);
    heading->addLayout(names, 1);

    auto* form = new QFormLayout;
    m_id = addRow(form, tr("Desktop file ID:"), QStringLiteral("appId"), true);
    m_path = addRow(form, tr("File:"), QStringLiteral("appPath"), true);
    m_openFolder = new QPushButton(tr("Open Containing &Folder"));
    m_openFolder->setObjectName(QStringLiteral("openContainingFolder"));
    m_openFolder->setAccessibleName(m_openFolder->text().remove(u'&'));
    m_openFolder->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    form->addRow(QString(), m_openFolder);
    m_commandLine = addRow(form, tr("Command:"), QStringLiteral("appCommand"), true);
    //: The menu categories the app's desktop entry lists.
    m_categories = addRow(form, tr("Categories:"), QStringLiteral("appCategories"));
    m_terminal = addRow(form, tr("Runs in a terminal:"), QStringLiteral("appTerminal"));
    m_pinned = addRow(form, tr("Pinned:"), QStringLiteral("appPinned"));
    //: The user's own categories that hold the app.
    m_pomvarCategories =
        addRow(form, tr("Pomvar categories:"), QStringLiteral("appPomvarCategories"));
    //: Leaves the app out of Pomvar's menus and search; other menus of the desktop keep it.
    m_hidden = new QCheckBox(tr("&Hidden"));
    m_hidden->setObjectName(QStringLiteral("appHidden"));
    m_hidden->setAccessibleName(m_hidden->text().remove(u'&'));
    form->addRow(QString(), m_hidden);

    auto* details = new QVBoxLayout(m_details);
    details->setContentsMargins({});
    details->addLayout(heading);
    details->addSpacing(8);
    details->addLayout(form);
    body()->addWidget(m_details);
    body()->addWidget(m_missing);

    m_edit = addButton(tr("&Edit…"), QStringLiteral("edit"));
    m_organize = addButton(tr("O&rganize…"), QStringLiteral("organize"));
    m_open = addButton(tr("&Open"), QStringLiteral("open"));
    m_close = addButton(tr("&Close"), QStringLiteral("close"));
    connect(m_openFolder, &QPushButton::clicked, this, [this] {
        QDesktopServices::openUrl(QUrl::fromLocalFile(m_folder));
    });
    connect(m_open, &QPushButton::clicked, this, [this] {
        Q_EMIT launchRequested(m_appkey);
        close();
    });
    connect(m_edit, &QPushButton::clicked, this, [this] { Q_EMIT editRequested(m_appkey); });
    connect(m_hidden, &QCheckBox::toggled, this, [this](bool hidden) {
        Q_EMIT hiddenChanged(m_appkey, hidden);
    });
    connect(m_organize, &QPushButton::clicked, this, [this] {
        Q_EMIT organizeRequested(m_appkey);
        close();
    });
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);
}

QLabel* AppInfoWindow::addRow(QFormLayout* form,
                              const QString& caption,
                              const QString& objectName,
                              bool selectable)
{
    QLabel* value = textLabel(objectName, selectable);
    form->addRow(caption, value);
    return value;
}

void AppInfoWindow::showApp(const AppInfo& info)
{
    m_appkey = info.appkey;
    const bool found = info.details.has_value();
    m_details->setVisible(found);
    m_missing->setVisible(!found);
    m_open->setVisible(found);
    m_organize->setVisible(found);
    m_edit->setVisible(found);
    if (!found) {
        setTitle(tr("App Details"));
        m_missing->setText(tr("No installed app has the key \u201c%1\u201d.").arg(m_appkey));
        m_close->setFocus();
        return;
    }
    const AppDetails& details = *info.details;
    //: The app info window's title; %1: the app's name.
    setTitle(tr("%1 Details").arg(details.name));
    setIcon(m_icon, info.icon);
    //: The app's icon in its info window, which names the app beside it.
    m_icon->setAccessibleName(tr("Icon"));
    m_name->setText(details.name);
    m_genericName->setText(details.genericName);
    // The name once: a generic name that only repeats it is left out.
    m_genericName->setVisible(!details.genericName.isEmpty() &&
                              details.genericName.compare(details.name, Qt::CaseInsensitive) != 0);
    m_comment->setText(details.comment);
    m_comment->setVisible(!details.comment.isEmpty());
    m_id->setText(details.id);
    m_path->setText(details.path);
    m_folder = QFileInfo(details.path).absolutePath();
    m_commandLine->setText(details.commandLine);
    m_categories->setText(listOrNone(details.categories));
    m_terminal->setText(yesNo(details.terminal));
    m_pinned->setText(yesNo(info.pinned));
    m_pomvarCategories->setText(listOrNone(info.categories));
    const QSignalBlocker quiet(m_hidden);
    m_hidden->setChecked(info.hidden);
    m_open->setFocus();
}

} // namespace pomvar::srv
