#pragma once

#include "pomvarsrv/ui/ServerWindow.h"

namespace pomvar::srv {

// "Welcome to Pomvar", at the first start and on --welcome: what Pomvar is and where its icon
// lives, and the offer to start with categories made from the installed apps.
class WelcomeWindow : public ServerWindow
{
    Q_OBJECT

public:
    explicit WelcomeWindow(QWidget* parent = nullptr);

Q_SIGNALS:
    // "Start with categories"; "Skip" only closes the window.
    void startWithCategories();
};

} // namespace pomvar::srv
