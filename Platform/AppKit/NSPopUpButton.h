#pragma once

#include "NSControl.h"

#include <string>
#include <vector>

namespace quillbox {

// A list of titles of which one is chosen and shown.
class NSPopUpButton final : public NSControl {
public:
    const char* className() const override { return "NSPopUpButton"; }
    NSSize naturalSize(double widthLimit) const override;
    NSSize leastSize() const override;

    const std::vector<std::string>& itemTitles() const { return titles_; }
    // The first title is selected until another is.
    void addItems(std::vector<std::string> withTitles);
    // -1 where nothing is selected.
    int indexOfSelectedItem() const { return selected_; }
    // An index past the titles selects nothing.
    void selectItem(int at);
    void selectItem(const std::string& withTitle);
    // Empty where nothing is selected.
    std::string titleOfSelectedItem() const;
    // The person chose it.
    void userSelectsItem(int at);

private:
    std::vector<std::string> titles_;
    int selected_ = -1;
};

} // namespace quillbox
