#include "ipc/UserPrefs.h"

#include "ipc/StrictJsonReader.h"

namespace pomvar {

UserPrefs UserPrefs::decode(std::string_view json)
{
    const StrictJsonReader reader(json, "UserPrefs");
    UserPrefs prefs;
    prefs.menuDensity = reader.integer("MenuDensity");
    prefs.animationFx = reader.boolean("AnimationFx");
    prefs.saveExpAppCats = reader.boolean("SaveExpAppCats");
    prefs.saveLastMenu = reader.boolean("SaveLastMenu");
    prefs.oneExpAppCat = reader.boolean("OneExpAppCat");
    return prefs;
}

nlohmann::json UserPrefs::toJson() const
{
    return { { "MenuDensity", menuDensity },
             { "AnimationFx", animationFx },
             { "SaveExpAppCats", saveExpAppCats },
             { "SaveLastMenu", saveLastMenu },
             { "OneExpAppCat", oneExpAppCat } };
}

} // namespace pomvar
