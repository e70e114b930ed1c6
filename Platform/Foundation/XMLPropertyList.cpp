#include "XMLPropertyList.h"

#include "PropertyListLimits.h"
#include "Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <limits>
#include <pugixml.hpp>

namespace quillbox::xmlpropertylist {

namespace {

    constexpr std::size_t kMaximumSize = std::size_t { 64 } << 20;
    // The parser's tree takes about a hundred bytes for each "<", so these are counted before the tree is made.
    constexpr std::ptrdiff_t kMaximumMarks = std::ptrdiff_t { 2 } << 20;

    constexpr std::string_view kWhitespace = " \t\r\n";

    std::string_view trimmed(std::string_view text)
    {
        const std::size_t first = text.find_first_not_of(kWhitespace);
        return first == std::string_view::npos ? std::string_view()
                                               : text.substr(first, text.find_last_not_of(kWhitespace) - first + 1);
    }

    template <class Number, class... Format>
    std::optional<Number> numberFrom(std::string_view text, Format... format)
    {
        Number number {};
        const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number, format...);
        return problem == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
    }

    // Reads a decimal number, or a hexadecimal one after "0x", with or without a sign.
    std::optional<PropertyList> integerFrom(std::string_view text)
    {
        const bool isNegative = text.starts_with('-');
        if (isNegative || text.starts_with('+'))
            text.remove_prefix(1);
        const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
        const auto magnitude = numberFrom<std::uint64_t>(text.substr(isHexadecimal ? 2 : 0), isHexadecimal ? 16 : 10);
        constexpr std::uint64_t kLargestSigned = std::numeric_limits<std::int64_t>::max();
        if (!magnitude || (isNegative && *magnitude > kLargestSigned + 1))
            return std::nullopt;
        if (isNegative)
            return PropertyList(static_cast<std::int64_t>(0 - *magnitude));
        return *magnitude <= kLargestSigned ? PropertyList(static_cast<std::int64_t>(*magnitude))
                                            : PropertyList(*magnitude);
    }

    std::optional<PropertyList> realFrom(std::string_view text)
    {
        if (text.starts_with('+') && !text.starts_with("+-"))
            text.remove_prefix(1);
        const auto number = numberFrom<double>(text);
        return number ? std::optional(PropertyList(*number)) : std::nullopt;
    }

    // Reads a date such as "2001-02-03T04:05:06Z". Years have four digits or five and may lie before year 0.
    std::optional<PropertyList> dateFrom(std::string_view text)
    {
        const bool isBeforeYear0 = text.starts_with('-');
        if (isBeforeYear0)
            text.remove_prefix(1);
        constexpr std::string_view kAfterYear = "-00-00T00:00:00Z";
        if (text.size() < kAfterYear.size() + 4 || text.size() > kAfterYear.size() + 5)
            return std::nullopt;
        const std::size_t yearDigits = text.size() - kAfterYear.size();
        const std::string_view rest = text.substr(yearDigits);
        std::array<unsigned, 5> fields {};
        std::size_t field = 0;
        for (std::size_t i = 0; i < kAfterYear.size(); ++i) {
            if (kAfterYear[i] != '0') {
                if (rest[i] != kAfterYear[i])
                    return std::nullopt;
                continue;
            }
            const auto number = numberFrom<unsigned>(rest.substr(i, 2));
            if (!number)
                return std::nullopt;
            fields[field++] = *number;
            ++i;
        }
        const auto year = numberFrom<unsigned>(text.substr(0, yearDigits));
        if (!year || *year > 32767 || fields[2] > 23 || fields[3] > 59 || fields[4] > 60)
            return std::nullopt;
        const int signedYear = isBeforeYear0 ? -static_cast<int>(*year) : static_cast<int>(*year);
        const std::chrono::year_month_day day { std::chrono::year(signedYear), std::chrono::month(fields[0]),
                                                std::chrono::day(fields[1]) };
        if (!day.ok())
            return std::nullopt;
        const std::chrono::duration<double> sinceEpoch = std::chrono::sys_days(day).time_since_epoch();
        return PropertyList(
            Date::sinceUnixEpoch(sinceEpoch.count() + 3600.0 * fields[2] + 60.0 * fields[3] + 1.0 * fields[4]));
    }

    std::optional<PropertyList> dataFrom(std::string_view text)
    {
        constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        Data bytes;
        bytes.reserve(text.size() / 4 * 3);
        std::uint32_t bits = 0;
        int bitCount = 0;
        std::size_t paddingCount = 0;
        std::size_t digitCount = 0;
        for (const char c : text) {
            if (kWhitespace.find(c) != std::string_view::npos)
                continue;
            if (c == '=') {
                ++paddingCount;
                continue;
            }
            const std::size_t digit = kDigits.find(c);
            if (digit == std::string_view::npos || paddingCount > 0)
                return std::nullopt;
            ++digitCount;
            bits = (bits << 6U) | static_cast<std::uint32_t>(digit);
            bitCount += 6;
            if (bitCount >= 8) {
                bitCount -= 8;
                bytes.push_back(static_cast<std::uint8_t>(bits >> static_cast<unsigned>(bitCount)));
            }
        }
        if (digitCount % 4 == 1 || paddingCount != (4 - digitCount % 4) % 4)
            return std::nullopt;
        return PropertyList(std::move(bytes));
    }

    // Reads one list. A function returns nothing if the list is damaged, and problem() keeps the first thing that was
    // wrong.
    class Reader {
    public:
        const char* problem() const { return problem_; }

        std::optional<PropertyList> value(const pugi::xml_node& element, int depth)
        {
            if (depth > propertylist::kMaximumDepth)
                return fail("its values are nested too deeply");
            if (!budget_.addValue())
                return fail("it holds too much");
            const std::string_view name = element.name();
            if (name == "array")
                return array(element, depth);
            if (name == "dict")
                return dictionary(element, depth);
            const auto content = text(element);
            if (!content)
                return std::nullopt;
            if (name == "string")
                return PropertyList(*content);
            if (auto simple = simpleValue(name, trimmed(*content)))
                return simple;
            return fail("a value can't be read");
        }

    private:
        std::nullopt_t fail(const char* problem)
        {
            if (!problem_)
                problem_ = problem;
            return std::nullopt;
        }

        static std::optional<PropertyList> simpleValue(std::string_view name, std::string_view content)
        {
            if (name == "integer")
                return integerFrom(content);
            if (name == "real")
                return realFrom(content);
            if (name == "date")
                return dateFrom(content);
            if (name == "data")
                return dataFrom(content);
            if ((name == "true" || name == "false") && content.empty())
                return PropertyList(name == "true");
            return std::nullopt;
        }

        // Returns everything between the tags of an element that holds no other elements.
        std::optional<std::string> text(const pugi::xml_node& element)
        {
            std::string content;
            for (const pugi::xml_node& part : element.children()) {
                if (part.type() != pugi::node_pcdata && part.type() != pugi::node_cdata)
                    return fail("a text holds other elements");
                content += part.value();
            }
            // A character reference may name something that is no character.
            if (!unicode::isValidUTF8(content))
                return fail("a text has impossible characters");
            if (!budget_.addBytes(content.size()))
                return fail("it holds too much");
            return content;
        }

        // Returns the elements within `parent`. Text between them is an error.
        std::optional<std::vector<pugi::xml_node>> elements(const pugi::xml_node& parent)
        {
            std::vector<pugi::xml_node> found;
            for (const pugi::xml_node& child : parent.children()) {
                if (child.type() == pugi::node_element)
                    found.push_back(child);
                else if (!trimmed(child.value()).empty())
                    return fail("there is text between its values");
            }
            return found;
        }

        std::optional<PropertyList> array(const pugi::xml_node& element, int depth)
        {
            const auto children = elements(element);
            if (!children)
                return std::nullopt;
            PropertyList::Array values;
            for (const pugi::xml_node& child : *children) {
                std::optional<PropertyList> read = value(child, depth + 1);
                if (!read)
                    return std::nullopt;
                values.push_back(std::move(*read));
            }
            return PropertyList(std::move(values));
        }

        std::optional<PropertyList> dictionary(const pugi::xml_node& element, int depth)
        {
            const auto children = elements(element);
            if (!children)
                return std::nullopt;
            PropertyList::Dictionary entries;
            for (std::size_t i = 0; i < children->size(); i += 2) {
                if (std::string_view((*children)[i].name()) != "key" || i + 1 == children->size())
                    return fail("a dictionary is no list of keys and values");
                std::optional<std::string> key = text((*children)[i]);
                std::optional<PropertyList> read = key ? value((*children)[i + 1], depth + 1) : std::nullopt;
                if (!read)
                    return std::nullopt;
                entries.insert_or_assign(std::move(*key), std::move(*read));
            }
            return PropertyList(std::move(entries));
        }

        propertylist::Budget budget_;
        const char* problem_ = nullptr;
    };

    Error damaged(const char* problem)
    {
        return Error { 0, std::string("the property list is damaged: ") + problem, {} };
    }

} // namespace

Result<PropertyList> read(std::string_view text)
{
    if (text.size() > kMaximumSize || std::count(text.begin(), text.end(), '<') > kMaximumMarks)
        return Error { 0, "the property list is too large", {} };
    if (!unicode::isValidUTF8(text))
        return damaged("it is not valid UTF-8");
    pugi::xml_document document;
    const auto parsed = document.load_buffer(
        text.data(), text.size(),
        pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_ws_pcdata_single, pugi::encoding_utf8);
    const pugi::xml_node root = document.document_element();
    if (!parsed || std::string_view(root.name()) != "plist" || root.next_sibling())
        return damaged("its XML can't be read");
    const pugi::xml_node top = root.first_child();
    if (top.type() != pugi::node_element || top.next_sibling())
        return damaged("it does not hold one value");
    Reader reader;
    if (auto value = reader.value(top, 0))
        return std::move(*value);
    return damaged(reader.problem());
}

} // namespace quillbox::xmlpropertylist
