#include "model/AppCatExpansion.h"

#include "ipc/Output.h"
#include "model/LenientJson.h"

#include <algorithm>

namespace pomvar {

AppCatExpansion::ExpansionMap AppCatExpansion::reconcile(ExpansionMap saved,
                                                         const nlohmann::json& renames,
                                                         const std::vector<std::string>& categories,
                                                         const std::optional<UserPrefs>& prefs)
{
    for (const auto& rename : renames) {
        if (!rename.is_object() || !rename.contains("old") || !rename.contains("new"))
            fatalStop(concat("PomvarViewModel.buildAppMenu(): a renamed category needs \"old\" "
                             "and \"new\": ",
                             rename.dump()));
        const std::string oldName = lenient::text(rename, "old");
        const std::string newName = lenient::text(rename, "new");
        // Set before removing: a rename to the same name drops the entry.
        if (const auto found = saved.find(oldName); found != saved.end())
            saved[newName] = found->second;
        else
            saved.erase(newName);
        saved.erase(oldName);
    }
    for (const auto& name : categories)
        saved.try_emplace(name, false);
    std::erase_if(saved, [&](const auto& entry) {
        return std::find(categories.begin(), categories.end(), entry.first) == categories.end();
    });
    if (!prefs)
        fatalStop("PomvarViewModel.buildAppMenu(): the preferences are not loaded");
    if (!prefs->saveExpAppCats) {
        for (auto& entry : saved)
            entry.second = false;
    }
    return saved;
}

} // namespace pomvar
