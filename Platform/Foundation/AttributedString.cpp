#include "AttributedString.h"

#include <utility>

namespace quillbox {

AttributedString::AttributedString(std::string_view text, TextAttributes attributes)
{
    append(text, std::move(attributes));
}

void AttributedString::append(std::string_view text, TextAttributes attributes)
{
    if (text.empty())
        return;
    if (!runs_.empty() && runs_.back().attributes == attributes)
        runs_.back().text += text;
    else
        runs_.push_back(Run { std::string(text), std::move(attributes) });
}

void AttributedString::append(const AttributedString& other)
{
    // The runs are copied, since `other` may be this very text.
    const std::vector<Run> runs = other.runs_;
    for (const Run& run : runs)
        append(run.text, run.attributes);
}

std::string AttributedString::string() const
{
    std::string text;
    for (const Run& run : runs_)
        text += run.text;
    return text;
}

} // namespace quillbox
