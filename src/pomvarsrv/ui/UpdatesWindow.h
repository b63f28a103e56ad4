#pragma once

#include "pomvarsrv/ui/ServerWindow.h"

class QLabel;
class QPushButton;

namespace pomvar::srv {

// "Pomvar Updates", on "check-updates": either "Pomvar X is installed. Restart to use it." with
// "Restart Pomvar", or "Pomvar X is up to date."; after the restart is asked, what happens next.
class UpdatesWindow : public ServerWindow
{
    Q_OBJECT

public:
    explicit UpdatesWindow(QWidget* parent = nullptr);

    // `newer`: the version installed when it is newer than `running`, else empty.
    void showState(const QString& running, const QString& newer, bool restarting);

Q_SIGNALS:
    void restartRequested();

private:
    QLabel* m_text;
    QPushButton* m_restart;
    QPushButton* m_close;
};

} // namespace pomvar::srv
