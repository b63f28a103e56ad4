#include "wire/Protocol.h"

#include <algorithm>

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

} // namespace pomvar::request
