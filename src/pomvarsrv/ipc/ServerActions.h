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
    // The next showSearch() opens with its top left at this point (the panel's), not centred.
    virtual void placeSearch(int x, int y) = 0;
    // The search at a point, taking the keys the panel caught (typeInSearch) before the ones
    // typed into it, until endTyping(); the window's X11 id, or 0.
    virtual quint64 showSearchAt(int x, int y) = 0;
    // A key the panel caught: Qt's key and modifiers, and its text.
    virtual void typeInSearch(int key, int modifiers, const QString& text) = 0;
    virtual void endTyping() = 0;
    // The next window shown takes the focus with this token (XDG activation or X11 startup id).
    virtual void setActivationToken(const QString& token) = 0;
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
