#pragma once

class QPoint;
class QWidget;

namespace pomvar::srv {

// The one way the server shows its windows: on the screen the pointer is on, where the user is
// looking, placed there when the window was hidden (a shown one stays where the user left it),
// then raised and given the focus (WindowActivation).
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
    // Shown with its top left at `topLeft` (where the panel was), moved inside that screen.
    static void presentAt(QWidget& window, const QPoint& topLeft);

private:
    static void show(QWidget& window);
};

} // namespace pomvar::srv
