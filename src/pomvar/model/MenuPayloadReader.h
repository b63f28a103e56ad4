#pragma once

#include "model/MenuList.h"
#include "model/TreeItem.h"

#include <nlohmann/json.hpp>

namespace pomvar {

// Turns the runtime server's menu payloads into rows, appending each row to the published list
// as soon as it is made. Missing or mistyped fields read leniently; a category listed in
// "appcats" without its member in "appcatapps" stops the process.
class MenuPayloadReader
{
public:
    static void readAllApps(const nlohmann::json& payload, MenuList& allApps);
    static void readRecentApps(const nlohmann::json& payload, MenuList& recentApps);
    static void readMyApps(const nlohmann::json& payload, MenuList& myApps);

    // An app row; rows of the pinned block are always pinned, whatever "pinned" says.
    static TreeItem appItem(const nlohmann::json& app, bool inPinnedBlock);
};

} // namespace pomvar
