#pragma once

#include "NSPopUpButton.h"
#include "ViewPresenter.h"

#include <string>
#include <vector>

namespace quillbox {

// Shows a pop-up button: a list of titles of which one is chosen.
class PopUpButtonPresenter final : public ViewPresenter {
public:
    PopUpButtonPresenter(const std::shared_ptr<NSPopUpButton>& button, QWidget& parent);

protected:
    void showContent(NSView& view) override;

private:
    std::vector<std::string> shownTitles_;
};

} // namespace quillbox
