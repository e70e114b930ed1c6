#include "UtilityFunctions.h"

namespace quillbox {

std::shared_ptr<NSScrollView> UtilityFunctions::makeScrollView()
{
    auto scrollView = NSScrollView::create();
    scrollView->setBorderType(NSScrollView::BorderType::noBorder);
    scrollView->setDrawsBackground(false);
    scrollView->setHasVerticalScroller(true);
    scrollView->setVerticalScrollerControlSize(NSScrollView::ControlSize::small);
    return scrollView;
}

} // namespace quillbox
