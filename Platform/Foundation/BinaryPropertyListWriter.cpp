#include "BinaryPropertyList.h"

#include "PropertyListLimits.h"
#include "Unicode.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <unordered_map>

namespace quillbox::binarypropertylist {

namespace {

    using Index = std::uint64_t;

    class Writer {
    public:
        Result<Data> write(const PropertyList& root)
        {
            const Index top = collect(root, 0);
            if (problem_)
                return Error { 0, std::string("couldn't write the property list: ") + problem_, {} };
            referenceWidth_ = widthOf(objects_.size());
            for (const char c : std::string_view("bplist00"))
                bytes_.push_back(static_cast<std::uint8_t>(c));
            std::vector<std::uint64_t> offsets;
            offsets.reserve(objects_.size());
            for (const Object& object : objects_) {
                offsets.push_back(bytes_.size());
                append(object);
            }
            const std::uint64_t table = bytes_.size();
            const std::size_t offsetWidth = widthOf(table);
            for (const std::uint64_t offset : offsets)
                appendNumber(offset, offsetWidth);
            bytes_.insert(bytes_.end(), 6, 0);
            bytes_.push_back(static_cast<std::uint8_t>(offsetWidth));
            bytes_.push_back(static_cast<std::uint8_t>(referenceWidth_));
            appendNumber(objects_.size(), 8);
            appendNumber(top, 8);
            appendNumber(table, 8);
            return std::move(bytes_);
        }

    private:
        // An object of the file: a text (a value or a key), or another value with the indexes of the objects in it. A
        // dictionary's keys come before its values.
        struct Object {
            const std::string* text = nullptr;
            const PropertyList* value = nullptr;
            std::vector<Index> references;
        };

        static std::size_t widthOf(std::uint64_t largest)
        {
            return largest < 0x100 ? 1 : largest < 0x10000 ? 2 : largest < 0x100000000 ? 4 : 8;
        }

        // Equal texts share one object, because the records of a list all have the same keys. A reader makes a copy for
        // each use, so each use counts in the budget.
        Index collectText(const std::string& text)
        {
            demand(budget_.addBytes(text.size()));
            const auto [entry, isNew] = texts_.try_emplace(text, objects_.size());
            if (isNew) {
                if (!unicode::isValidUTF8(text))
                    problem_ = "a text is not valid UTF-8";
                objects_.push_back(Object { &text, nullptr, {} });
            }
            return entry->second;
        }

        void demand(bool isWithinBudget)
        {
            if (!isWithinBudget)
                problem_ = "it holds too much";
        }

        Index collect(const PropertyList& value, int depth)
        {
            if (depth > propertylist::kMaximumDepth) {
                problem_ = "its values are nested too deeply";
                return 0;
            }
            demand(budget_.addValue());
            if (const auto* text = value.as<std::string>())
                return collectText(*text);
            const Index index = objects_.size();
            objects_.push_back(Object { nullptr, &value, {} });
            if (const auto* data = value.as<Data>())
                demand(budget_.addBytes(data->size()));
            std::vector<Index> references;
            if (const auto* array = value.as<PropertyList::Array>()) {
                for (const PropertyList& element : *array)
                    references.push_back(collect(element, depth + 1));
            } else if (const auto* dictionary = value.as<PropertyList::Dictionary>()) {
                for (const auto& entry : *dictionary)
                    references.push_back(collectText(entry.first));
                for (const auto& entry : *dictionary)
                    references.push_back(collect(entry.second, depth + 1));
            }
            objects_[static_cast<std::size_t>(index)].references = std::move(references);
            return index;
        }

        void appendNumber(std::uint64_t value, std::size_t width)
        {
            for (std::size_t i = width; i > 0; --i)
                bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * (i - 1))));
        }

        void appendUnsigned(std::uint64_t value)
        {
            const std::size_t width = widthOf(value);
            bytes_.push_back(static_cast<std::uint8_t>(0x10 | std::countr_zero(width)));
            appendNumber(value, width);
        }

        void appendMarker(unsigned type, std::uint64_t count)
        {
            bytes_.push_back(static_cast<std::uint8_t>(type << 4U | std::min<std::uint64_t>(count, 15)));
            if (count >= 15)
                appendUnsigned(count);
        }

        void append(const Object& object)
        {
            if (object.text) {
                appendText(*object.text);
                return;
            }
            const PropertyList& value = *object.value;
            if (const auto* boolean = value.as<bool>()) {
                bytes_.push_back(*boolean ? 9 : 8);
            } else if (const auto* number = value.as<std::int64_t>()) {
                appendInteger(*number);
            } else if (const auto* unsignedNumber = value.as<std::uint64_t>()) {
                appendInteger(*unsignedNumber);
            } else if (const auto* real = value.as<double>()) {
                bytes_.push_back(0x23);
                appendNumber(std::bit_cast<std::uint64_t>(*real), 8);
            } else if (const auto* date = value.as<Date>()) {
                bytes_.push_back(0x33);
                appendNumber(std::bit_cast<std::uint64_t>(date->secondsSinceReferenceDate), 8);
            } else if (const auto* data = value.as<Data>()) {
                appendMarker(0x4, data->size());
                bytes_.insert(bytes_.end(), data->begin(), data->end());
            } else {
                const bool isDictionary = value.as<PropertyList::Dictionary>() != nullptr;
                appendMarker(isDictionary ? 0xD : 0xA, object.references.size() / (isDictionary ? 2 : 1));
                for (const Index reference : object.references)
                    appendNumber(reference, referenceWidth_);
            }
        }

        void appendInteger(std::int64_t value)
        {
            if (value >= 0) {
                appendUnsigned(static_cast<std::uint64_t>(value));
                return;
            }
            bytes_.push_back(0x13);
            appendNumber(static_cast<std::uint64_t>(value), 8);
        }

        // Integers of eight bytes are signed, so a number with the top bit set takes sixteen.
        void appendInteger(std::uint64_t value)
        {
            if ((value >> 63U) == 0) {
                appendUnsigned(value);
                return;
            }
            bytes_.push_back(0x14);
            appendNumber(0, 8);
            appendNumber(value, 8);
        }

        void appendText(const std::string& text)
        {
            const auto isASCII = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
            if (std::all_of(text.begin(), text.end(), isASCII)) {
                appendMarker(0x5, text.size());
                bytes_.insert(bytes_.end(), text.begin(), text.end());
                return;
            }
            std::vector<std::uint16_t> units;
            std::size_t position = 0;
            while (position < text.size()) {
                char32_t c = unicode::nextCodePoint(text, position);
                if (c >= 0x10000) {
                    c -= 0x10000;
                    units.push_back(static_cast<std::uint16_t>(0xD800 + (c >> 10)));
                    c = 0xDC00 + (c & 0x3FF);
                }
                units.push_back(static_cast<std::uint16_t>(c));
            }
            appendMarker(0x6, units.size());
            for (const std::uint16_t unit : units)
                appendNumber(unit, 2);
        }

        std::vector<Object> objects_;
        std::unordered_map<std::string_view, Index> texts_;
        propertylist::Budget budget_;
        const char* problem_ = nullptr;
        std::size_t referenceWidth_ = 1;
        Data bytes_;
    };

} // namespace

Result<Data> write(const PropertyList& root)
{
    return Writer().write(root);
}

} // namespace quillbox::binarypropertylist
