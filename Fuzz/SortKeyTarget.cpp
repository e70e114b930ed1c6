#include "FuzzTarget.h"

#include "Check.h"
#include "NameOrder.h"
#include "StringComparison.h"
#include "Unicode.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <utf8proc.h>
#include <vector>

namespace quillbox {

namespace {

    std::string mapped(const std::string& text, int options)
    {
        utf8proc_uint8_t* bytes = nullptr;
        const utf8proc_ssize_t length =
            utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                         static_cast<utf8proc_ssize_t>(text.size()), &bytes, static_cast<utf8proc_option_t>(options));
        const std::unique_ptr<utf8proc_uint8_t, void (*)(void*)> owner(bytes, std::free);
        QB_CHECK(length >= 0);
        return { reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length) };
    }

    // One character, or the value of a run of digits, which is ordered as if it were "0".
    struct Element {
        char32_t character;
        std::string digits;
    };

    bool isBefore(const Element& a, const Element& b)
    {
        if (a.character != b.character)
            return a.character < b.character;
        return a.digits.size() != b.digits.size() ? a.digits.size() < b.digits.size() : a.digits < b.digits;
    }

    // Determines the order of names without keys: the library folds the whole name, and the result is compared element
    // by element.
    std::vector<Element> elementsOf(const std::string& name)
    {
        const std::string folded =
            mapped(mapped(unicode::displayText(name), UTF8PROC_DECOMPOSE), UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
        std::vector<Element> elements;
        bool isInDigits = false;
        for (std::size_t position = 0; position < folded.size();) {
            const char32_t character = unicode::nextCodePoint(folded, position);
            const bool isDigit = character >= '0' && character <= '9';
            if (!isDigit || !isInDigits)
                elements.push_back({ isDigit ? U'0' : character, {} });
            isInDigits = isDigit;
            if (isDigit && (character != '0' || !elements.back().digits.empty()))
                elements.back().digits += static_cast<char>(character);
        }
        return elements;
    }

    // Compares names; each line of the bytes is one.
    void compareNames(const Data& bytes)
    {
        constexpr std::size_t kMostNames = 40;
        std::vector<std::string> names(1);
        for (const std::uint8_t byte : bytes) {
            if (byte != '\n')
                names.back() += static_cast<char>(byte);
            else if (names.size() < kMostNames)
                names.emplace_back();
        }
        std::vector<std::vector<Element>> elements;
        NameOrder order(names.size());
        for (const std::string& name : names) {
            elements.push_back(elementsOf(name));
            order.add(name);
        }
        const auto isNameBefore = [&](std::uint32_t a, std::uint32_t b) {
            return std::lexicographical_compare(elements[a].begin(), elements[a].end(), elements[b].begin(),
                                                elements[b].end(), isBefore);
        };
        std::vector<std::uint32_t> expected(names.size());
        std::iota(expected.begin(), expected.end(), 0U);
        std::stable_sort(expected.begin(), expected.end(), isNameBefore);
        QB_CHECK(order.sortedPositions() == expected);

        for (std::uint32_t i = 1; i < names.size(); ++i) {
            const std::string& a = names[i - 1];
            const std::string& b = names[i];
            QB_CHECK((nameSortKey(a) < nameSortKey(b)) == isNameBefore(i - 1, i));
            if (unicode::isValidUTF8(a) && unicode::isValidUTF8(b))
                QB_CHECK(isCanonicallyEqual(a, b) == (mapped(a, UTF8PROC_DECOMPOSE) == mapped(b, UTF8PROC_DECOMPOSE)));
            QB_CHECK(a.ends_with(titleWithoutArticle(a)));
        }
    }

    const FuzzTarget kTarget("sort-key", compareNames);

} // namespace

} // namespace quillbox
