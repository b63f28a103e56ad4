#pragma once

namespace pomvar {

// The three menus of the panel. The raw value is what "LastMenu" stores.
enum class Pomvar
{
    MyApps = 0,
    Recent = 1,
    AllApps = 2,
};

} // namespace pomvar
