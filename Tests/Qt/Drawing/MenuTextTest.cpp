#include "MenuText.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

TEST(MenuText, ATitleStaysOnOneLine)
{
    EXPECT_EQ(shownOnOneLine("a\nb\tc").toStdString(), "a↵b→c");
    EXPECT_EQ(shownOnOneLine("R&D\x01\x7f\xc2\x85").toStdString(), "R&D���");
    EXPECT_EQ(shownOnOneLine("a\xe2\x80\xa8z").toStdString(), "a↵z");
    EXPECT_EQ(shownOnOneLine(std::string(100000, 'x')).size(), 2001);
}

TEST(MenuText, TypedBeginningsIgnoreCaseAndAccents)
{
    const struct {
        const char* typed;
        const char* title;
        bool matches;
    } cases[] = {
        { "doc", "Documents", true },
        { "docx", "doc", false },
        { "e", "Élan", true },
        { "re", "Re\xcc\x81sume\xcc\x81", true },
        { "müß", "MUßE", true },
        { "a", "", false },
        { "fi", "\xef\xac\x81ne", true },
        { "e", "\xf0\x9f\x98\x80", false },
    };
    for (const auto& given : cases)
        EXPECT_EQ(TitlePrefix(QString::fromUtf8(given.typed)).matches(NSMenuItem(given.title)), given.matches)
            << given.typed << " for " << given.title;
}

} // namespace
