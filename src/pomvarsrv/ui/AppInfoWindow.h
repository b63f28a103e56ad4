#pragma once

#include "pomvarsrv/catalogue/AppDetails.h"
#include "pomvarsrv/ui/ServerWindow.h"

#include <optional>

class QCheckBox;
class QFormLayout;
class QLabel;
class QPushButton;

namespace pomvar::srv {

// What the app's "Get Info" shows: its entry, and what the user made of it in Pomvar.
struct AppInfo
{
    QString appkey;
    std::optional<AppDetails> details; // nothing: no such app is installed
    QString icon;                      // the 48 px render
    bool pinned = false;
    bool hidden = false;
    QStringList categories; // the user's categories that hold it
};

// "Get Info" on an app, titled "<name> Details": its icon, its name once (the generic name only
// when it says something else) and comment, the desktop entry (id, file, the command without its
// field codes, freedesktop categories, terminal), its pin and categories in Pomvar and "Hidden",
// which leaves it out of Pomvar's menus and search. "Open" launches it, "Organize…" opens it in
// the organizer, "Edit…" edits its entry, "Open Containing Folder" shows its desktop file in
// the file manager.
class AppInfoWindow : public ServerWindow
{
    Q_OBJECT

public:
    explicit AppInfoWindow(QWidget* parent = nullptr);

    // Shows the app, in place of the one shown before.
    void showApp(const AppInfo& info);
    const QString& appkey() const { return m_appkey; }

Q_SIGNALS:
    void launchRequested(const QString& appkey);
    void organizeRequested(const QString& appkey);
    void editRequested(const QString& appkey);
    void hiddenChanged(const QString& appkey, bool hidden);

private:
    QLabel* addRow(QFormLayout* form,
                   const QString& caption,
                   const QString& objectName,
                   bool selectable = false);

    QString m_appkey;
    QString m_folder;
    QWidget* m_details;
    QLabel* m_missing;
    QLabel* m_icon;
    QLabel* m_name;
    QLabel* m_genericName;
    QLabel* m_comment;
    QLabel* m_id;
    QLabel* m_path;
    QLabel* m_commandLine;
    QLabel* m_categories;
    QLabel* m_terminal;
    QLabel* m_pinned;
    QLabel* m_pomvarCategories;
    QCheckBox* m_hidden;
    QPushButton* m_openFolder;
    QPushButton* m_open;
    QPushButton* m_organize;
    QPushButton* m_edit;
    QPushButton* m_close;
};

} // namespace pomvar::srv
