#pragma once

#include <QString>

#include <string_view>

namespace pomvar::srv {

// What the requests ask of the rest of the server beyond the model: launching, the windows,
// quitting and the update status. The application implements it; tests give their own.
class ServerActions
{
public:
    virtual ~ServerActions() = default;

    virtual void launch(const QString& appkey) = 0;
    virtual void askNewCategory(const QString& appkey) = 0;
    virtual void showSearch() = 0;
    // The organizer on a pane (OrganizerDlgMode) and an item (a category or an app key).
    virtual void showOrganizer(int pane, const QString& itemkey) = 0;
    virtual void showAppInfo(const QString& appkey) = 0;
    virtual void showCategoryInfo(const QString& appcat) = 0;
    virtual void showAbout() = 0;
    virtual void showUpdates() = 0;
    // Leaves once the current request is answered.
    virtual void quit() = 0;

    virtual bool isUpdateAvailable() const = 0;
    // The get-app-update-status answer: noUpdate, updateAvailable or readyToInstall.
    virtual std::string_view updateStatus() const = 0;
};

} // namespace pomvar::srv
