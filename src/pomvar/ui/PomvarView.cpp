#include "ui/PomvarView.h"

#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
#include "ui/AppCategoryContextMenu.h"
#include "ui/AppContextMenu.h"
#include "ui/ControlButton.h"
#include "ui/ControlMenu.h"
#include "ui/EmptyState.h"
#include "ui/InputTime.h"
#include "ui/MenuListView.h"
#include "ui/MenuPage.h"
#include "ui/MenuSelectorButton.h"
#include "ui/PanelColors.h"
#include "ui/PanelDrag.h"
#include "ui/PanelFonts.h"
#include "ui/PomvarTitle.h"
#include "ui/UiLog.h"
#include "wire/Protocol.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace pomvar {

namespace {

std::size_t slot(Pomvar menu)
{
    return static_cast<std::size_t>(menu);
}

const std::optional<UserPrefs>& requirePrefs(const PomvarViewModel& vm)
{
    if (!vm.prefs())
        fatalStop("PomvarView: the user's preferences are not loaded");
    return vm.prefs();
}

} // namespace

PomvarView::PomvarView(PomvarViewModel& vm,
                       std::function<void()> dismiss,
                       std::function<void()> terminate,
                       QWidget* parent)
    : QWidget(parent)
    , m_vm(vm)
    , m_dismiss(std::move(dismiss))
    , m_terminate(std::move(terminate))
{
    printLine(lcUi(), "PomvarView.init(): Initializing Pomvar view");
    const long long lastMenu = UserDefaults::lastMenu();
    const UserPrefs& prefs = *requirePrefs(m_vm);
    if (prefs.saveLastMenu) {
        if (lastMenu < 0 || lastMenu > 2)
            fatalStop(concat("PomvarView.init(): invalid LastMenu value ", lastMenu));
        m_selectedMenu = static_cast<Pomvar>(lastMenu);
    }

    setObjectName(QStringLiteral("pomvarView"));
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(menuSelector());

    // The right column's leading padding of -8 only takes back the stack's spacing of 8: it
    // starts where the selector column's background ends, so no row is drawn over that grey.
    auto* right = new QVBoxLayout;
    right->setContentsMargins(0, 0, 10, 0);
    right->setSpacing(0);
    m_menus = new QStackedWidget(this);
    m_menus->setObjectName(QStringLiteral("menuStack"));
    // Every menu is built at once; switching only changes which one is visible, so the hidden
    // ones keep their scroll positions.
    m_pages[slot(Pomvar::AllApps)] = allAppsMenu();
    m_pages[slot(Pomvar::Recent)] = recentAppsMenu();
    m_pages[slot(Pomvar::MyApps)] = myAppsMenu();
    for (MenuPage* page : m_pages)
        m_menus->addWidget(page);
    right->addWidget(m_menus, 1);
    right->addWidget(controlBar());
    columns->addLayout(right, 1);

    m_drag = new PanelDrag(
        m_vm,
        this,
        m_selectorButtons[slot(Pomvar::MyApps)],
        menuPage(Pomvar::MyApps),
        menuView(Pomvar::MyApps),
        [this] { setSelectedMenu(Pomvar::MyApps); },
        this);
    for (MenuPage* page : m_pages)
        connect(page->view(),
                &MenuListView::dragStarted,
                this,
                [this, page](const QModelIndex& index, QPoint hotSpot, QPoint global) {
                    m_drag->start(page->view(), index, hotSpot, global);
                });

    connect(&m_vm, &PomvarViewModel::expandedAppCatsChanged, this, &PomvarView::syncExpansion);
    connect(&m_vm, &PomvarViewModel::expandedAppCatChanged, this, &PomvarView::syncExpansionOf);
    connect(&m_vm, &PomvarViewModel::prefsChanged, this, &PomvarView::prefsChanged);
    connect(&m_vm.myAppsTreeData(),
            &QAbstractItemModel::rowsInserted,
            this,
            [this](const QModelIndex& parent, int first, int last) {
                if (parent.isValid())
                    return;
                MenuListView* view = menuView(Pomvar::MyApps);
                const auto& expanded = m_vm.expandedAppCats();
                for (int row = first; row <= last; ++row) {
                    const TreeItem& item = m_vm.myAppsTreeData().items().at(std::size_t(row));
                    const auto entry = expanded.find(item.name);
                    if (item.isCategory() && entry != expanded.end() && entry->second)
                        view->setExpanded(m_vm.myAppsTreeData().index(row, 0), true);
                }
            });
    syncExpansion();
    setSelectedMenu(m_selectedMenu);
}

MenuListView* PomvarView::menuView(Pomvar menu) const
{
    return m_pages[slot(menu)]->view();
}

MenuPage* PomvarView::menuPage(Pomvar menu) const
{
    return m_pages[slot(menu)];
}

QColor PomvarView::getMenuSelectorBkgdColor(const QPalette& palette)
{
    return PanelColors::menuSelectorBackground(palette);
}

void PomvarView::setSelectedMenu(Pomvar menu)
{
    m_selectedMenu = menu;
    for (MenuSelectorButton* button : m_selectorButtons)
        button->setChecked(button->menu() == menu);
    m_menus->setCurrentWidget(m_pages[slot(menu)]);
}

void PomvarView::launchApp(const std::string& appKey)
{
    m_dismiss();
    m_vm.sendMessage(request::launch(appKey));
}

void PomvarView::onAppear()
{
    m_vm.updateMenu();
    if (!requirePrefs(m_vm)->saveLastMenu)
        setSelectedMenu(Pomvar::MyApps);
    focusMenu();
}

void PomvarView::focusMenu()
{
    // An empty menu has no row to focus: its selector button takes the focus, so that keyboard
    // and screen reader users start in the panel.
    if (menuPage(m_selectedMenu)->isShowingEmptyState())
        m_selectorButtons[slot(m_selectedMenu)]->setFocus(Qt::PopupFocusReason);
    else
        menuView(m_selectedMenu)->setFocus(Qt::PopupFocusReason);
}

void PomvarView::onDisappear()
{
    UserDefaults::setExpandedAppCats(m_vm.expandedAppCats());
}

QWidget* PomvarView::menuSelector()
{
    auto* column = new QWidget(this);
    column->setObjectName(QStringLiteral("menuSelector"));
    // 72 wide with padding 10 on all sides.
    column->setFixedWidth(selectorColumnWidth);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(1);
    layout->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    for (Pomvar menu : { Pomvar::MyApps, Pomvar::Recent, Pomvar::AllApps }) {
        auto* button = new MenuSelectorButton(menu, column);
        button->setObjectName(QStringLiteral("menuSelectorButton%1").arg(int(menu)));
        connect(button, &MenuSelectorButton::menuSelected, this, &PomvarView::setSelectedMenu);
        m_selectorButtons[slot(menu)] = button;
        layout->addWidget(button, 0, Qt::AlignHCenter);
    }
    layout->addWidget(new PomvarTitle(column));
    layout->addStretch(1);
    return column;
}

QWidget* PomvarView::controlBar()
{
    auto* bar = new QWidget(this);
    bar->setObjectName(QStringLiteral("controlBar"));
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(10, 10, 0, 10);
    layout->setSpacing(4);

    //: Opens the search window.
    auto* search = new ControlButton(tr("Search"), QStringLiteral("search"), bar);
    search->setObjectName(QStringLiteral("searchButton"));
    connect(search, &QAbstractButton::clicked, this, [this] {
        // The search opens where the panel is: its place goes first, then the request itself.
        const QPoint place = window()->pos();
        m_dismiss();
        if (const auto token = InputTime::activationToken())
            m_vm.sendMessage(request::activationToken(*token));
        m_vm.sendMessage(request::appSearchPlace(place.x(), place.y()));
        m_vm.sendMessage(request::plain(request::appSearch));
    });
    //: Opens the organizer window, where apps are pinned and filed into categories.
    auto* organize = new ControlButton(
        tr("Organize"), QStringLiteral("organzr"), PanelFonts::callout(bar->font()), bar);
    organize->setObjectName(QStringLiteral("organizeButton"));
    connect(organize, &QAbstractButton::clicked, this, [this] {
        m_dismiss();
        m_vm.openOrganizer(OrganizerDlgMode::organize, {});
    });
    layout->addWidget(search);
    layout->addWidget(organize);
    layout->addStretch(1);
    layout->addWidget(new ControlMenu(m_vm, m_dismiss, m_terminate, bar));
    return bar;
}

MenuListView* PomvarView::makeMenuView(Pomvar menu)
{
    MenuList& list = menu == Pomvar::MyApps   ? m_vm.myAppsTreeData()
                     : menu == Pomvar::Recent ? m_vm.recentAppsMenuData()
                                              : m_vm.allAppsMenuData();
    auto* view = new MenuListView(
        menu, list, [this]() -> const std::optional<UserPrefs>& { return m_vm.prefs(); }, this);
    view->setAnimated(m_vm.prefs() && m_vm.prefs()->animationFx);
    connect(view, &MenuListView::appActivated, this, [this](const QModelIndex& index) {
        launchApp(index.data(MenuList::IdRole).toString().toStdString());
    });
    connect(view,
            &MenuListView::rowContextMenuRequested,
            this,
            [this, view](const QModelIndex& index, const QPoint& globalPos) {
                showContextMenu(view, index, globalPos);
            });
    return view;
}

MenuPage* PomvarView::allAppsMenu()
{
    MenuListView* view = makeMenuView(Pomvar::AllApps);
    view->setObjectName(QStringLiteral("allAppsMenu"));
    auto* page = new MenuPage(view, nullptr, this);
    page->setContentsMargins(0, 10, 0, 0);
    return page;
}

MenuPage* PomvarView::recentAppsMenu()
{
    MenuListView* view = makeMenuView(Pomvar::Recent);
    view->setObjectName(QStringLiteral("recentAppsMenu"));
    auto* page = new MenuPage(view, recentAppsEmpty(), this);
    page->setContentsMargins(0, 10, 0, 0);
    return page;
}

MenuPage* PomvarView::myAppsMenu()
{
    MenuListView* view = makeMenuView(Pomvar::MyApps);
    view->setObjectName(QStringLiteral("myAppsMenu"));
    connect(view, &MenuListView::categoryToggled, this, &PomvarView::setAppCatExpanded);
    auto* page = new MenuPage(view, myAppsEmpty(), this);
    page->setContentsMargins(0, 10, 0, 0);
    return page;
}

QWidget* PomvarView::myAppsEmpty()
{
    auto* empty = new EmptyState(
        QStringLiteral("myappsEmpty"),
        //: The pinned apps and categories' menu, named as its selector on the left.
        tr("My Apps"),
        { tr("Click Organize to pin your favorite apps to the Pomvar and organize apps into app "
             "categories."),
          tr("Click All Apps on the left to browse apps on your computer.") },
        this);
    empty->setObjectName(QStringLiteral("myAppsEmpty"));
    return empty;
}

QWidget* PomvarView::recentAppsEmpty()
{
    auto* empty =
        new EmptyState(QStringLiteral("recentEmpty"),
                       tr("Recent Apps"),
                       { tr("Apps that were recently launched from the Pomvar will appear here.") },
                       this);
    empty->setObjectName(QStringLiteral("recentAppsEmpty"));
    return empty;
}

void PomvarView::setAppCatExpanded(const QModelIndex& index, bool expanded)
{
    const UserPrefs& prefs = *requirePrefs(m_vm);
    const std::string name = index.data(MenuList::IdRole).toString().toStdString();
    menuView(Pomvar::MyApps)->setAnimated(prefs.animationFx);
    m_vm.setExpandedAppCat(name, expanded);
    if (prefs.oneExpAppCat)
        m_vm.collapseAppCats(name);
}

void PomvarView::syncExpansion()
{
    MenuListView* view = menuView(Pomvar::MyApps);
    const MenuList& list = m_vm.myAppsTreeData();
    const auto& expanded = m_vm.expandedAppCats();
    for (int row = 0; row < list.rowCount(); ++row) {
        const TreeItem& item = list.items().at(std::size_t(row));
        if (!item.isCategory())
            continue;
        const auto entry = expanded.find(item.name);
        view->setExpanded(list.index(row, 0), entry != expanded.end() && entry->second);
    }
}

void PomvarView::syncExpansionOf(const QString& name, bool expanded)
{
    MenuListView* view = menuView(Pomvar::MyApps);
    const MenuList& list = m_vm.myAppsTreeData();
    const std::string key = name.toStdString();
    for (int row = 0; row < list.rowCount(); ++row) {
        const TreeItem& item = list.items().at(std::size_t(row));
        if (item.isCategory() && item.name == key)
            view->setExpanded(list.index(row, 0), expanded);
    }
}

void PomvarView::prefsChanged()
{
    if (!m_vm.prefs())
        return;
    for (MenuPage* page : m_pages) {
        page->view()->setAnimated(m_vm.prefs()->animationFx);
        page->view()->updateRowHeight();
    }
}

void PomvarView::showContextMenu(MenuListView* view,
                                 const QModelIndex& index,
                                 const QPoint& globalPos)
{
    const TreeItem item = view->menuList().item(index);
    QMenu* menu = nullptr;
    if (item.isCategory())
        menu = new AppCategoryContextMenu(m_vm, m_dismiss, item, this);
    else
        menu = new AppContextMenu(
            m_vm, m_dismiss, item, [this](const std::string& key) { launchApp(key); }, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPos);
}

void PomvarView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, selectorColumnWidth, height()),
                     getMenuSelectorBkgdColor(palette()));
}

void PomvarView::keyPressEvent(QKeyEvent* event)
{
    // Ctrl+1, Ctrl+2 and Ctrl+3 choose a menu as its selector button does.
    const int menu = event->key() - Qt::Key_1;
    if (event->modifiers() == Qt::ControlModifier && menu >= 0 && menu < 3) {
        m_selectorButtons[std::size_t(menu)]->click();
        focusMenu();
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        m_dismiss();
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace pomvar
