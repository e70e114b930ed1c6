#pragma once

#include "NSScrollView.h"

#include <memory>

namespace quillbox {

class UtilityFunctions {
public:
    UtilityFunctions() = delete;

    // Makes a scroll view without border and background for a tab full of text. Its small scroller is always shown.
    static std::shared_ptr<NSScrollView> makeScrollView();
    // One that mostly has room for `document`: its scroller shows only where it has not. The caller places it.
    static std::shared_ptr<NSScrollView> makePage(std::shared_ptr<NSView> document);
};

} // namespace quillbox
