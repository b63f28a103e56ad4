#pragma once

#include "wire/Records.h"

#include <string>

namespace pomvar {

// Decodes the records the runtime server must send exactly: a JSON object with every key of
// the record, each holding a value of its JSON type (keys the record does not list are
// ignored; a repeated key counts with its last value). Anything else stops the process with a
// message naming the record, the key and the type at fault.
UserPrefs readUserPrefs(const std::string& json);
AppStatus readAppStatus(const std::string& json);
MenuDataStatus readMenuDataStatus(const std::string& json);

} // namespace pomvar
