#pragma once

#include "NSTabView.h"
#include "ViewPresenter.h"

class QTabBar;

namespace quillbox {

// Shows the tabs as the style's tab bar, and the frame around their contents.
class TabViewPresenter final : public ViewPresenter {
public:
    TabViewPresenter(const std::shared_ptr<NSTabView>& tabView, QWidget& parent);

    QWidget* keyWidget() const override;

protected:
    void showContent(NSView& view) override;
};

} // namespace quillbox
