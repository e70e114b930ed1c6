#include "MenuWorld.h"
#include "NarrowingLine.h"
#include "TitleSearch.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillbox;

namespace {

using User = PopupUser;

TEST(TitleSearchTest, FindsTheBestFirst)
{
    MenuWorld world;
    NSMenu menu;
    menu.setItemArray(world.rows("press, Résumé, my-resume, (resume), -, presume, Übung, "
                                 "Ελλάδα, дом.txt, a\u201cquote, ﬁle, x\u0301y"));
    const TitleSearch search(menu);
    const struct {
        const char* typed;
        const char* found;
    } cases[] = {
        { "resume", "Résumé|my-resume|presume|" },
        { "RÉS", "Résumé|my-resume|press|presume|" },
        { "ubu", "Übung|" },
        { "ΆΔΑ", "Ελλάδα|" },
        { "ДОМ", "дом.txt|" },
        { "quote", "a\u201cquote|" },
        { "fil", "ﬁle|" },
        { "xy", "x\u0301y|" },
        { "zz", "" },
        { "", "" },
    };
    for (const auto& given : cases) {
        std::string found;
        for (const std::uint32_t row : search.rowsContaining(QString::fromUtf8(given.typed)))
            found += menu.itemArray()[row]->title() + "|";
        EXPECT_EQ(found, given.found) << given.typed;
    }
}

class Narrowing : public testing::Test {
protected:
    Narrowing()
    {
        EXPECT_TRUE(world.open());
        User::key(Qt::Key_Down);
        User::key(Qt::Key_Right);
        world.takeLog();
    }
    static MenuPopup& files() { return *User::popups()[1]; }
    static std::string shown()
    {
        std::string titles;
        for (std::size_t row = 0; row < std::min<std::size_t>(files().rowCount(), 3); ++row)
            titles += files().item(row)->title() + "|";
        return titles + std::to_string(files().rowCount());
    }

    MenuWorld world {
        { { "top", "Files/, other" }, { "Files", "@alpha, beta/, (off), -, not alpha, n*500" }, { "beta", "within" } }
    };
};

TEST_F(Narrowing, ShowsTheRowsThatContainWhatIsTypedAndEscapeAll)
{
    const QRect place = files().geometry();
    User::key(Qt::Key_Slash, "/");
    EXPECT_EQ(shown(), "alpha|beta|off|505");
    User::type("alp");
    EXPECT_EQ(shown(), "alpha|not alpha|2");
    EXPECT_EQ(User::selected(), "Files/alpha");
    User::key(Qt::Key_Menu);
    EXPECT_EQ(User::selected(), "Files/alpha/Open");
    User::key(Qt::Key_Escape);
    User::key(Qt::Key_Down);
    User::key(Qt::Key_Escape);
    EXPECT_EQ(User::selected(), "Files/not alpha");
    EXPECT_EQ(shown(), "alpha|beta|off|505");
    EXPECT_EQ(files().geometry(), place);
    User::key(Qt::Key_Escape);
    EXPECT_EQ(User::selected(), "Files");
    EXPECT_EQ(world.takeLog(), "update of alpha, open of alpha, close of alpha, close Files")
        << "nothing is listed anew";
}

TEST_F(Narrowing, ARowOfTheNarrowedListIsTheOneThatIsOpenedAndChosen)
{
    User::key(Qt::Key_F, {}, Qt::ControlModifier);
    User::type("be");
    User::key(Qt::Key_Right);
    EXPECT_EQ(User::selected(), "Files/beta/within");
    User::key(Qt::Key_Left);
    User::key(Qt::Key_Backspace);
    User::key(Qt::Key_Backspace);
    EXPECT_EQ(shown(), "alpha|beta|off|505");
    User::type("n49");
    EXPECT_EQ(shown(), "n49|n490|n491|11");
    User::click("n491");
    EXPECT_TRUE(world.takeLog().ends_with("chose n491 with 0 popups"));
}

TEST_F(Narrowing, WithoutAMatchNoKeyDoesHarm)
{
    User::key(Qt::Key_Slash, "/");
    User::type("no such row");
    EXPECT_EQ(shown(), "0");
    for (const int key :
         { Qt::Key_Down, Qt::Key_End, Qt::Key_PageDown, Qt::Key_Return, Qt::Key_Right, Qt::Key_Menu, Qt::Key_Control })
        User::key(key, {}, key == Qt::Key_Control ? Qt::ControlModifier : Qt::NoModifier);
    EXPECT_EQ(User::selected(), "Files/-");
    files().line()->clear();
    User::key(Qt::Key_Backspace);
    EXPECT_FALSE(files().line());
    EXPECT_EQ(world.takeLog(), "");
}

TEST_F(Narrowing, ASlashMayBelongToATypedTitle)
{
    world.presenter.close();
    world.contents["top"] = "a/b, ac//";
    ASSERT_TRUE(world.open());
    User::type("a/b");
    EXPECT_EQ(User::selected(), "a/b");
    EXPECT_FALSE(User::popups()[0]->line());
    User::type("x/");
    EXPECT_TRUE(User::popups()[0]->line());
}

} // namespace
