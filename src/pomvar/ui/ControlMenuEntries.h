#pragma once

#include <QMenu>

#include <functional>

namespace pomvar {

class PomvarViewModel;

// The control menu's entries: "Settings…", "About…", the update entry, then "Quit". The
// control bar's button pulls them down; a right-click on the tray icon shows them too.
class ControlMenuEntries : public QMenu
{
    Q_OBJECT

public:
    // `dismiss` closes the panel; `terminate` ends the application.
    ControlMenuEntries(PomvarViewModel& vm,
                       std::function<void()> dismiss,
                       std::function<void()> terminate,
                       QWidget* parent = nullptr);

private:
    PomvarViewModel& m_vm;
    std::function<void()> m_dismiss;
    std::function<void()> m_terminate;
};

} // namespace pomvar
