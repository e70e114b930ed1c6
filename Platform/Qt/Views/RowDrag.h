#pragma once

#include "DragTracking.h"

#include <QMimeData>
#include <QPixmap>

#include <functional>
#include <memory>

namespace quillbox {

// What a drag from one of our tables carries: for other programs the plain text, for our own windows the whole
// pasteboard with the drag's tracking. The toolkit passes the same object to our windows, which by this recognise the
// drag as one of our own.
class RowDrag final : public QMimeData {
public:
    // `outside` is what other programs may do. Unless that is copying, they are offered nothing.
    RowDrag(NSPasteboard pasteboard, NSDragOperation outside);

    // Runs the drag and returns when it was dropped or cancelled; other events are handled meanwhile. `hotSpot` is the
    // pointer's place in the picture. When this returns, all views have been told that the drag has ended.
    static void run(NSPasteboard pasteboard, NSDragOperation outside, const QPixmap& picture, QPoint hotSpot);

    const std::shared_ptr<DragTracking>& tracking() const { return tracking_; }

    // Our windows call this to show what a drop would do now. The toolkit is only told of copying; the pointer shows
    // what our own windows do.
    void showOperation(NSDragOperation operation) const;
    void setOperationHandler(std::function<void(NSDragOperation)> handler) { operationHandler_ = std::move(handler); }

private:
    std::shared_ptr<DragTracking> tracking_;
    std::function<void(NSDragOperation)> operationHandler_;
};

} // namespace quillbox
