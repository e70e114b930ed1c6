#pragma once

#include <chrono>

class QWidget;

namespace quillbox {

// Returns how long movements in this widget take; 0 if the style or the desktop wants no animations. The desktop is
// asked once, when the first widget asks here, and nothing waits for its answer.
std::chrono::milliseconds animationDuration(const QWidget& widget);

} // namespace quillbox
