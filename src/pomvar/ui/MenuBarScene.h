#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace pomvar {

class ControlMenuEntries;
class PanelWindow;
class PomvarViewModel;
class TrayIcon;

// What makes Pomvar visible: the tray icon, the panel that a click on it opens, the control
// menu's entries on a right-click and the search window on a middle click. It may be created
// while the server starts; it is shown once the start-up sequence has returned and lives as
// long as the application.
class MenuBarScene : public QObject
{
    Q_OBJECT

public:
    // `vm` gives the one view model; it is first asked for once the tray icon is shown, so the
    // icon does not wait for the server's first answers. Shows nothing until show(). `terminate`
    // ends the application; the control menu's Quit calls it.
    MenuBarScene(std::function<PomvarViewModel&()> vm,
                 std::function<void()> terminate,
                 QObject* parent = nullptr);
    ~MenuBarScene() override;
    // Shows the tray icon; the view model, the panel and the menu follow on the event loop.
    void show();

    TrayIcon* trayIcon() const { return m_tray; }
    // The panel and the tray icon's right-click menu (the control menu's entries) are built
    // on the event loop's first turn, before any click reaches the icon, or on first use here.
    PanelWindow* panel();
    ControlMenuEntries* trayMenu();

private:
    void build();

    std::function<PomvarViewModel&()> m_vm;
    std::function<void()> m_terminate;
    TrayIcon* m_tray;
    std::unique_ptr<PanelWindow> m_panel;
    std::unique_ptr<ControlMenuEntries> m_trayMenu;
};

} // namespace pomvar
