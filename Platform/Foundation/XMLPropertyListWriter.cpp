#include "PropertyListLimits.h"
#include "Unicode.h"
#include "XMLPropertyList.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quillbox::xmlpropertylist {

namespace {

    // Writes one value after the other; what was wrong first is kept in problem().
    class Writer {
    public:
        void value(const PropertyList& list, int depth)
        {
            if (depth > propertylist::kMaximumDepth)
                fail("its values are nested too deeply");
            if (problem_)
                return;
            if (const auto* array = list.as<PropertyList::Array>())
                elements(*array, depth);
            else if (const auto* entries = list.as<PropertyList::Dictionary>())
                dictionary(*entries, depth);
            else
                simple(list, depth);
        }

        const char* problem() const { return problem_; }
        std::string takeText() { return std::move(text_); }

    private:
        void fail(const char* problem)
        {
            if (!problem_)
                problem_ = problem;
        }

        void line(int depth, const std::string& content)
        {
            text_.append(static_cast<std::size_t>(depth), '\t').append(content).append("\n");
        }

        void element(int depth, const char* name, const std::string& content)
        {
            line(depth, std::string("<") + name + '>' + content + "</" + name + '>');
        }

        void elements(const PropertyList::Array& array, int depth)
        {
            line(depth, "<array>");
            for (const PropertyList& element : array)
                value(element, depth + 1);
            line(depth, "</array>");
        }

        void dictionary(const PropertyList::Dictionary& entries, int depth)
        {
            line(depth, "<dict>");
            for (const auto& [key, entry] : entries) {
                element(depth + 1, "key", escaped(key));
                value(entry, depth + 1);
            }
            line(depth, "</dict>");
        }

        void simple(const PropertyList& list, int depth)
        {
            if (const auto* boolean = list.as<bool>())
                line(depth, *boolean ? "<true/>" : "<false/>");
            else if (const auto* number = list.as<std::int64_t>())
                element(depth, "integer", std::to_string(*number));
            else if (const auto* large = list.as<std::uint64_t>())
                element(depth, "integer", std::to_string(*large));
            else if (const auto* real = list.as<double>())
                element(depth, "real", shortest(*real));
            else if (const auto* text = list.as<std::string>())
                element(depth, "string", escaped(*text));
            else if (const auto* date = list.as<Date>())
                element(depth, "date", dateText(*date));
            else if (const auto* bytes = list.as<Data>())
                element(depth, "data", base64(*bytes));
        }

        std::string escaped(const std::string& text)
        {
            if (!unicode::isValidUTF8(text))
                fail("a text is not valid UTF-8");
            std::string result;
            for (const char c : text) {
                if (c >= 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r')
                    fail("a text has a control character");
                switch (c) {
                case '&':
                    result += "&amp;";
                    break;
                case '<':
                    result += "&lt;";
                    break;
                case '>':
                    result += "&gt;";
                    break;
                case '\r':
                    result += "&#13;"; // Else it is read as the end of a line.
                    break;
                default:
                    result += c;
                }
            }
            return result;
        }

        static std::string shortest(double number)
        {
            std::array<char, 32> digits {};
            return { digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr };
        }

        // From "2001-02-03 04:05:06 +0000".
        static std::string dateText(const Date& date)
        {
            std::string text = date.description();
            text.erase(text.rfind(' ')).append("Z");
            return text.replace(text.find(' '), 1, "T");
        }

        static std::string base64(const Data& bytes)
        {
            constexpr const char* kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
            std::string text;
            for (std::size_t i = 0; i < bytes.size(); i += 3) {
                const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
                std::uint32_t bits = 0;
                for (std::size_t j = 0; j < 3; ++j)
                    bits = (bits << 8U) | (j < count ? bytes[i + j] : 0U);
                for (std::size_t j = 0; j < 4; ++j)
                    text += j <= count ? kDigits[(bits >> (18U - 6U * j)) & 63U] : '=';
            }
            return text;
        }

        std::string text_;
        const char* problem_ = nullptr;
    };

} // namespace

Result<std::string> write(const PropertyList& list)
{
    Writer writer;
    writer.value(list, 0);
    if (writer.problem())
        return Error { 0, std::string("XML can't hold it: ") + writer.problem(), {} };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + writer.takeText() + "</plist>\n";
}

} // namespace quillbox::xmlpropertylist
