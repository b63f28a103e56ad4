#pragma once

#include "pomvarsrv/ui/AppPicker.h"

#include <QPointer>
#include <QWidget>

class QGroupBox;
class QPushButton;

namespace pomvar::srv {

class HiddenAppsBox;
class OrganizerListModel;
class OrganizerListView;
class ServerModel;

// The organizer's "Organize" pane: the pinned apps, the categories and the selected category's
// apps, each list in menu order with its buttons, and the hidden apps (HiddenAppsBox). Items are
// reordered by drag and drop, by "Move Up" and "Move Down" or by Alt+Up and Alt+Down; apps
// dropped onto a category are filed there. Delete takes the selection out of its list (a
// category only after confirmation), F2 renames a category, Enter on an app organizes that app.
// The buttons act on the highlighted items only: each is enabled while it has something to act
// on. Every change goes to the store at once.
class OrganizePane : public QWidget
{
    Q_OBJECT

public:
    OrganizePane(ServerModel& model, AppPicker::Filter filter, QWidget* parent = nullptr);

    // Shows the store as it is now; the selections stay on their items.
    void refresh();
    // Selects and focuses that category, or the pinned apps when it is empty or unknown.
    void selectCategory(const QString& name);

Q_SIGNALS:
    void organizeAppRequested(const QString& appkey);

private:
    enum class List
    {
        pins,
        categories,
        members,
    };
    QGroupBox* group(List list, const QString& title, const std::vector<QPushButton*>& buttons);
    QPushButton* button(const QString& label, const char* objectName);
    OrganizerListView* view(List list) const;
    QString currentCategory() const;
    void refreshMembers();
    // The apps among `keys` the menus show: installed, not hidden.
    std::vector<std::string> shown(const std::vector<std::string>& keys) const;
    // The highlighted category; empty when none is.
    QString selectedCategory() const;
    void updateButtons();
    // Moves the list's selection one place up or down.
    void move(List list, bool down);
    // Puts keys before another in the list (pinning or filing them), then shows it selected.
    void place(List list, const QStringList& keys, const QString& before);
    void remove(List list);
    void pickApps(List list);
    void newCategory();
    void renameCategory();
    void confirmDelete();
    // Closes the picker or dialog open before: one at a time.
    void replaceOpenDialog(QWidget* dialog);

    ServerModel& m_model;
    AppPicker::Filter m_filter;
    OrganizerListView* m_pins;
    OrganizerListView* m_categories;
    OrganizerListView* m_members;
    QGroupBox* m_membersGroup = nullptr;
    HiddenAppsBox* m_hidden;
    // By list: the buttons that need a highlighted item, then Move Up and Move Down.
    std::vector<QPushButton*> m_needPin, m_needCategory, m_needMember;
    QPointer<QWidget> m_dialog;
};

} // namespace pomvar::srv
