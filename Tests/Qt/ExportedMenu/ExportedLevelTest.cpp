#include "ExportedLevel.h"

#include "NSMenu.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>

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

TEST(ExportedLevel, NoTitleIsWiderThanAScreen)
{
    NSMenu menu;
    std::string title = "x";
    for (int i = 0; i < 100; ++i)
        title += "\U0001F6D1"; // Two units each, so that both cuts fall into one.
    title += "y";
    menu.addItem(std::make_shared<NSMenuItem>(title, &kNothing));
    const QString shown = exportedLevel(menu, root()).at(0).title;
    EXPECT_EQ(shown.size(), 119);
    EXPECT_EQ(shown.toUtf8().count("\U0001F6D1"), 29 + 29);
    EXPECT_EQ(exportedTitle(*menu.itemArray()[0]), shown);
}

TEST(ExportedLevel, PicturesGoByTheFirstNameThatTheThemeHas)
{
    const TemporaryDirectory directory;
    directory.writeFile("hicolor/index.theme", "[Icon Theme]\nDirectories=apps\n[apps]\nSize=16\n");
    const std::string file = directory.writeFile("hicolor/apps/test-known.svg",
                                                 "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'><rect "
                                                 "width='16' height='16' fill='red'/></svg>");
    const QStringList formerPaths = QIcon::themeSearchPaths();
    const QString formerTheme = QIcon::themeName();
    QIcon::setThemeSearchPaths({ QString::fromStdString(directory.path("")) });
    QIcon::setThemeName("hicolor");

    NSMenu menu;
    for (const ImageContent& content : std::initializer_list<ImageContent> {
             ThemedImage { { "test-unknown", "test-known" }, file }, ThemedImage { { "test-unknown" }, file },
             ImageFile { file }, ThemedImage { { "text-test", "text-x-generic" }, {} } }) {
        auto item = std::make_shared<NSMenuItem>("row", &kNothing);
        item->setImage({ std::make_shared<KnownImageSource>("icon", content), { 16, 16 } });
        menu.addItem(std::move(item));
    }
    const auto rows = exportedLevel(menu, root());
    EXPECT_EQ(rows[0].iconName, "test-known");
    EXPECT_TRUE(rows[0].iconData.isEmpty());
    for (const int row : { 1, 2 }) {
        EXPECT_EQ(rows[row].iconName, "");
        EXPECT_EQ(QImage::fromData(rows[row].iconData, "PNG").pixelColor(8, 8), QColor(Qt::red)) << row;
    }
    EXPECT_EQ(rows[3].iconName, "text-x-generic");

    QIcon::setThemeSearchPaths(formerPaths);
    QIcon::setThemeName(formerTheme);
}

} // namespace
