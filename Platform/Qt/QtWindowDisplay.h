#pragma once

#include "ControlSizes.h"
#include "WindowDisplay.h"

#include <QPointer>

#include <map>
#include <memory>

namespace quillbox {

class OpenPanelPresenter;
class WindowPresenter;

// Shows the application's windows with Qt: one WindowPresenter a window, and the sizes of the style's controls.
class QtWindowDisplay final : public WindowDisplay {
public:
    QtWindowDisplay();
    ~QtWindowDisplay() override;

    // Brings all windows before those of other programs, sheets before the windows that they are on.
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

    // A sheet is its parent's widget too, and may go with it.
    std::map<const NSWindow*, QPointer<WindowPresenter>> presenters_;
    ControlSizes sizes_;
    std::unique_ptr<OpenPanelPresenter> openPanels_;
};

} // namespace quillbox
