#include "ipc/AppStatus.h"

#include "ipc/StrictJsonReader.h"

namespace pomvar {

AppStatus AppStatus::decode(std::string_view json)
{
    const StrictJsonReader reader(json, "AppStatus");
    return { reader.boolean("ready"), reader.boolean("updateFinished") };
}

nlohmann::json AppStatus::toJson() const
{
    return { { "ready", ready }, { "updateFinished", updateFinished } };
}

} // namespace pomvar
