#pragma once

#include "ui/Pomvar.h"

#include <QWidget>

#include <array>
#include <functional>
#include <string>

class QStackedWidget;

namespace pomvar {

class MenuListView;
class MenuPage;
class MenuSelectorButton;
class PanelDrag;
class PomvarViewModel;

// The panel's content: the selector column with the title on the left, the three menus and the
// control bar on the right. Reads everything from the view model and turns clicks into view
// model calls. Built anew at every opening of the panel.
class PomvarView : public QWidget
{
    Q_OBJECT

public:
    // `dismiss` closes the panel; `terminate` ends the application (the control menu's Quit).
    PomvarView(PomvarViewModel& vm,
               std::function<void()> dismiss,
               std::function<void()> terminate,
               QWidget* parent = nullptr);

    Pomvar selectedMenu() const { return m_selectedMenu; }
    MenuListView* menuView(Pomvar menu) const;
    MenuPage* menuPage(Pomvar menu) const;

    // Closes the panel, then asks the runtime server to launch the app.
    void launchApp(const std::string& appKey);
    // The appear and disappear handlers, run at every opening and closing of the panel.
    void onAppear();
    void onDisappear();

    static QColor getMenuSelectorBkgdColor(const QPalette& palette);
    static constexpr int selectorColumnWidth = 92;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setSelectedMenu(Pomvar menu);
    // The selected menu's rows take the keyboard, or its selector button when it is empty.
    void focusMenu();
    QWidget* menuSelector();
    QWidget* controlBar();
    MenuPage* myAppsMenu();
    MenuPage* recentAppsMenu();
    MenuPage* allAppsMenu();
    QWidget* myAppsEmpty();
    QWidget* recentAppsEmpty();
    MenuListView* makeMenuView(Pomvar menu);

    void setAppCatExpanded(const QModelIndex& index, bool expanded);
    void syncExpansion();
    void syncExpansionOf(const QString& name, bool expanded);
    void showContextMenu(MenuListView* view, const QModelIndex& index, const QPoint& globalPos);
    void prefsChanged();

    PomvarViewModel& m_vm;
    Pomvar m_selectedMenu = Pomvar::MyApps;
    std::function<void()> m_dismiss;
    std::function<void()> m_terminate;

    QStackedWidget* m_menus = nullptr;
    std::array<MenuPage*, 3> m_pages{};
    std::array<MenuSelectorButton*, 3> m_selectorButtons{};
    PanelDrag* m_drag = nullptr;
};

} // namespace pomvar
