#pragma once

#include "pomvarsrv/search/SearchSections.h"
#include "pomvarsrv/ui/SearchResults.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QLineEdit;
class QListView;

namespace pomvar::srv {

// The search window: a borderless field titled "Search Apps" over the ranked results, centred
// on the pointer's screen a third of the way down, or where the panel was. Keyboard first:
// Up/Down, Page Up/Down and Home/End move through the results, Enter launches, Ctrl+1 to Ctrl+9
// launch the first nine, Right or Alt+Enter shows the selected app's desktop actions and Left
// goes back; Escape clears the field, or closes the window when it is empty. It also closes when
// it loses focus and after a launch. A click launches; a right-click shows the actions.
// The calculator's answer (Enter copies it) and the search providers' results come after the
// apps, for the query still shown, and never hold the typing up.
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
    // The same, empty, with its top left at `topLeft` (the panel's).
    void presentAt(const QPoint& topLeft);
    // The panel still holds the keyboard and sends the keys it caught (replayKey); keys typed
    // into the window meanwhile wait, and follow at endHandOver(), so that none is lost or
    // reordered. A hand-over left unfinished ends by itself after two seconds.
    void beginHandOver();
    void replayKey(int key, int modifiers, const QString& text);
    void endHandOver();

    QString query() const;
    // The app whose actions are listed; empty when the results are.
    const QString& actionsOf() const { return m_actionsOf; }
    // Rows that come later, for `query`; ignored when another query is shown by then.
    void showCalculation(const QString& query, std::optional<SearchRow> answer);
    void showProviderResults(const QString& query,
                             int order,
                             SearchRow header,
                             std::vector<SearchRow> results);

Q_SIGNALS:
    void launchRequested(const QString& appkey);
    void actionRequested(const QString& appkey, const QString& action);
    // A new query: the calculator and the providers are asked.
    void queryChanged(const QString& query);
    void providerResultActivated(const QString& provider, const QString& id, const QString& query);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Key
    {
        int key;
        int modifiers;
        QString text;
    };

    void refresh();
    // Shows the sections' rows, the selection kept on the row it was on.
    void showSections();
    void showActions(const QModelIndex& index);
    void activate(const QModelIndex& index);
    // The first selectable row from `row` on, going by `step` (then the other way).
    void select(int row, int step = 1);
    bool navigate(QKeyEvent* key);
    void type(const Key& key);

    Results m_results;
    Actions m_actions;
    SearchSections m_sections;
    SearchResults m_model;
    QLineEdit* m_field;
    QListView* m_list;
    QString m_actionsOf;
    bool m_handingOver = false;
    bool m_replaying = false;
    std::vector<Key> m_kept;
    QTimer m_handOverEnd;
};

} // namespace pomvar::srv
