#pragma once

class QWidget;

namespace pomvar::srv {

// The one way the server shows its windows: on the screen the pointer is on, where the user is
// looking, placed there when the window was hidden (a shown one stays where the user left it),
// then raised and given the focus.
class WindowPresenter
{
public:
    enum class Placement
    {
        centred,
        // Centred across, a third of the way down, so that a list below has room to grow.
        upperThird,
    };

    static void present(QWidget& window, Placement placement = Placement::centred);
};

} // namespace pomvar::srv
