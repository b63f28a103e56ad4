#pragma once

#include <QAction>

#include <functional>

namespace pomvar {

class PomvarViewModel;

// The control menu's update entry: "Install Pomvar Update" with a badge while an update is
// available, "Check For Updates" otherwise. Either way it closes the panel and checks.
class CheckForUpdatesMenuItem : public QAction
{
    Q_OBJECT

public:
    CheckForUpdatesMenuItem(PomvarViewModel& vm,
                            std::function<void()> dismiss,
                            QObject* parent = nullptr);

private:
    void refresh(bool updateAvailable);

    PomvarViewModel& m_vm;
    std::function<void()> m_dismiss;
};

} // namespace pomvar
