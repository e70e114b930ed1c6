#include "UtilityFunctions.h"

#include <utility>

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

std::shared_ptr<NSScrollView> UtilityFunctions::makePage(std::shared_ptr<NSView> document)
{
    auto page = makeScrollView();
    page->setAutohidesScrollers(true);
    page->setTranslatesAutoresizingMaskIntoConstraints(false);
    page->setDocumentView(std::move(document));
    return page;
}

} // namespace quillbox
