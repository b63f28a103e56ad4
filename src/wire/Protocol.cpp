#include "wire/Protocol.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace pomvar::request {

bool expectsReply(std::string_view id)
{
    return std::find(awaited.begin(), awaited.end(), id) != awaited.end();
}

std::optional<Fields> fieldsOf(std::string_view id)
{
    if (id == launchId || id == getInfoAppId || id == togglePinAppId ||
        id == createNewAppcatCxtmnuId)
        return Fields::appkey;
    if (id == getInfoAppcatId)
        return Fields::appcat;
    if (id == toggleSetAppcatId)
        return Fields::appkeyAndAppcat;
    if (id == organizerId)
        return Fields::paneAndItemkey;
    if (id == placePinnedAppId)
        return Fields::appkeyAndBeforekey;
    if (id == placeAppcatId)
        return Fields::appcatAndBeforekey;
    if (id == placeAppcatAppId)
        return Fields::appkeyAppcatAndBeforekey;
    if (id == appSearchPlaceId || id == appSearchAtId)
        return Fields::place;
    if (id == appSearchKeyId)
        return Fields::keyPress;
    if (id == activationTokenId)
        return Fields::token;
    if (expectsReply(id) ||
        std::find(fireAndForget.begin(), fireAndForget.end(), id) != fireAndForget.end())
        return Fields::none;
    return std::nullopt;
}

namespace {

std::string withAppKey(std::string_view id, std::string_view appKey)
{
    std::string text = "{\n    \"id\": \"";
    text.append(id).append("\",\n    \"appkey\": \"").append(appKey).append("\"\n}");
    return text;
}

// A JSON string: quotes, backslashes and control characters escaped.
void appendQuoted(std::string& text, std::string_view value)
{
    static constexpr char kHex[] = "0123456789abcdef";
    text += '"';
    for (const char c : value) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            text += '\\';
            text += c;
        } else if (byte < 0x20) {
            text.append("\\u00").append(1, kHex[byte >> 4]).append(1, kHex[byte & 0xf]);
        } else {
            text += c;
        }
    }
    text += '"';
}

// The JSON string of a value.
std::string quoted(std::string_view value)
{
    std::string text;
    appendQuoted(text, value);
    return text;
}

// "{\n    \"id\": \"<id>\",\n    \"<name>\": <value>,...\n}", the values written as given.
std::string withMembers(std::string_view id,
                        std::initializer_list<std::pair<std::string_view, std::string>> members)
{
    std::string text = "{\n    \"id\": \"";
    text.append(id).append("\"");
    for (const auto& [name, value] : members)
        text.append(",\n    \"").append(name).append("\": ").append(value);
    text.append("\n}");
    return text;
}

// The same, the values strings, escaped.
std::string jsonRequest(std::string_view id,
                        std::initializer_list<std::pair<const char*, std::string_view>> fields)
{
    std::string text = "{\n    \"id\": \"";
    text.append(id).append("\"");
    for (const auto& [name, value] : fields) {
        text.append(",\n    \"").append(name).append("\": ");
        appendQuoted(text, value);
    }
    text.append("\n}");
    return text;
}

} // namespace

std::string plain(std::string_view id)
{
    std::string text = "{\n    \"id\": \"";
    text.append(id).append("\"\n}");
    return text;
}

std::string launch(std::string_view appKey)
{
    return withAppKey(launchId, appKey);
}

std::string getInfoApp(std::string_view appKey)
{
    return withAppKey(getInfoAppId, appKey);
}

std::string togglePinApp(std::string_view appKey)
{
    return withAppKey(togglePinAppId, appKey);
}

std::string createNewAppcatCxtmnu(std::string_view appKey)
{
    return withAppKey(createNewAppcatCxtmnuId, appKey);
}

std::string getInfoAppcat(std::string_view appCategory)
{
    std::string text = "{\n    \"id\": \"get-info-appcat\",\n    \"appcat\": \"";
    text.append(appCategory).append("\"\n}");
    return text;
}

std::string toggleSetAppcat(std::string_view appKey, std::string_view appCategory)
{
    std::string text = "{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"";
    text.append(appKey).append("\",\n    \"appcat\": \"").append(appCategory).append("\"\n }   ");
    return text;
}

std::string organizer(OrganizerDlgMode pane, std::string_view itemKey)
{
    std::string text = "{\n    \"id\": \"organizer\",\n    \"pane\": ";
    text.append(std::to_string(static_cast<int>(pane))).append(",\n    \"itemkey\": ");
    if (itemKey.empty())
        text.append("null");
    else
        text.append("\"").append(itemKey).append("\"");
    text.append("\n}");
    return text;
}

std::string placePinnedApp(std::string_view appKey, std::string_view beforeKey)
{
    return jsonRequest(placePinnedAppId,
                       { { field::appkey, appKey }, { field::beforekey, beforeKey } });
}

std::string placeAppcat(std::string_view appCategory, std::string_view beforeKey)
{
    return jsonRequest(placeAppcatId,
                       { { field::appcat, appCategory }, { field::beforekey, beforeKey } });
}

std::string placeAppcatApp(std::string_view appKey,
                           std::string_view appCategory,
                           std::string_view beforeKey)
{
    return jsonRequest(placeAppcatAppId,
                       { { field::appkey, appKey },
                         { field::appcat, appCategory },
                         { field::beforekey, beforeKey } });
}

std::string appSearchPlace(int x, int y)
{
    return withMembers(appSearchPlaceId,
                       { { field::x, std::to_string(x) }, { field::y, std::to_string(y) } });
}

std::string appSearchAt(int x, int y)
{
    return withMembers(appSearchAtId,
                       { { field::x, std::to_string(x) }, { field::y, std::to_string(y) } });
}

std::string appSearchKey(int key, int modifiers, std::string_view text)
{
    return withMembers(appSearchKeyId,
                       { { field::key, std::to_string(key) },
                         { field::modifiers, std::to_string(modifiers) },
                         { field::text, quoted(text) } });
}

std::string activationToken(std::string_view token)
{
    return withMembers(activationTokenId, { { field::token, quoted(token) } });
}

} // namespace pomvar::request
