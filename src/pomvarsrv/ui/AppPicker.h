#pragma once

#include <QDialog>

#include <functional>
#include <set>
#include <string>
#include <vector>

class QLineEdit;
class QPushButton;

namespace pomvar::srv {

class InstalledApps;
class OrganizerListModel;
class OrganizerListView;

// Chooses apps among All Apps: a filter field over a list with multiple selection, whose rows
// can also be dragged onto the organizer's lists. The selection survives filtering: apps chosen
// under one filter stay chosen under the next. The action button is enabled while an app is
// chosen. Down goes from the field to the list (highlighting its first row), Enter chooses the
// highlighted apps. It is not modal, so that its rows can be dropped onto the organizer, and
// deletes itself when closed.
class AppPicker : public QDialog
{
    Q_OBJECT

public:
    // The keys of the apps matching a query, best first; every app, in menu order, for "".
    using Filter = std::function<std::vector<std::string>(const QString& query)>;

    AppPicker(const InstalledApps& apps,
              Filter filter,
              std::set<std::string> excluded,
              const QString& title,
              const QString& action,
              QWidget* parent = nullptr);

    void accept() override;

Q_SIGNALS:
    void chosen(const QStringList& appkeys);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    // Follows the list's selection into m_chosen.
    void noteSelection();

    const InstalledApps& m_apps;
    Filter m_filter;
    std::set<std::string> m_excluded;
    QLineEdit* m_field;
    OrganizerListModel* m_model;
    OrganizerListView* m_list;
    QPushButton* m_action;
    std::set<QString> m_chosen;
    bool m_refreshing = false;
};

} // namespace pomvar::srv
