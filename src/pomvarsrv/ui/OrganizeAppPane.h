#pragma once

#include "pomvarsrv/ui/AppPicker.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <string>

class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace pomvar::srv {

class ServerModel;

// The organizer's "Organize App" pane, for one app: its icon, name, generic name and desktop
// file id; "Pinned"; "Hidden", which leaves it out of Pomvar's menus and search; one check box
// per category, and "New Category…", which files the app into the category it creates; "Get
// Info" and "Edit…". "Choose App…" picks another app. Every change goes to the store at once.
class OrganizeAppPane : public QWidget
{
    Q_OBJECT

public:
    using GenericName = std::function<QString(const std::string& appkey)>;

    OrganizeAppPane(ServerModel& model,
                    AppPicker::Filter filter,
                    GenericName genericName,
                    QWidget* parent = nullptr);

    // The app shown; an unknown key shows none.
    void setApp(const QString& appkey);
    const QString& app() const { return m_appkey; }
    // Shows the store as it is now.
    void refresh();

Q_SIGNALS:
    void infoRequested(const QString& appkey);
    void editRequested(const QString& appkey);

private:
    void chooseApp();
    void newCategory();
    void setMember(const std::string& category, bool member);

    ServerModel& m_model;
    AppPicker::Filter m_filter;
    GenericName m_genericName;
    QString m_appkey;
    QLabel* m_icon;
    QLabel* m_name;
    QLabel* m_genericNameLabel;
    QLabel* m_id;
    QCheckBox* m_pinned;
    QCheckBox* m_hidden;
    QGroupBox* m_categoriesGroup;
    QVBoxLayout* m_categories;
    QPushButton* m_newCategory;
    QPushButton* m_info;
    QPushButton* m_edit;
    QPushButton* m_choose;
    QPointer<QWidget> m_dialog;
};

} // namespace pomvar::srv
