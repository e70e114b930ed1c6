#pragma once

#include <algorithm>
#include <vector>

namespace quillbox {

// The times of several trials of the same kind, in milliseconds; there is at least one.
struct Figures {
    std::vector<double> all;
    double median() const
    {
        std::vector<double> sorted = all;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }
    double least() const { return *std::min_element(all.begin(), all.end()); }
    double most() const { return *std::max_element(all.begin(), all.end()); }
};

} // namespace quillbox
