#pragma once

#include <array>
#include <optional>

namespace quillbox {

// A stretch on one axis, of which any two of these give the others.
struct Extent {
    enum Line { low, high, middle, length };
    std::array<std::optional<double>, 4> known;

    bool isWhole() const { return known[low] && known[length]; }
    int count() const
    {
        int result = 0;
        for (const auto& value : known)
            result += value ? 1 : 0;
        return result;
    }

    // False where it was known, or follows from what is known, already.
    bool set(Line line, double value)
    {
        if (known[line])
            return false;
        known[line] = value;
        if (count() >= 2)
            complete();
        return true;
    }

private:
    void complete()
    {
        if (!known[length]) {
            if (known[low] && known[high])
                known[length] = *known[high] - *known[low];
            else if (known[low] && known[middle])
                known[length] = 2 * (*known[middle] - *known[low]);
            else
                known[length] = 2 * (*known[high] - *known[middle]);
        }
        if (!known[low])
            known[low] = known[high] ? *known[high] - *known[length] : *known[middle] - *known[length] / 2;
        known[high] = *known[low] + *known[length];
        known[middle] = *known[low] + *known[length] / 2;
    }
};

} // namespace quillbox
