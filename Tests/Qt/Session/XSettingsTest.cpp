#include "XSettings.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

template <std::size_t Length>
QByteArray bytes(const char (&literal)[Length])
{
    return { literal, Length - 1 };
}

// Settings as a manager writes them, in either order of bytes: a number, a colour and a text.
const QByteArray kSettings[] = {
    bytes("\0\0\0\0\7\0\0\0\3\0\0\0"
          "\0\0\7\0Xft/DPI\0\1\0\0\0\0\200\1\0"
          "\2\0\12\0Gtk/Colour\0\0\1\0\0\0\377\377\377\377\377\377\377\377"
          "\1\0\15\0Net/ThemeName\0\0\0\1\0\0\0\13\0\0\0Mint-Y-Dark\0"),
    bytes("\1\0\0\0\0\0\0\7\0\0\0\3"
          "\0\0\0\7Xft/DPI\0\0\0\0\1\0\1\200\0"
          "\2\0\0\12Gtk/Colour\0\0\0\0\0\1\377\377\377\377\377\377\377\377"
          "\1\0\0\15Net/ThemeName\0\0\0\0\0\0\1\0\0\0\13Mint-Y-Dark\0"),
};

TEST(XSettings, TextsAreFoundAmongOtherKindsAndBeforeDamage)
{
    for (const QByteArray& settings : kSettings) {
        SCOPED_TRACE(settings[0] ? "big-endian" : "little-endian");
        EXPECT_EQ(XSettings::parse(settings).value("Net/ThemeName"), "Mint-Y-Dark");
        for (qsizetype length = 0; length < settings.size() - 1; ++length)
            EXPECT_TRUE(XSettings::parse(settings.left(length)).isEmpty()) << length;
        QByteArray strange = settings;
        strange[12] = '\x7f';
        EXPECT_TRUE(XSettings::parse(strange).isEmpty());
    }
}

} // namespace
