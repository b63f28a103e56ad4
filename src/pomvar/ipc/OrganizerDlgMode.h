#pragma once

namespace pomvar {

// The organizer pane a request opens; sent as its integer value.
enum class OrganizerDlgMode
{
    organize = 0,
    organizeApp = 1,
    settings = 2,
};

} // namespace pomvar
