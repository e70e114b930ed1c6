#include "OpenPanelSettings.h"

#include "TemporaryDirectory.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

TEST(OpenPanelSettings, AreStoredAndSurviveDamage)
{
    const TemporaryDirectory files;
    const OpenPanelSettings whole { { 640, 480 }, OpenPanelSettings::Order::modified, false, true };
    {
        UserDefaults defaults(files.path("defaults.plist"));
        OpenPanelSettings().store(defaults);
        EXPECT_TRUE(defaults.dictionaryRepresentation().empty()) << "nothing was changed";
        whole.store(defaults);
        ASSERT_TRUE(defaults.synchronize());
    }
    UserDefaults defaults(files.path("defaults.plist"));
    EXPECT_EQ(OpenPanelSettings::read(defaults), whole);

    const auto damagedBy = [&](const char* key, const PropertyList& value) {
        auto dictionary = *UserDefaults(defaults.path()).object("OpenPanel")->as<PropertyList::Dictionary>();
        dictionary[key] = value;
        defaults.set(dictionary, "OpenPanel");
        return OpenPanelSettings::read(defaults);
    };
    for (const PropertyList& width : { PropertyList(std::int64_t { -1 }), PropertyList(std::int64_t { 1 } << 40),
                                       PropertyList("wide"), PropertyList(640.5) })
        EXPECT_EQ(damagedBy("Width", width).size, NSSize());
    EXPECT_EQ(damagedBy("Order", "colour").order, OpenPanelSettings::Order::name);
    EXPECT_TRUE(damagedBy("Ascending", std::int64_t { 0 }).isAscending);
    EXPECT_FALSE(damagedBy("ShowsHiddenFiles", "yes").showsHiddenFiles);
    defaults.set(true, "OpenPanel");
    EXPECT_EQ(OpenPanelSettings::read(defaults), OpenPanelSettings());
}

} // namespace
