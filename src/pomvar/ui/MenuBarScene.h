#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace pomvar {

class PanelWindow;
class PomvarViewModel;
class TrayIcon;

// What makes Pomvar visible: the tray icon, and the panel that a click on it opens. Created
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

private:
    TrayIcon* m_tray;
    std::unique_ptr<PanelWindow> m_panel;
};

} // namespace pomvar
