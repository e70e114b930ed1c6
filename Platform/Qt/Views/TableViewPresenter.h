#pragma once

#include "NSTableView.h"
#include "RowSlide.h"
#include "ViewPresenter.h"

namespace quillbox {

// Shows a table. One widget paints the selection, the focus and the drop line, and handles mouse and keys; the visible
// rows are widgets on it.
class TableViewPresenter final : public ViewPresenter {
public:
    TableViewPresenter(const std::shared_ptr<NSTableView>& table, QWidget& parent);

protected:
    void showContent(NSView& view) override;
    void subviewsShown(NSView& view) override;

private:
    RowSlide slide_;
    unsigned shownSlides_ = 0;
    int toldRow_ = -1;
    unsigned toldAnnouncements_ = 0;
};

} // namespace quillbox
