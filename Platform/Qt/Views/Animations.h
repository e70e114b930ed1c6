#pragma once

#include <chrono>

class QWidget;

namespace quillbox {

// How long things move in this widget; 0 where the style or the desktop wants nothing to move. The desktop is asked
// once, when the first widget asks here, and its answer is not waited for.
std::chrono::milliseconds animationDuration(const QWidget& widget);

} // namespace quillbox
