#pragma once

#include <QGroupBox>

class QPushButton;

namespace pomvar::srv {

class OrganizerListView;
class ServerModel;

// The organizer's "Hidden Apps": the installed apps hidden from Pomvar's menus and search, and
// "Unhide", which brings the highlighted ones back. Apps dropped onto the list are hidden; Enter
// on one organizes it.
class HiddenAppsBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit HiddenAppsBox(ServerModel& model, QWidget* parent = nullptr);

    // Shows the store as it is now; the selection stays on its apps.
    void refresh();
    OrganizerListView* list() const { return m_list; }

Q_SIGNALS:
    void organizeAppRequested(const QString& appkey);
    // An app was hidden or shown again here.
    void changed();

private:
    void setHidden(const QStringList& appkeys, bool hidden);

    ServerModel& m_model;
    OrganizerListView* m_list;
    QPushButton* m_unhide;
};

} // namespace pomvar::srv
