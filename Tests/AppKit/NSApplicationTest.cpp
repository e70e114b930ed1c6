#include "NSApplication.h"

#include "HeadlessDesktop.h"
#include "Installed.h"
#include "TemporaryDirectory.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    // What is on the disk when the application is told that it ends.
    class Delegate final : public NSApplicationDelegate {
    public:
        explicit Delegate(std::string path) : path_(std::move(path)) { }
        void applicationDidFinishLaunching() override { UserDefaults::standard().set(true, "launched"); }
        void applicationWillTerminate() override { storedAtTheEnd = UserDefaults(path_).dictionaryRepresentation(); }

        PropertyList::Dictionary storedAtTheEnd;

    private:
        std::string path_;
    };

    class Settings : public testing::Test {
    protected:
        Settings() { NSApplication::shared().setDelegate(delegate); }
        ~Settings() override { NSApplication::shared().setDelegate(nullptr); }
        PropertyList::Dictionary stored() const { return UserDefaults(defaults.path()).dictionaryRepresentation(); }

        TemporaryDirectory files;
        HeadlessDesktop desktop;
        UserDefaults defaults { files.path("defaults.plist") };
        const Installed<UserDefaults> installed { defaults };
        std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>(defaults.path());
    };

    TEST_F(Settings, AreWrittenWhenTheOutermostEventEnds)
    {
        {
            const NSApplication::EventScope outer;
            defaults.set(true, "a");
            {
                const NSApplication::EventScope inner;
                defaults.set(true, "b");
            }
            EXPECT_TRUE(stored().empty()) << "an event within another writes nothing";
        }
        EXPECT_EQ(stored().size(), 2U);
        NSApplication::shared().run();
        EXPECT_EQ(stored().size(), 3U) << "launching is an event";
    }

    TEST_F(Settings, ThatArePendingAtQuitAreWrittenBeforeTheEnd)
    {
        const NSApplication::EventScope event;
        defaults.set(true, "a");
        NSApplication::shared().terminate(nullptr);
        EXPECT_TRUE(desktop.isStopped);
        EXPECT_EQ(delegate->storedAtTheEnd.size(), 1U);
    }

} // namespace

} // namespace quillbox
