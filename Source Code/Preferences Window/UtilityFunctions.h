#pragma once

#include "NSScrollView.h"

#include <memory>

namespace quillbox {

class UtilityFunctions {
public:
    UtilityFunctions() = delete;

    // A scroll view without border and background for a tab full of text; its small scroller always shows.
    static std::shared_ptr<NSScrollView> makeScrollView();
};

} // namespace quillbox
