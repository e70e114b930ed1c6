#pragma once

#include "NSView.h"

#include <string>
#include <vector>

namespace quillbox {

class NSTabView;

class NSScrollView;

// A tab: its label and the view that is shown while it is selected. A view that needs more height than there is
// scrolls.
class NSTabViewItem {
public:
    explicit NSTabViewItem(std::string label);

    const std::string& label() const { return label_; }
    const std::shared_ptr<NSView>& view() const { return view_; }
    const std::shared_ptr<NSScrollView>& scrollView() const { return scrollView_; }

private:
    std::string label_;
    std::shared_ptr<NSView> view_;
    std::shared_ptr<NSScrollView> scrollView_;
};

class NSTabViewDelegate {
public:
    virtual ~NSTabViewDelegate() = default;
    // Also called when the first tab is added, because that selects it.
    virtual void tabViewDidSelect(NSTabView& tabView, const NSTabViewItem& item) = 0;
};

// Tabs at the top of a bordered area. The views of all tabs are laid out, but those that are not selected are hidden;
// if one of them had the keyboard focus, the tabs get it.
class NSTabView final : public NSView {
public:
    const char* className() const override { return "NSTabView"; }
    void layout() override;
    NSSize naturalSize(double widthLimit) const override;
    NSSize leastSize() const override;

    void setDelegate(std::weak_ptr<NSTabViewDelegate> delegate) { delegate_ = std::move(delegate); }

    const std::vector<std::shared_ptr<NSTabViewItem>>& tabViewItems() const { return items_; }
    void addTabViewItem(std::shared_ptr<NSTabViewItem> item);
    // Returns -1 while there is no tab.
    int indexOfSelectedItem() const { return selected_; }
    // Selects the tab and tells the delegate. Selecting the selected tab changes nothing.
    void selectTabViewItem(int at);
    // The user selected a tab; it is ignored while a sheet blocks the window. Indexes wrap around at both ends.
    void userSelectsTabViewItem(int at);
    // Returns the area of the tabs' views.
    NSRect contentRect() const;

private:
    std::weak_ptr<NSTabViewDelegate> delegate_;
    std::vector<std::shared_ptr<NSTabViewItem>> items_;
    int selected_ = -1;
};

} // namespace quillbox
