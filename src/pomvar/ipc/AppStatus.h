#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace pomvar {

// What the runtime server reports about itself.
struct AppStatus
{
    bool ready = false;
    bool updateFinished = false;

    // Strict: stops the process unless both keys hold booleans.
    static AppStatus decode(std::string_view json);
    nlohmann::json toJson() const;
};

} // namespace pomvar
