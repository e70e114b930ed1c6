#pragma once

#include "Data.h"
#include "Date.h"
#include "Result.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quillbox {

// One value of a property list, with everything it holds. Numbers keep their type: a value that fits a
// signed 64-bit integer is an Int64 when read, a larger one a UInt64.
class PropertyList {
public:
    using Array = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList>;

    PropertyList() : value_(Dictionary {}) { }
    PropertyList(bool value) : value_(value) { }
    PropertyList(std::int64_t value) : value_(value) { }
    PropertyList(std::uint64_t value) : value_(value) { }
    PropertyList(double value) : value_(value) { }
    PropertyList(std::string value) : value_(std::move(value)) { }
    PropertyList(const char* value) : value_(std::string(value)) { }
    PropertyList(Data value) : value_(std::move(value)) { }
    PropertyList(Date value) : value_(value) { }
    PropertyList(Array value) : value_(std::move(value)) { }
    PropertyList(Dictionary value) : value_(std::move(value)) { }

    // Returns the value if it is of exactly this type, otherwise null.
    template <class T>
    const T* as() const
    {
        return std::get_if<T>(&value_);
    }
    template <class T>
    T* as()
    {
        return std::get_if<T>(&value_);
    }
    // Returns an integer of either type if it fits; a boolean or a real gives nothing.
    std::optional<std::int64_t> asInt64() const;
    std::optional<std::uint64_t> asUInt64() const;

    // Returns the dictionary's value under `key`, or null if there is none or this is no dictionary.
    const PropertyList* value(const std::string& key) const;

    // Encodes the value in the binary form. Fails if a text is not valid UTF-8, or if the list is nested too deeply or
    // too large.
    Result<Data> binaryData() const;
    // Reads the binary or the XML form. Anything else, and anything damaged, is an error.
    static Result<PropertyList> fromData(const Data& bytes);

    friend bool operator==(const PropertyList&, const PropertyList&) = default;

private:
    std::variant<bool, std::int64_t, std::uint64_t, double, std::string, Data, Date, Array, Dictionary> value_;
};

} // namespace quillbox
