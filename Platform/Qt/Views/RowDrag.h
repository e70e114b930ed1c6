#pragma once

#include "DragTracking.h"

#include <QMimeData>
#include <QPixmap>

#include <functional>
#include <memory>

namespace quillbox {

// What a drag from one of our tables carries: to other programs the plain text, to our own windows the whole
// pasteboard with the drag's tracking. The toolkit hands the same object to our windows, which is how they know
// the drag for one of our own.
class RowDrag final : public QMimeData {
public:
    // `outside` is what other programs may do: unless that is copying, they are offered nothing.
    RowDrag(NSPasteboard pasteboard, NSDragOperation outside);

    // Runs until the drag has been dropped or given up; events are handled meanwhile. `hotSpot` is the pointer's place
    // in the picture. The drag has ended for everyone when this returns.
    static void run(NSPasteboard pasteboard, NSDragOperation outside, const QPixmap& picture, QPoint hotSpot);

    const std::shared_ptr<DragTracking>& tracking() const { return tracking_; }

    // Called by our windows: what a drop would do now. Copying is all that the toolkit is told of; the pointer shows
    // what our own windows do.
    void showOperation(NSDragOperation operation) const;
    void setOperationHandler(std::function<void(NSDragOperation)> handler) { operationHandler_ = std::move(handler); }

private:
    std::shared_ptr<DragTracking> tracking_;
    std::function<void(NSDragOperation)> operationHandler_;
};

} // namespace quillbox
