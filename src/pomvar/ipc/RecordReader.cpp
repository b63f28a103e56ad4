#include "ipc/RecordReader.h"

#include "ipc/JsonDocument.h"
#include "log/Output.h"

#include <cstdint>
#include <limits>
#include <string_view>

namespace pomvar {

namespace {

using simdjson::dom::element;
using simdjson::dom::element_type;

// The names nlohmann gives the JSON types, which the messages have always used.
const char* typeName(element value)
{
    switch (value.type()) {
        case element_type::ARRAY:
            return "array";
        case element_type::OBJECT:
            return "object";
        case element_type::INT64:
        case element_type::UINT64:
        case element_type::DOUBLE:
            return "number";
        case element_type::STRING:
            return "string";
        case element_type::BOOL:
            return "boolean";
        case element_type::NULL_VALUE:
            return "null";
    }
    return "value";
}

class StrictReader
{
public:
    StrictReader(const std::string& text, std::string_view recordName)
        : m_recordName(recordName)
    {
        std::string error;
        m_document = JsonDocument::parse(text, &error);
        if (!m_document)
            fail(concat("the reply is not JSON (", error, ")"));
        if (m_document->root().get(m_object) != simdjson::SUCCESS)
            fail(concat("the reply is a JSON ", typeName(m_document->root()), ", not an object"));
    }

    bool boolean(const char* key) const
    {
        const element value = member(key);
        if (!value.is_bool())
            fail(concat("key \"", key, "\" must be a boolean, not a ", typeName(value)));
        return value.get_bool().value_unsafe();
    }

    std::int64_t integer(const char* key) const
    {
        const element value = member(key);
        if (value.is_uint64() && !value.is_int64())
            fail(concat("key \"", key, "\" is out of the range of a 64-bit integer"));
        if (!value.is_int64())
            fail(concat("key \"",
                        key,
                        "\" must be an integer, not a ",
                        value.type() == element_type::DOUBLE ? "non-integral number"
                                                             : typeName(value)));
        return value.get_int64().value_unsafe();
    }

private:
    element member(const char* key) const
    {
        std::optional<element> found;
        for (const auto field : m_object) {
            if (field.key == key)
                found = field.value; // the last of repeated keys, as nlohmann keeps
        }
        if (!found)
            fail(concat("key \"", key, "\" is missing"));
        return *found;
    }

    [[noreturn]] void fail(std::string_view what) const
    {
        fatalStop(concat("Cannot decode ", m_recordName, ": ", what));
    }

    std::string_view m_recordName;
    std::optional<JsonDocument> m_document;
    simdjson::dom::object m_object;
};

} // namespace

UserPrefs readUserPrefs(const std::string& json)
{
    const StrictReader reader(json, "UserPrefs");
    UserPrefs prefs;
    prefs.menuDensity = reader.integer(UserPrefs::kMenuDensity);
    prefs.animationFx = reader.boolean(UserPrefs::kAnimationFx);
    prefs.saveExpAppCats = reader.boolean(UserPrefs::kSaveExpAppCats);
    prefs.saveLastMenu = reader.boolean(UserPrefs::kSaveLastMenu);
    prefs.oneExpAppCat = reader.boolean(UserPrefs::kOneExpAppCat);
    return prefs;
}

AppStatus readAppStatus(const std::string& json)
{
    const StrictReader reader(json, "AppStatus");
    return { reader.boolean(AppStatus::kReady), reader.boolean(AppStatus::kUpdateFinished) };
}

MenuDataStatus readMenuDataStatus(const std::string& json)
{
    const StrictReader reader(json, "MenuDataStatus");
    MenuDataStatus status;
    status.appFolderModified = reader.boolean(MenuDataStatus::kAppFolderModified);
    status.recentAppsModified = reader.boolean(MenuDataStatus::kRecentAppsModified);
    status.appcatsModified = reader.boolean(MenuDataStatus::kAppcatsModified);
    status.pinnedAppsModified = reader.boolean(MenuDataStatus::kPinnedAppsModified);
    return status;
}

} // namespace pomvar
