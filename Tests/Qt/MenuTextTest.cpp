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

TEST(MenuText, OnlyAnAttributedTitleHasLines)
{
    NSMenuItem item("one\ntwo");
    EXPECT_EQ(shownLines(item), QStringList("one↵two"));
    item.setAttributedTitle(AttributedString("one\ntwo\tmore"));
    EXPECT_EQ(shownLines(item), QStringList({ "one", "two→more" }));
}

TEST(MenuText, ATipShowsMarksAsTheyAreAndCanBeBroken)
{
    EXPECT_EQ(toolTipMarkup("<b>&"), "<p style='white-space:pre'>&lt;b&gt;&amp;</p>");
    const QString wide = toolTipMarkup("<b>/" + QString(200, 'x'));
    EXPECT_TRUE(wide.startsWith("<p style='white-space:pre-wrap'>&lt;b&gt;/" + QString(QChar(0x200B))))
        << wide.toStdString();
    EXPECT_EQ(wide.count(QChar(0x200B)), 4);
    EXPECT_EQ(toolTipMarkup(QString("two words ").repeated(30)).count(QChar(0x200B)), 0);
}

struct PrefixCase {
    const char* typed;
    const char* title;
    bool matches;
};

TEST(MenuText, TypedBeginningsIgnoreCaseAndAccents)
{
    const PrefixCase cases[] = {
        { "doc", "Documents", true },
        { "DOC", "documents", true },
        { "docx", "doc", false },
        { "e", "Élan", true },
        { "é", "elan", true },
        { "re", "Re\xcc\x81sume\xcc\x81", true },
        { "b", "abc", false },
        { "müß", "MUßE", true },
        { "システム", "システム設定", true },
        { "", "anything", false },
        { "a", "", false },
        { "fi", "\xef\xac\x81ne", true },
        { "e", "\xf0\x9f\x98\x80", false },
    };
    for (const PrefixCase& given : cases)
        EXPECT_EQ(TitlePrefix(QString::fromUtf8(given.typed)).matches(NSMenuItem(given.title)), given.matches)
            << given.typed << " for " << given.title;
}

} // namespace
