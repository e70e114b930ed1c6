#pragma once

#include "NSScrollView.h"

#include <memory>

namespace quillbox {

class UtilityFunctions {
public:
    UtilityFunctions() = delete;

    // A scroll view without border and background for a tab full of text; its small scroller always shows.
    static std::shared_ptr<NSScrollView> makeScrollView();
    // One that mostly has room for `document`: its scroller shows only where it has not. The caller places it.
    static std::shared_ptr<NSScrollView> makePage(std::shared_ptr<NSView> document);
};

} // namespace quillbox
