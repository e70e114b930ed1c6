#pragma once

#include <cstdint>
#include <initializer_list>

namespace quillbox {

// A set of option bits. Bits without a name are kept. `Tag` makes sets of different kinds different types.
template <class Tag>
class OptionSet {
public:
    constexpr OptionSet() = default;
    constexpr explicit OptionSet(std::uint64_t rawValue) : rawValue_(rawValue) { }
    constexpr OptionSet(std::initializer_list<OptionSet> members)
    {
        for (const OptionSet member : members)
            insert(member);
    }

    constexpr std::uint64_t rawValue() const { return rawValue_; }
    constexpr bool isEmpty() const { return rawValue_ == 0; }
    constexpr bool contains(OptionSet members) const { return (rawValue_ & members.rawValue_) == members.rawValue_; }
    constexpr void insert(OptionSet members) { rawValue_ |= members.rawValue_; }
    constexpr void remove(OptionSet members) { rawValue_ &= ~members.rawValue_; }
    constexpr OptionSet setUnion(OptionSet other) const { return OptionSet(rawValue_ | other.rawValue_); }
    constexpr OptionSet intersection(OptionSet other) const { return OptionSet(rawValue_ & other.rawValue_); }
    constexpr OptionSet symmetricDifference(OptionSet other) const { return OptionSet(rawValue_ ^ other.rawValue_); }

    friend constexpr bool operator==(OptionSet, OptionSet) = default;

private:
    std::uint64_t rawValue_ = 0;
};

} // namespace quillbox
