#include "HiddenNames.h"

#include "FileContents.h"

#include <algorithm>

namespace quillbox {

std::unordered_set<std::string> hiddenNames(int directory, const char* path)
{
    constexpr std::size_t kMaximumSize = std::size_t { 1 } << 20;
    const std::string text = readSmallFile(directory, path, kMaximumSize);
    std::unordered_set<std::string> names;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        if (end > start)
            names.insert(text.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

} // namespace quillbox
