#pragma once

#include "pomvarsrv/ui/SearchResults.h"

#include <QWidget>

#include <functional>
#include <vector>

class QLineEdit;
class QListView;

namespace pomvar::srv {

// The search window: a borderless field titled "Search Apps" over the ranked results, centred
// on the pointer's screen a third of the way down. Keyboard first: Up/Down, Page Up/Down and
// Home/End move through the results, Enter launches, Ctrl+1 to Ctrl+9 launch the first nine,
// Right or Alt+Enter shows the selected app's desktop actions and Left goes back; Escape clears
// the field, or closes the window when it is empty. It also closes when it loses focus and after
// a launch. A click launches; a right-click shows the actions.
class SearchWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kWidth = 600;
    static constexpr int kHeight = 420;

    // The rows for a query (the Recent list for an empty one), and an app's actions.
    using Results = std::function<std::vector<SearchRow>(const QString& query)>;
    using Actions = std::function<std::vector<SearchRow>(const QString& appkey)>;

    SearchWindow(Results results, Actions actions, QWidget* parent = nullptr);

    // Shows, raises and focuses the window, the field's text selected.
    void present();
    // The app whose actions are listed; empty when the results are.
    const QString& actionsOf() const { return m_actionsOf; }

Q_SIGNALS:
    void launchRequested(const QString& appkey);
    void actionRequested(const QString& appkey, const QString& action);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void showActions(const QModelIndex& index);
    void activate(const QModelIndex& index);
    void select(int row);

    Results m_results;
    Actions m_actions;
    SearchResults m_model;
    QLineEdit* m_field;
    QListView* m_list;
    QString m_actionsOf;
};

} // namespace pomvar::srv
