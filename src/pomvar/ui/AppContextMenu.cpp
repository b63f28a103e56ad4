#include "ui/AppContextMenu.h"

#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
#include "ui/Assets.h"
#include "wire/Protocol.h"

namespace pomvar {

AppContextMenu::AppContextMenu(PomvarViewModel& vm,
                               std::function<void()> dismiss,
                               TreeItem item,
                               std::function<void(const std::string&)> launchApp,
                               QWidget* parent)
    : QMenu(parent)
    , m_vm(vm)
    , m_dismiss(std::move(dismiss))
    , m_item(std::move(item))
    , m_launchApp(std::move(launchApp))
{
    setObjectName(QStringLiteral("appContextMenu"));

    //: Starts the app.
    QAction* open = addAction(tr("Open"));
    connect(open, &QAction::triggered, this, [this] { m_launchApp(m_item.id); });

    QAction* getInfo = addAction(tr("Get Info"));
    connect(getInfo, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::getInfoApp(m_item.id));
    });

    QAction* pin = addAction(m_item.isPinned ? tr("Unpin App") : tr("Pin App"));
    connect(pin, &QAction::triggered, this, [this] {
        m_vm.sendMessage(request::togglePinApp(m_item.id));
        saveExpansionAndRefresh();
    });

    addSeparator();
    addAppCategories();

    QAction* organize = addAction(tr("Organize"));
    connect(organize, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.openOrganizer(OrganizerDlgMode::organizeApp, m_item.id);
    });
}

void AppContextMenu::addAppCategories()
{
    m_appCategories = addMenu(tr("App Categories"));
    m_appCategories->setObjectName(QStringLiteral("appCategoriesMenu"));
    const auto memberships = m_vm.appsAppcats().find(m_item.id);
    const QPalette palette = this->palette();
    for (const TreeItem& row : m_vm.myAppsTreeData().items()) {
        if (!row.isCategory())
            continue;
        const bool member =
            memberships != m_vm.appsAppcats().end() && memberships->second.count(row.name) > 0;
        QAction* entry = m_appCategories->addAction(
            Assets::icon(member ? QStringLiteral("checkedAppcatCxt") : QStringLiteral("appcatCxt"),
                         palette),
            // An "&" in a name is text, not a mnemonic marker ("Sound & Video").
            QString::fromStdString(row.name).replace(QLatin1Char('&'), QStringLiteral("&&")));
        entry->setProperty("isMember", member);
        const std::string category = row.name;
        connect(entry, &QAction::triggered, this, [this, category] {
            m_vm.toggleSetAppCategory(m_item.id, category);
            saveExpansionAndRefresh();
        });
    }
    QAction* addToNew = m_appCategories->addAction(tr("Add to New Category…"));
    connect(addToNew, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::createNewAppcatCxtmnu(m_item.id));
    });
}

void AppContextMenu::saveExpansionAndRefresh()
{
    UserDefaults::setExpandedAppCats(m_vm.expandedAppCats());
    m_vm.updateMenu();
}

} // namespace pomvar
