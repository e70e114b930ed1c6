#include <QApplication>
#include <QGlyphRun>
#include <QTextLayout>

#include <gtest/gtest.h>

namespace {

// The signs of the program's texts that not every font has. A machine without them shows boxes, so the fonts
// that have them are among its dependencies.
TEST(Fonts, HaveTheSignsThatTheTextsUse)
{
    for (const char32_t sign : { U'\u23AF', U'\u293D', U'\u2B05', U'\U0001F6D1', U'\u26A0' }) {
        QTextLayout layout(QString::fromUcs4(&sign, 1), QApplication::font());
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        const QList<QGlyphRun> runs = layout.glyphRuns();
        ASSERT_EQ(runs.size(), 1) << std::hex << static_cast<unsigned>(sign);
        EXPECT_FALSE(runs[0].glyphIndexes().contains(0)) << std::hex << static_cast<unsigned>(sign);
    }
}

} // namespace
