#include "XSettings.h"

#include <gtest/gtest.h>

#include <QtEndian>

using namespace quillbox;

namespace {

// Settings as a manager writes them, in either order of bytes.
class Written {
public:
    explicit Written(bool isBigEndian) : isBigEndian_(isBigEndian), bytes_(isBigEndian ? "\1\0\0\0" : "\0\0\0\0", 4)
    {
        add<quint32>(7);
        add<quint32>(3);
    }
    Written& number(const QByteArray& name, quint32 value)
    {
        begin(0, name);
        add(value);
        return *this;
    }
    Written& text(const QByteArray& name, const QByteArray& value)
    {
        begin(1, name);
        add(static_cast<quint32>(value.size()));
        addPadded(value);
        return *this;
    }
    Written& colour(const QByteArray& name)
    {
        begin(2, name);
        bytes_ += QByteArray(8, '\xff');
        return *this;
    }
    const QByteArray& bytes() const { return bytes_; }

private:
    template <class T>
    void add(T value)
    {
        const T ordered = isBigEndian_ ? qToBigEndian(value) : qToLittleEndian(value);
        bytes_.append(reinterpret_cast<const char*>(&ordered), sizeof ordered);
    }
    void addPadded(const QByteArray& text) { bytes_ += text + QByteArray((4 - text.size() % 4) % 4, '\0'); }
    void begin(char kind, const QByteArray& name)
    {
        bytes_ += QByteArray(1, kind) + '\0';
        add(static_cast<quint16>(name.size()));
        addPadded(name);
        add<quint32>(1);
    }

    bool isBigEndian_;
    QByteArray bytes_;
};

TEST(XSettings, TextsAreFoundAmongOtherKindsAndBeforeDamage)
{
    for (const bool isBigEndian : { false, true }) {
        const QByteArray bytes = Written(isBigEndian)
                                     .number("Xft/DPI", 98304)
                                     .colour("Gtk/Colour")
                                     .text("Net/ThemeName", "Mint-Y-Dark")
                                     .bytes();
        EXPECT_EQ(XSettings::parse(bytes).value("Net/ThemeName"), "Mint-Y-Dark") << isBigEndian;
        for (qsizetype length = 0; length < bytes.size() - 1; ++length)
            EXPECT_TRUE(XSettings::parse(bytes.left(length)).isEmpty()) << length;
        QByteArray strange = bytes;
        strange[12] = '\x7f';
        EXPECT_TRUE(XSettings::parse(strange).isEmpty());
    }
}

} // namespace
