#include "ExportedLevel.h"

#include "IconThemes.h"
#include "NSMenu.h"
#include "ShownTitle.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>

#include <cstring>

using namespace quillbox;

namespace {

const Selector kNothing { "nothing:", [](NSObject&, NSObject*) {} };

ExportedRow root()
{
    ExportedRow row;
    row.kind = ExportedRow::Kind::submenu;
    return row;
}

TEST(ExportedLevel, ATitleOfSeveralLinesBecomesAsManyDisabledRows)
{
    NSMenu menu;
    auto note = std::make_shared<NSMenuItem>();
    note->setAttributedTitle(AttributedString("This can't be read:\n/a\tb\nTry again."));
    menu.addItem(std::move(note));
    auto heading = std::make_shared<NSMenuItem>("Two\nlines", &kNothing);
    heading->setAttributedTitle(AttributedString("Two\nlines"));
    menu.addItem(std::move(heading));
    const auto rows = exportedLevel(menu, root());
    QStringList seen;
    for (const ExportedRow& row : rows)
        seen.append(QStringLiteral("%1 %2 %3").arg(static_cast<int>(row.kind)).arg(row.place).arg(row.title));
    EXPECT_EQ(
        seen,
        (QStringList { "0 0 This can't be read:", QString::fromUtf8("0 0 /a→b"), "0 0 Try again.", "1 1 Two lines" }));
}

// Hosts would put a wider menu over the one that it came from.
TEST(ShownTitle, IsNoWiderThanAThirdOfTheScreenAndCutsBetweenCharacters)
{
    const int screen = QGuiApplication::primaryScreen()->geometry().width();
    const QFontMetrics metrics(QGuiApplication::font());
    const QString family = QString::fromUtf8("\U0001F468\u200D\U0001F469\u200D\U0001F467"); // One character of five.
    const QString accented = QStringLiteral("e\u0301");
    for (const QString& character : { QStringLiteral("x"), family, accented }) {
        const QString title = QStringLiteral("begin ") + character.repeated(300) + QStringLiteral(" end");
        const QString shown = shownTitle(title);
        EXPECT_LT(metrics.horizontalAdvance(shown), screen / 3);
        EXPECT_LT(metrics.horizontalAdvance(shownTitle(title, TitleWidth::half)), screen / 6);
        const QStringList parts = shown.split(QChar(0x2026));
        ASSERT_EQ(parts.size(), 2) << shown.toStdString();
        EXPECT_TRUE(title.startsWith(parts[0]) && title.endsWith(parts[1])) << shown.toStdString();
        EXPECT_EQ((parts[0].size() - qsizetype(std::strlen("begin "))) % character.size(), 0) << shown.toStdString();
        EXPECT_EQ((parts[1].size() - qsizetype(std::strlen(" end"))) % character.size(), 0) << shown.toStdString();
    }
    EXPECT_EQ(shownTitle("short & \t_sweet_"), "short & \t_sweet_");
}

TEST(ExportedLevel, PicturesGoByTheFirstNameThatTheThemeHas)
{
    const IconThemes themes;
    const std::string file = themes.directory.writeFile("red.svg", plainSvg("red"));
    NSMenu menu;
    for (const ImageContent& content : std::initializer_list<ImageContent> {
             ThemedImage { { "unknown", "known" }, file }, ThemedImage { { "unknown" }, file }, ImageFile { file },
             ThemedImage { { "text-test", "text-x-generic" }, {} } }) {
        auto item = std::make_shared<NSMenuItem>("row", &kNothing);
        item->setImage({ std::make_shared<KnownImageSource>("icon", content), { 16, 16 } });
        menu.addItem(std::move(item));
    }
    const auto rows = exportedLevel(menu, root());
    EXPECT_EQ(rows[0].iconName, "known");
    EXPECT_TRUE(rows[0].iconData.isEmpty());
    for (const int row : { 1, 2 }) {
        EXPECT_EQ(rows[row].iconName, "");
        EXPECT_EQ(QImage::fromData(rows[row].iconData, "PNG").pixelColor(8, 8), QColor(Qt::red)) << row;
    }
    EXPECT_EQ(rows[3].iconName, "text-x-generic");
}

} // namespace
