#pragma once

#include "pomvarsrv/ui/AppPicker.h"
#include "pomvarsrv/ui/OrganizeAppPane.h"

#include <QWidget>

class QTabWidget;

namespace pomvar::srv {

class OrganizePane;
class ServerModel;
class SettingsPane;

// "Pomvar Organizer": the panes "Organize", "Organize App" and "Settings" behind tabs
// (Ctrl+Tab and Ctrl+Shift+Tab switch them). There is one window: each request raises it on
// the pane asked for. It shows the store afresh whenever it is activated, so that changes made
// from the panel meanwhile are seen. Escape closes it.
class OrganizerWindow : public QWidget
{
    Q_OBJECT

public:
    OrganizerWindow(ServerModel& model,
                    AppPicker::Filter filter,
                    OrganizeAppPane::GenericName genericName,
                    QWidget* parent = nullptr);

    // Shows, raises and focuses the window on a pane (OrganizerDlgMode: 0, 1 or 2) and an item:
    // a category for the first pane, an app for the second; empty for none.
    void present(int pane, const QString& itemkey);
    int pane() const;
    // Shows the store and the apps as they are now.
    void refresh();
    SettingsPane* settingsPane() const { return m_settings; }

Q_SIGNALS:
    void infoRequested(const QString& appkey);
    void editRequested(const QString& appkey);

protected:
    bool event(QEvent* event) override;

private:
    QTabWidget* m_tabs;
    OrganizePane* m_organize;
    OrganizeAppPane* m_organizeApp;
    SettingsPane* m_settings;
};

} // namespace pomvar::srv
