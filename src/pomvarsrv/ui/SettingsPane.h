#pragma once

#include "pomvarsrv/catalogue/AutostartEntry.h"

#include <QWidget>

#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QRadioButton;
class QPushButton;

namespace pomvar::srv {

class ServerModel;

// The organizer's "Settings" pane: the five preferences the front end reads, each stored as it
// is changed (the density as two radio buttons, whose names a screen reader reads as shown); "Start
// Pomvar at login", which writes or removes the autostart entry and shows the entry's real state;
// "Clear Recent Apps", which "Undo" takes back until the window closes.
class SettingsPane : public QWidget
{
    Q_OBJECT

public:
    SettingsPane(ServerModel& model,
                 AutostartEntry autostart = AutostartEntry(),
                 QWidget* parent = nullptr);

    // Shows the preferences, Recent and the autostart entry as they are now.
    void refresh();
    // The window closes: a clearing of Recent stays.
    void forgetUndo();
    // Another group of settings, below the others.
    void addSection(QWidget* section);

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
    QPushButton* m_undoClear;
    // Recent as it was before "Clear Recent Apps", while it can be taken back.
    std::optional<std::vector<std::string>> m_cleared;
};

} // namespace pomvar::srv
