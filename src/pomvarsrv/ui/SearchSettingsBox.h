#pragma once

#include <QGroupBox>

#include <functional>
#include <utility>
#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace pomvar::srv {

class ServerModel;
class ShortcutRecorder;

// The organizer's "Search" settings: "Search shortcut", the keys that open the search window from
// anywhere ("None" turns it off), with what they do on this desktop (taken by another program,
// for instance); and which of the desktop's search providers the search asks, all or each. Every
// change is stored at once, then applied by the rest of the server.
class SearchSettingsBox : public QGroupBox
{
    Q_OBJECT

public:
    struct Provider
    {
        QString id; // its desktop file id
        QString name;
        bool enabledByDefault = true;
    };
    struct Services
    {
        std::function<std::vector<Provider>()> providers;
        // What the shortcut does now, in a sentence.
        std::function<QString()> shortcutState;
        // The settings were stored: apply them.
        std::function<void()> apply;
    };

    SearchSettingsBox(ServerModel& model, Services services, QWidget* parent = nullptr);

    // Shows the settings, the shortcut's state and the providers installed as they are now.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void storeShortcut(const QString& portableText);
    void storeProviders();

    ServerModel& m_model;
    Services m_services;
    ShortcutRecorder* m_shortcut;
    QPushButton* m_none;
    QLabel* m_state;
    QCheckBox* m_providers;
    QVBoxLayout* m_providerList;
    std::vector<std::pair<QString, QCheckBox*>> m_providerBoxes;
};

} // namespace pomvar::srv
