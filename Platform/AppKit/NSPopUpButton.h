#pragma once

#include "NSControl.h"

#include <string>
#include <vector>

namespace quillbox {

// A button that shows one title out of a list and lets the user choose another one.
class NSPopUpButton final : public NSControl {
public:
    const char* className() const override { return "NSPopUpButton"; }
    NSSize naturalSize(double widthLimit) const override;
    NSSize leastSize() const override;

    const std::vector<std::string>& itemTitles() const { return titles_; }
    // The first title is selected until another one is.
    void addItems(std::vector<std::string> withTitles);
    // Returns -1 if nothing is selected.
    int indexOfSelectedItem() const { return selected_; }
    // An index beyond the titles selects nothing.
    void selectItem(int at);
    void selectItem(const std::string& withTitle);
    // Returns an empty text if nothing is selected.
    std::string titleOfSelectedItem() const;
    // The user chose the title with this index.
    void userSelectsItem(int at);

private:
    std::vector<std::string> titles_;
    int selected_ = -1;
};

} // namespace quillbox
