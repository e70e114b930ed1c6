#pragma once

#include "ViewPresenter.h"

namespace quillbox {

// The presenter for the view's class: a control's own kind, else the one for plain views. Its widget is in `parent`,
// not shown yet.
std::unique_ptr<ViewPresenter> makeViewPresenter(const std::shared_ptr<NSView>& view, QWidget& parent);

} // namespace quillbox
