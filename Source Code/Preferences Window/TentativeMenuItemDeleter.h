#pragma once

#include "NSImageView.h"

#include <memory>
#include <vector>

namespace quillbox {

class TentativeMenuItemsTable;

// The trash can: rows of the menu's table that are dragged onto it are removed from the list. It is outlined while a
// row is over it, and a puff of smoke follows once the drag has ended.
class TentativeMenuItemDeleter final : public NSImageView {
public:
    TentativeMenuItemDeleter();

    const char* className() const override { return "TentativeMenuItemDeleter"; }

    // Set by an accepted drop, and cleared when the drag ends.
    bool shouldShowSmokeExplosion = false;
    std::weak_ptr<TentativeMenuItemsTable> tableWithTentativeMenus;

    // The frames of the puff of smoke, cut from the picture "Circle Smoke" on first use; empty if there is no such
    // picture.
    const std::vector<NSImage>& smokeImages();

    NSDragOperation draggingEntered(const NSDraggingInfo& info) override;
    void draggingExited() override;
    bool prepareForDragOperation(const NSDraggingInfo&) override { return true; }
    bool performDragOperation(const NSDraggingInfo& info) override;
    void concludeDragOperation() override { }
    void draggingEnded() override;

private:
    void setHighlighted(bool isHighlighted);
    void showSmokeExplosion();

    std::unique_ptr<std::vector<NSImage>> smokeImages_;
};

} // namespace quillbox
