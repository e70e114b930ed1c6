#include "OpenPanelSettings.h"

#include "UserDefaults.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillbox {

namespace {

    constexpr const char* kKey = "OpenPanel";
    // In the order of OpenPanelSettings::Order.
    constexpr std::array<const char*, 3> kOrders { "name", "size", "modified" };
    // Anything larger was not left by a person.
    constexpr std::int64_t kLargestSide = 32767;

    double sideOf(const PropertyList& stored, const char* key)
    {
        const PropertyList* value = stored.value(key);
        const auto side = value ? value->asInt64() : std::nullopt;
        return side && *side > 0 && *side <= kLargestSide ? static_cast<double>(*side) : 0;
    }

    bool flagOf(const PropertyList& stored, const char* key, bool otherwise)
    {
        const PropertyList* value = stored.value(key);
        const bool* flag = value ? value->as<bool>() : nullptr;
        return flag ? *flag : otherwise;
    }

} // namespace

OpenPanelSettings OpenPanelSettings::read(UserDefaults& defaults)
{
    const PropertyList stored = defaults.object(kKey).value_or(PropertyList());
    OpenPanelSettings settings;
    settings.size = { sideOf(stored, "Width"), sideOf(stored, "Height") };
    if (settings.size.width == 0 || settings.size.height == 0)
        settings.size = {};
    const PropertyList* order = stored.value("Order");
    if (const std::string* name = order ? order->as<std::string>() : nullptr) {
        if (const auto* found = std::find(kOrders.begin(), kOrders.end(), *name); found != kOrders.end())
            settings.order = static_cast<Order>(found - kOrders.begin());
    }
    settings.isAscending = flagOf(stored, "Ascending", true);
    settings.showsHiddenFiles = flagOf(stored, "ShowsHiddenFiles", false);
    return settings;
}

void OpenPanelSettings::store(UserDefaults& defaults) const
{
    if (*this == read(defaults) || !defaults.isReadable())
        return;
    defaults.set(
        PropertyList::Dictionary {
            { "Width", static_cast<std::int64_t>(size.width) },
            { "Height", static_cast<std::int64_t>(size.height) },
            { "Order", kOrders[static_cast<std::size_t>(order)] },
            { "Ascending", isAscending },
            { "ShowsHiddenFiles", showsHiddenFiles },
        },
        kKey);
}

} // namespace quillbox
