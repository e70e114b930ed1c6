#pragma once

#include "ControlSizes.h"
#include "WindowDisplay.h"

#include <QPointer>

#include <map>
#include <memory>

namespace quillbox {

class OpenPanelPresenter;
class WindowPresenter;

// Shows the application's windows with Qt: it has a WindowPresenter for each window, and knows the sizes of the style's
// controls.
class QtWindowDisplay final : public WindowDisplay {
public:
    QtWindowDisplay();
    ~QtWindowDisplay() override;

    // Brings all windows in front of those of other programs, sheets in front of the windows that they are on.
    void activate();

    void orderFront(NSWindow& window) override;
    void close(NSWindow& window) override;
    void beginSheet(NSWindow& sheet, NSWindow& parent) override;
    NSPoint contentOrigin(const NSWindow& window) override;
    void setNeedsDisplay(NSWindow& window) override;
    void beginOpenPanel(std::shared_ptr<NSOpenPanel> panel, NSWindow& parent,
                        std::function<void(int response)> completion) override;

    NSSize roomFor(const NSWindow& window) override;
    NSSize naturalSize(const NSTextField& field, double widthLimit) override;
    NSSize naturalSize(const NSButton& button, double widthLimit) override;
    NSSize naturalSize(const NSPopUpButton& button) override;
    double fontSize() override;
    double tableRowHeight() override;
    double scrollerWidth(bool isSmall) override;
    double scrollViewBorder() override;
    NSEdgeInsets tabViewInsets() override;

private:
    WindowPresenter* presenterOf(const NSWindow& window) const;
    WindowPresenter& makePresenter(NSWindow& window, WindowPresenter* parent);

    // A sheet's widget belongs to that of its parent, and may be deleted with it.
    std::map<const NSWindow*, QPointer<WindowPresenter>> presenters_;
    ControlSizes sizes_;
    std::unique_ptr<OpenPanelPresenter> openPanels_;
};

} // namespace quillbox
