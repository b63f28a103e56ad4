#pragma once

#include "model/AppCatExpansion.h"
#include "model/MenuList.h"
#include "model/TreeItem.h"

#include <simdjson.h>

#include <vector>

namespace pomvar {

// Turns the runtime server's menu payloads, parsed but not converted, straight into rows,
// appending each row to the published list as soon as it is made. Missing or mistyped fields
// read leniently; a category listed in "appcats" without its member in "appcatapps" stops the
// process.
class MenuPayloadReader
{
public:
    using Value = simdjson::dom::element;

    static void readAllApps(Value payload, MenuList& allApps);
    static void readRecentApps(Value payload, MenuList& recentApps);
    static void readMyApps(Value payload, MenuList& myApps);
    // The "renamedAppcats" of a My Apps payload, in order; none when it is not an array.
    static std::vector<CategoryRename> readRenames(Value payload);

    // An app row; rows of the pinned block are always pinned, whatever "pinned" says.
    static TreeItem appItem(Value app, bool inPinnedBlock);
};

} // namespace pomvar
