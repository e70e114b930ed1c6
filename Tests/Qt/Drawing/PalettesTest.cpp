#include "Palettes.h"

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

TEST(Palettes, AreOurOwnOnlyWhereTheToolkitsAreNotAsWished)
{
    const QPalette light = *paletteFor({ false, true }, QPalette(Qt::gray, Qt::gray));
    const QPalette dark = *paletteFor({ true, false }, light);
    const struct {
        ColourWish wish;
        const QPalette& given;
        bool isOwn;
    } cases[] = {
        { {}, light, false },
        { {}, dark, false },
        { { true, false }, light, true },
        { { true, false }, dark, false },
        { { false, false }, dark, true },
        { { true, true }, dark, true },
        { { std::nullopt, true }, dark, true },
        { { false, true }, light, false },
    };
    for (const auto& test : cases) {
        const auto own = paletteFor(test.wish, test.given);
        EXPECT_EQ(own.has_value(), test.isOwn);
        EXPECT_EQ(isDark(own.value_or(test.given)), test.wish.isDark.value_or(isDark(test.given)));
    }
}

TEST(Palettes, CanBeRead)
{
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
        { QPalette::WindowText, QPalette::Window },
        { QPalette::Text, QPalette::Base },
        { QPalette::Text, QPalette::AlternateBase },
        { QPalette::ButtonText, QPalette::Button },
        { QPalette::HighlightedText, QPalette::Highlight },
        { QPalette::ToolTipText, QPalette::ToolTipBase },
        { QPalette::Link, QPalette::Base },
        { QPalette::LinkVisited, QPalette::Base },
    };
    for (const bool wantsDark : { false, true })
        for (const bool isHighContrast : { false, true }) {
            const QPalette given =
                wantsDark ? QPalette(Qt::white, Qt::white) : *paletteFor({ true, false }, QPalette());
            const QPalette own = *paletteFor({ wantsDark, isHighContrast }, given);
            for (const auto& [text, background] : pairs)
                EXPECT_GE(contrast(own.color(text), own.color(background)), isHighContrast ? 7 : 4.5)
                    << wantsDark << isHighContrast << ' ' << text << " on " << background;
            EXPECT_LT(contrast(own.color(QPalette::Disabled, QPalette::Text), own.color(QPalette::Base)),
                      contrast(own.color(QPalette::Text), own.color(QPalette::Base)));
        }
}

TEST(Palettes, GtkThemesAreToldByTheirNames)
{
    const struct {
        const char* name;
        ColourWish wish;
    } cases[] = {
        { "", {} },
        { "Adwaita", {} },
        { "Darkroom", {} },
        { "Adwaita-dark", { true, false } },
        { "Adwaita:dark", { true, false } },
        { "Mint-Y-Dark-Aqua", { true, false } },
        { "HighContrast", { false, true } },
        { "HighContrastInverse", { true, true } },
    };
    for (const auto& test : cases)
        EXPECT_EQ(wishOfGtkTheme(test.name), test.wish) << test.name;
}

TEST(Palettes, ComeFromPlasmasSettings)
{
    const TemporaryDirectory directory;
    const auto read = [&](const std::string& text) {
        return plasmaPalette(QString::fromStdString(directory.writeFile("kdeglobals", text)));
    };
    EXPECT_FALSE(read("[General]\nColorScheme=BreezeLight\n"));
    EXPECT_FALSE(read("[Colors:Window]\nBackgroundNormal=1,2\nForegroundNormal=3,4,5\n"));
    const auto palette = read("[Colors:Window]\nBackgroundNormal=42,46,50\nForegroundNormal=252,252,252\n"
                              "[Colors:View]\nBackgroundNormal=27,30,32\nForegroundNormal=250,250,250\n"
                              "[Colors:Selection]\nBackgroundNormal=61,174,233\nForegroundNormal=255,255,255\n");
    ASSERT_TRUE(palette);
    EXPECT_EQ(palette->color(QPalette::Window), QColor(42, 46, 50));
    EXPECT_EQ(palette->color(QPalette::WindowText), QColor(252, 252, 252));
    EXPECT_EQ(palette->color(QPalette::Base), QColor(27, 30, 32));
    EXPECT_EQ(palette->color(QPalette::Text), QColor(250, 250, 250));
    EXPECT_EQ(palette->color(QPalette::Highlight), QColor(61, 174, 233));
    EXPECT_EQ(palette->color(QPalette::Button), QColor(42, 46, 50));
    EXPECT_TRUE(looksLike(*palette, *palette));
    EXPECT_FALSE(looksLike(*palette, *paletteFor({ true, false }, QPalette(Qt::white, Qt::white))));
}

TEST(Palettes, IconThemesHaveADarkSiblingWhereItIsInstalled)
{
    const TemporaryDirectory directory;
    for (const char* theme : { "breeze", "breeze-dark", "Papirus", "Papirus-Dark", "alone" })
        directory.writeFile(std::string(theme) + "/index.theme");
    const QStringList searched { "/nowhere", QString::fromStdString(directory.path("")) };
    const struct {
        const char* theme;
        bool isDark;
        const char* chosen;
    } cases[] = {
        { "breeze", true, "breeze-dark" },
        { "breeze", false, "breeze" },
        { "breeze-dark", true, "breeze-dark" },
        { "breeze-dark", false, "breeze" },
        { "Papirus", true, "Papirus-Dark" },
        { "alone", true, "alone" },
        { "", true, "" },
    };
    for (const auto& test : cases)
        EXPECT_EQ(iconThemeFor(test.theme, test.isDark, searched).toStdString(), test.chosen) << test.theme;
}

} // namespace
