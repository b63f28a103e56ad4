#pragma once

namespace pomvar {

// What the runtime server reports about itself.
struct AppStatus
{
    bool ready = false;
    bool updateFinished = false;
};

} // namespace pomvar
