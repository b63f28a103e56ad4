#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

class QKeyEvent;
class QWidget;

namespace pomvar {

class PomvarViewModel;

// Hands what is typed in the panel to the runtime server's search window, which opens where the
// panel is ("app-search-at"). The panel, a popup, holds the keyboard: it keeps it and forwards
// every key it gets ("app-search-key") until the search window has the focus. Then it closes,
// forwards the keys the window system had already sent it, and says it is done
// ("app-search-typed"). The search window keeps the keys typed into it until then and takes
// them after the forwarded ones, so nothing typed is lost or reordered, however fast the typing.
// Off X11 the panel cannot see the focus and hands over at once.
// It reads the keys in an event filter on the application, ahead of every other filter: the
// accessibility bridge's holds keys back while screen readers look at them, and would otherwise
// hand them back after later ones.
class SearchHandOver : public QObject
{
    Q_OBJECT

public:
    // `dismiss` closes the panel.
    SearchHandOver(PomvarViewModel& vm,
                   QWidget& panel,
                   std::function<void()> dismiss,
                   QObject* parent = nullptr);

    // Whether a key typed in the panel starts a search: printable text without Ctrl, Alt or Meta.
    static bool startsSearch(const QKeyEvent& key);
    // Puts the filter ahead of the others again: at every opening of the panel.
    void watchKeys();
    bool isActive() const { return m_active; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Opens the search with the panel's first typed key.
    void start(const QKeyEvent& first);
    void forward(const QKeyEvent& key);
    // The search window has the focus, or has had long enough to take it.
    void checkFocus();
    void finish();

    PomvarViewModel& m_vm;
    QWidget& m_panel;
    std::function<void()> m_dismiss;
    bool m_active = false;
    quint32 m_window = 0;
    QTimer m_focusCheck;
    QElapsedTimer m_since;
};

} // namespace pomvar
