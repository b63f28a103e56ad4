#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace pomvar::srv {

class AboutWindow;
class AppInfoWindow;
class CategoryInfoWindow;
class ServerModel;
class Updates;
class UpdatesWindow;
class WelcomeWindow;

// Owns the info, about, welcome and updates windows: each is made at its first request, then
// shown again, raised and switched to what is asked. It gathers what they show from the model,
// the desktop entries and the updates, and carries out what the user chooses in them.
class ServerWindows : public QObject
{
    Q_OBJECT

public:
    using Launch = std::function<void(const QString& appkey)>;
    // The organizer on a pane (OrganizerDlgMode) and an item.
    using Organize = std::function<void(int pane, const QString& itemkey)>;

    ServerWindows(ServerModel& model,
                  Updates& updates,
                  Launch launch,
                  Organize organize,
                  QObject* parent = nullptr);
    ~ServerWindows() override;

    void showAppInfo(const QString& appkey);
    void showCategoryInfo(const QString& appcat);
    void showAbout();
    void showWelcome();
    // Re-reads the installed version first.
    void showUpdates();

private:
    void refreshUpdates();
    void startWithCategories();

    ServerModel& m_model;
    Updates& m_updates;
    Launch m_launch;
    Organize m_organize;
    std::unique_ptr<AppInfoWindow> m_appInfo;
    std::unique_ptr<CategoryInfoWindow> m_categoryInfo;
    std::unique_ptr<AboutWindow> m_about;
    std::unique_ptr<WelcomeWindow> m_welcome;
    std::unique_ptr<UpdatesWindow> m_updatesWindow;
};

} // namespace pomvar::srv
