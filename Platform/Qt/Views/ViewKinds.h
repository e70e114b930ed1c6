#pragma once

#include "ViewPresenter.h"

namespace quillbox {

// Makes the presenter for the view's class: the one for its kind of control, otherwise the one for plain views. Its
// widget is a child of `parent` and not shown yet.
std::unique_ptr<ViewPresenter> makeViewPresenter(const std::shared_ptr<NSView>& view, QWidget& parent);

} // namespace quillbox
