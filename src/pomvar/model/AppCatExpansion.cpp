#include "model/AppCatExpansion.h"

#include "log/Output.h"

#include <algorithm>

namespace pomvar {

AppCatExpansion::ExpansionMap AppCatExpansion::reconcile(ExpansionMap saved,
                                                         const std::vector<CategoryRename>& renames,
                                                         const std::vector<std::string>& categories,
                                                         const std::optional<UserPrefs>& prefs)
{
    for (const auto& rename : renames) {
        if (rename.malformed)
            fatalStop(concat("PomvarViewModel.buildAppMenu(): a renamed category needs \"old\" "
                             "and \"new\": ",
                             *rename.malformed));
        const std::string& oldName = rename.oldName;
        const std::string& newName = rename.newName;
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
