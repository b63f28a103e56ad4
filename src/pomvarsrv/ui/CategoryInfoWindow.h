#pragma once

#include "pomvarsrv/ui/ServerWindow.h"

#include <optional>
#include <vector>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace pomvar::srv {

// What a category's "Get Info" shows.
struct CategoryInfo
{
    struct App
    {
        QString appkey;
        QString name;
        QString icon; // the 24 px render
    };

    QString name;
    std::optional<std::vector<App>> apps; // its installed apps; nothing: no such category
};

// "Get Info" on a category, titled with its name: how many apps it holds and which (Enter on one
// shows its info). "Organize…" opens the category in the organizer.
class CategoryInfoWindow : public ServerWindow
{
    Q_OBJECT

public:
    explicit CategoryInfoWindow(QWidget* parent = nullptr);

    // Shows the category, in place of the one shown before.
    void showCategory(const CategoryInfo& info);
    const QString& category() const { return m_category; }

Q_SIGNALS:
    void organizeRequested(const QString& category);
    void appInfoRequested(const QString& appkey);

protected:
    // Enter on an app is taken by the list, not by the window's default button.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showAppInfo(const QListWidgetItem* item);

    QString m_category;
    QLabel* m_name;
    QLabel* m_count;
    QListWidget* m_apps;
    QPushButton* m_organize;
    QPushButton* m_close;
};

} // namespace pomvar::srv
