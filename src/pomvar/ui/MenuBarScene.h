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
// menu's entries on a right-click and the search window on a middle click. Created
// once the start-up sequence has returned; lives as long as the application.
class MenuBarScene : public QObject
{
    Q_OBJECT

public:
    // `terminate` ends the application; the control menu's Quit calls it.
    MenuBarScene(PomvarViewModel& vm, std::function<void()> terminate, QObject* parent = nullptr);
    ~MenuBarScene() override;

    TrayIcon* trayIcon() const { return m_tray; }
    PanelWindow* panel() const { return m_panel.get(); }
    // The tray icon's right-click menu: the control menu's entries.
    ControlMenuEntries* trayMenu() const { return m_trayMenu.get(); }

private:
    TrayIcon* m_tray;
    std::unique_ptr<PanelWindow> m_panel;
    std::unique_ptr<ControlMenuEntries> m_trayMenu;
};

} // namespace pomvar
