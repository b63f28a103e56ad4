#pragma once

#include "pomvarsrv/catalogue/AppDetails.h"
#include "pomvarsrv/ui/ServerWindow.h"

#include <optional>

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
    QStringList categories; // the user's categories that hold it
};

// "Get Info" on an app, titled with its name: its icon, names and comment, the desktop entry
// (id, file, Exec line, freedesktop categories, terminal) and its pin and categories in Pomvar.
// "Open" launches it, "Organize…" opens it in the organizer, "Open Containing Folder" shows its
// desktop file in the file manager.
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
    QPushButton* m_openFolder;
    QPushButton* m_open;
    QPushButton* m_organize;
    QPushButton* m_close;
};

} // namespace pomvar::srv
