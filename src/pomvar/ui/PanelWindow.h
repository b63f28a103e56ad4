#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace pomvar {

class PomvarView;
class SearchHandOver;
class PomvarViewModel;

// The borderless 360 × 494 panel that opens from the tray icon. It closes on a click outside,
// on Escape and on the actions that dismiss it, and only hides: the content is built anew at
// the next opening. Typing in it opens the search in its place (SearchHandOver).
class PanelWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int panelWidth = 360;
    static constexpr int panelHeight = 494;

    PanelWindow(PomvarViewModel& vm, std::function<void()> terminate, QWidget* parent = nullptr);
    ~PanelWindow() override;

    // Opens the panel next to `anchor` (the tray icon; an empty rectangle when unknown).
    void open(const QRect& anchor);
    // Opens the panel, or closes it when it is open or was closed by this very click.
    void toggle(const QRect& anchor);
    void dismiss();
    PomvarView* view() const;

Q_SIGNALS:
    void opened();
    void dismissed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    PomvarViewModel& m_vm;
    std::function<void()> m_terminate;
    QPointer<PomvarView> m_view;
    SearchHandOver* m_handOver;
    QElapsedTimer m_sinceHidden;
    QElapsedTimer m_sinceOpened;
    bool m_dismissing = false;
};

} // namespace pomvar
