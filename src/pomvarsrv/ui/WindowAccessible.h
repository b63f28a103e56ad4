#pragma once

namespace pomvar::srv {

// The organizer and the search window are plain widgets made top-level windows, which Qt may show
// to screen readers as fillers (the role of a widget's content); this gives them the role of a
// window, as dialogs have theirs.
class WindowAccessible
{
public:
    // Once per process, before those windows are first shown; later calls do nothing.
    static void install();
};

} // namespace pomvar::srv
