#pragma once

#include "pomvarsrv/catalogue/AutostartEntry.h"

#include <QWidget>

class QCheckBox;
class QRadioButton;
class QPushButton;

namespace pomvar::srv {

class ServerModel;

// The organizer's "Settings" pane: the five preferences the front end reads, each stored as it
// is changed (the density as two radio buttons, whose names a screen reader reads as shown); "Start
// Pomvar at login", which writes or removes the autostart entry and shows the entry's real state;
// "Clear Recent Apps".
class SettingsPane : public QWidget
{
    Q_OBJECT

public:
    SettingsPane(ServerModel& model,
                 AutostartEntry autostart = AutostartEntry(),
                 QWidget* parent = nullptr);

    // Shows the preferences, Recent and the autostart entry as they are now.
    void refresh();

private:
    QCheckBox* checkBox(const QString& label, const char* objectName);
    void store();

    ServerModel& m_model;
    AutostartEntry m_autostart;
    QRadioButton* m_normal;
    QRadioButton* m_compact;
    QCheckBox* m_animation;
    QCheckBox* m_saveExpanded;
    QCheckBox* m_saveLastMenu;
    QCheckBox* m_oneExpanded;
    QCheckBox* m_atLogin;
    QPushButton* m_clearRecent;
};

} // namespace pomvar::srv
