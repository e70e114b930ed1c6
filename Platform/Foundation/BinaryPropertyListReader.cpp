#include "BinaryPropertyList.h"

#include "PropertyListLimits.h"
#include "Unicode.h"

#include <bit>
#include <cstring>

namespace quillbox::binarypropertylist {

namespace {

    constexpr std::size_t kHeaderSize = 8;
    constexpr std::size_t kTrailerSize = 32;

    void appendUTF8(char32_t c, std::string& text)
    {
        if (c < 0x80) {
            text += static_cast<char>(c);
        } else if (c < 0x800) {
            text += static_cast<char>(0xC0 | (c >> 6));
            text += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            text += static_cast<char>(0xE0 | (c >> 12));
            text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            text += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            text += static_cast<char>(0xF0 | (c >> 18));
            text += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            text += static_cast<char>(0x80 | (c & 0x3F));
        }
    }

    // Reads one list. A function returns nothing if the bytes are damaged, and problem_ keeps the first thing that was
    // wrong.
    //
    // The form is "bplist00", the objects, a table of their offsets, and a trailer of 32 bytes that says how wide
    // offsets and object references are, how many objects there are, which one is the root and where the table is. All
    // numbers are big-endian. An object begins with a byte whose high half is its type and whose low half is its size
    // (a power of two for numbers, a count for the rest, 15 if the count follows as an integer).
    class Reader {
    public:
        explicit Reader(const Data& bytes) : bytes_(bytes) { }

        Result<PropertyList> read()
        {
            if (auto root = readTrailer() ? object(topObject_, 0) : std::nullopt)
                return std::move(*root);
            return Error { 0, std::string("the property list is damaged: ") + problem_, {} };
        }

    private:
        struct Marker {
            unsigned type;
            unsigned low;
            std::size_t position;
        };

        std::nullopt_t fail(const char* problem)
        {
            if (!problem_)
                problem_ = problem;
            return std::nullopt;
        }

        // Returns the number that begins at `position`. The caller has checked that its `width` of 1 to 8 bytes is
        // there.
        std::uint64_t number(std::size_t position, std::size_t width) const
        {
            std::uint64_t value = 0;
            for (std::size_t i = 0; i < width; ++i)
                value = (value << 8) | bytes_[position + i];
            return value;
        }

        bool readTrailer()
        {
            if (bytes_.size() < kHeaderSize + kTrailerSize || !hasMagic(bytes_)) {
                fail("it has no header or is cut short");
                return false;
            }
            const std::size_t trailer = bytes_.size() - kTrailerSize;
            offsetWidth_ = bytes_[trailer + 6];
            referenceWidth_ = bytes_[trailer + 7];
            objectCount_ = number(trailer + 8, 8);
            topObject_ = number(trailer + 16, 8);
            const std::uint64_t table = number(trailer + 24, 8);
            const auto isWidth = [](std::size_t width) { return width >= 1 && width <= 8; };
            if (!isWidth(offsetWidth_) || !isWidth(referenceWidth_) || table < kHeaderSize || table > trailer
                || objectCount_ > (trailer - table) / offsetWidth_) {
                fail("its trailer is damaged");
                return false;
            }
            offsetTable_ = static_cast<std::size_t>(table);
            return true;
        }

        // Whether `count` items of `width` bytes lie before the offset table.
        bool fits(std::size_t position, std::uint64_t count, std::size_t width) const
        {
            return position <= offsetTable_ && count <= (offsetTable_ - position) / width;
        }

        bool isWithinBudget(bool isWithin)
        {
            if (!isWithin)
                fail("it holds too much");
            return isWithin;
        }

        std::optional<Marker> marker(std::uint64_t index)
        {
            if (index >= objectCount_)
                return fail("an object does not exist");
            const std::uint64_t offset =
                number(offsetTable_ + static_cast<std::size_t>(index) * offsetWidth_, offsetWidth_);
            if (offset < kHeaderSize || offset >= offsetTable_)
                return fail("an object lies outside");
            const auto position = static_cast<std::size_t>(offset);
            const unsigned head = bytes_[position];
            return Marker { head >> 4U, head & 15U, position + 1 };
        }

        // Returns the number of elements and moves the marker's position to the first of them.
        std::optional<std::uint64_t> count(Marker& marker)
        {
            if (marker.low != 15)
                return marker.low;
            if (!fits(marker.position, 1, 1))
                return fail("a count is cut short");
            const unsigned head = bytes_[marker.position++];
            const std::size_t width = std::size_t { 1 } << (head & 15U);
            if (head >> 4U != 1 || width > 8 || !fits(marker.position, width, 1))
                return fail("a count is damaged");
            const std::uint64_t value = number(marker.position, width);
            marker.position += width;
            return value;
        }

        std::optional<PropertyList> object(std::uint64_t index, int depth)
        {
            if (depth > propertylist::kMaximumDepth)
                return fail("its values are nested too deeply");
            std::optional<Marker> found = marker(index);
            if (!found || !isWithinBudget(budget_.addValue()))
                return std::nullopt;
            switch (found->type) {
            case 0x0:
                if (found->low == 8 || found->low == 9)
                    return PropertyList(found->low == 9);
                return fail("an object is of an unknown type");
            case 0x1:
                return integer(*found);
            case 0x2:
                return real(*found);
            case 0x3:
                return date(*found);
            case 0x4:
                return data(*found);
            case 0x5:
            case 0x6:
                if (std::optional<std::string> text = string(*found))
                    return PropertyList(std::move(*text));
                return std::nullopt;
            case 0xA:
                return array(*found, depth);
            case 0xD:
                return dictionary(*found, depth);
            default:
                return fail("an object is of an unknown type");
            }
        }

        std::optional<PropertyList> integer(const Marker& marker)
        {
            const std::size_t width = std::size_t { 1 } << marker.low;
            if (width > 16 || !fits(marker.position, width, 1))
                return fail("an integer is damaged");
            // Integers of one to four bytes are unsigned, those of eight are signed; sixteen bytes hold what needs all
            // of eight unsigned ones.
            const std::uint64_t low =
                number(width == 16 ? marker.position + 8 : marker.position, width == 16 ? 8 : width);
            const bool isNegative = (low >> 63U) != 0;
            if (width == 16) {
                const std::uint64_t high = number(marker.position, 8);
                if (high == 0 && isNegative)
                    return PropertyList(low);
                if (high != (isNegative ? ~std::uint64_t { 0 } : 0))
                    return fail("an integer is too large");
            }
            return PropertyList(static_cast<std::int64_t>(low));
        }

        std::optional<PropertyList> real(const Marker& marker)
        {
            const std::size_t width = std::size_t { 1 } << marker.low;
            if ((width != 4 && width != 8) || !fits(marker.position, width, 1))
                return fail("a real number is damaged");
            if (width == 4)
                return PropertyList(
                    static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(number(marker.position, 4)))));
            return PropertyList(std::bit_cast<double>(number(marker.position, 8)));
        }

        std::optional<PropertyList> date(const Marker& marker)
        {
            if (marker.low != 3 || !fits(marker.position, 8, 1))
                return fail("a date is damaged");
            return PropertyList(Date { std::bit_cast<double>(number(marker.position, 8)) });
        }

        std::optional<PropertyList> data(Marker& marker)
        {
            const std::optional<std::uint64_t> length = count(marker);
            if (!length || !fits(marker.position, *length, 1))
                return fail("data is cut short");
            if (!isWithinBudget(budget_.addBytes(static_cast<std::size_t>(*length))))
                return std::nullopt;
            const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(marker.position);
            return PropertyList(Data(first, first + static_cast<std::ptrdiff_t>(*length)));
        }

        std::optional<std::string> string(Marker& marker)
        {
            const std::size_t unitWidth = marker.type == 0x5 ? 1 : 2;
            const std::optional<std::uint64_t> length = count(marker);
            if (!length || !fits(marker.position, *length, unitWidth))
                return fail("a text is cut short");
            const auto units = static_cast<std::size_t>(*length);
            std::optional<std::string> text = unitWidth == 2
                ? utf16(marker.position, units)
                : std::string(reinterpret_cast<const char*>(bytes_.data()) + marker.position, units);
            // By the rules these one-byte units are ASCII, but some writers put UTF-8 there.
            if (text && !unicode::isValidUTF8(*text))
                return fail("a text has impossible characters");
            return text && isWithinBudget(budget_.addBytes(text->size())) ? std::move(text) : std::nullopt;
        }

        std::optional<std::string> utf16(std::size_t position, std::size_t units)
        {
            std::string text;
            text.reserve(units);
            for (std::size_t i = 0; i < units; ++i) {
                auto unit = static_cast<char32_t>(number(position + 2 * i, 2));
                if (unit >= 0xD800 && unit < 0xE000) {
                    const auto next = i + 1 < units ? static_cast<char32_t>(number(position + 2 * i + 2, 2)) : 0;
                    if (unit >= 0xDC00 || next < 0xDC00 || next >= 0xE000)
                        return fail("a text has half a character");
                    unit = 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
                    ++i;
                }
                appendUTF8(unit, text);
            }
            return text;
        }

        std::uint64_t reference(std::size_t position, std::uint64_t index) const
        {
            return number(position + static_cast<std::size_t>(index) * referenceWidth_, referenceWidth_);
        }

        std::optional<PropertyList> array(Marker& marker, int depth)
        {
            const std::optional<std::uint64_t> length = count(marker);
            if (!length || !fits(marker.position, *length, referenceWidth_))
                return fail("an array is cut short");
            PropertyList::Array elements;
            for (std::uint64_t i = 0; i < *length; ++i) {
                std::optional<PropertyList> element = object(reference(marker.position, i), depth + 1);
                if (!element)
                    return std::nullopt;
                elements.push_back(std::move(*element));
            }
            return PropertyList(std::move(elements));
        }

        std::optional<PropertyList> dictionary(Marker& marker, int depth)
        {
            const std::optional<std::uint64_t> length = count(marker);
            if (!length || !fits(marker.position, *length, 2 * referenceWidth_))
                return fail("a dictionary is cut short");
            PropertyList::Dictionary entries;
            for (std::uint64_t i = 0; i < *length; ++i) {
                std::optional<Marker> key = this->marker(reference(marker.position, i));
                if (!key)
                    return std::nullopt;
                if (key->type != 0x5 && key->type != 0x6)
                    return fail("a key is no text");
                std::optional<std::string> name = string(*key);
                if (!name)
                    return std::nullopt;
                std::optional<PropertyList> value = object(reference(marker.position, *length + i), depth + 1);
                if (!value)
                    return std::nullopt;
                entries.insert_or_assign(std::move(*name), std::move(*value));
            }
            return PropertyList(std::move(entries));
        }

        const Data& bytes_;
        const char* problem_ = nullptr;
        std::size_t offsetWidth_ = 0;
        std::size_t referenceWidth_ = 0;
        std::size_t offsetTable_ = 0;
        std::uint64_t objectCount_ = 0;
        std::uint64_t topObject_ = 0;
        propertylist::Budget budget_;
    };

} // namespace

bool hasMagic(const Data& bytes)
{
    return bytes.size() >= kHeaderSize && std::memcmp(bytes.data(), "bplist00", kHeaderSize) == 0;
}

Result<PropertyList> read(const Data& bytes)
{
    return Reader(bytes).read();
}

} // namespace quillbox::binarypropertylist
