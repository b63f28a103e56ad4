#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pomvar::srv {

class AboutWindow;
struct AppInfo;
class AppEditDialog;
class AppInfoWindow;
class CategoryInfoWindow;
class OrganizerWindow;
class AppSearch;
class SearchWindow;
class ServerModel;
class Updates;
class UpdatesWindow;
class WelcomeWindow;

// Owns every window of the server: the search window, the organizer, the new category prompt,
// the app editor, and the info, about, welcome and updates windows. Each is made at its first
// request, then shown again, raised and switched to what is asked. It gathers what they show from
// the model, the search and the updates, and carries out what the user chooses in them.
class ServerWindows : public QObject
{
    Q_OBJECT

public:
    // The app, or one of its desktop actions.
    using Launch = std::function<void(const QString& appkey, const QString& action)>;

    ServerWindows(ServerModel& model,
                  Updates& updates,
                  const AppSearch& search,
                  Launch launch,
                  QObject* parent = nullptr);
    ~ServerWindows() override;

    // Centred a third of the way down, or at the place the panel gave just before.
    void showSearch();
    void placeSearch(const QPoint& topLeft);
    // The search where the panel is, taking the keys the panel caught first; the window's X11
    // id, or 0 on another window system.
    quint64 showSearchAt(const QPoint& topLeft);
    void typeInSearch(int key, int modifiers, const QString& text);
    void endTyping();
    // The next window shown takes the focus with this token (WindowActivation).
    void setActivationToken(const QString& token);
    // The organizer on a pane (OrganizerDlgMode) and an item (a category or an app key).
    void showOrganizer(int pane, const QString& itemkey);
    // Asks for a new category's name, then files the app into it.
    void askNewCategory(const QString& appkey);
    void showAppInfo(const QString& appkey);
    void showCategoryInfo(const QString& appcat);
    void showAbout();
    void showWelcome();
    // Re-reads the installed version first.
    void showUpdates();
    // The app's entry, to edit as the user's own copy.
    void showEditor(const QString& appkey);
    // The apps or their entries changed: the info window and the organizer, when shown, show
    // them as they are now.
    void refreshShown();

Q_SIGNALS:
    // The search window is made: what it shows beyond the apps is wired to it.
    void searchWindowMade(SearchWindow* window);
    void organizerMade(OrganizerWindow* organizer);

private:
    AppInfo appInfo(const QString& appkey) const;
    SearchWindow& searchWindow();
    void refreshUpdates();
    void startWithCategories();

    ServerModel& m_model;
    Updates& m_updates;
    const AppSearch& m_search;
    Launch m_launch;
    std::unique_ptr<SearchWindow> m_searchWindow;
    std::optional<QPoint> m_searchPlace;
    QElapsedTimer m_searchPlaceAge;
    std::unique_ptr<OrganizerWindow> m_organizer;
    std::unique_ptr<AppInfoWindow> m_appInfo;
    std::unique_ptr<CategoryInfoWindow> m_categoryInfo;
    std::unique_ptr<AboutWindow> m_about;
    std::unique_ptr<WelcomeWindow> m_welcome;
    std::unique_ptr<UpdatesWindow> m_updatesWindow;
    QPointer<AppEditDialog> m_editor;
};

} // namespace pomvar::srv
