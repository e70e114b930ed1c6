#include "QtWindowDisplay.h"

#include "Appearance.h"
#include "NSWindow.h"
#include "OpenPanelPresenter.h"
#include "WindowAccessible.h"
#include "WindowPresenter.h"
#include "WindowRoom.h"

#include <QFontInfo>

namespace quillbox {

QtWindowDisplay::QtWindowDisplay() : openPanels_(std::make_unique<OpenPanelPresenter>())
{
    installWindowAccessibility();
}

QtWindowDisplay::~QtWindowDisplay()
{
    for (const auto& [window, presenter] : presenters_)
        delete presenter.data();
}

WindowPresenter* QtWindowDisplay::presenterOf(const NSWindow& window) const
{
    const auto known = presenters_.find(&window);
    return known == presenters_.end() ? nullptr : known->second.data();
}

WindowPresenter& QtWindowDisplay::makePresenter(NSWindow& window, WindowPresenter* parent)
{
    auto* presenter = new WindowPresenter(window, parent, [this] { sizes_.forget(); });
    presenters_[&window] = presenter;
    return *presenter;
}

void QtWindowDisplay::orderFront(NSWindow& window)
{
    WindowPresenter* presenter = presenterOf(window);
    (presenter ? *presenter : makePresenter(window, nullptr)).orderFront();
    // An open panel comes to the front with the window that it is on.
    if (const auto sheet = window.attachedSheet(); sheet && presenterOf(*sheet))
        orderFront(*sheet);
}

void QtWindowDisplay::activate()
{
    for (const auto& window : NSWindow::windows()) {
        if (presenterOf(*window) && !window->sheetParent())
            orderFront(*window);
    }
}

void QtWindowDisplay::close(NSWindow& window)
{
    if (WindowPresenter* presenter = presenterOf(window))
        presenter->retire();
    presenters_.erase(&window);
    if (presenters_.empty())
        sizes_.forget();
}

void QtWindowDisplay::beginSheet(NSWindow& sheet, NSWindow& parent)
{
    WindowPresenter* below = presenterOf(parent);
    WindowPresenter& presenter = makePresenter(sheet, below);
    if (below)
        below->holdFor(presenter);
    presenter.orderFront();
}

NSPoint QtWindowDisplay::contentOrigin(const NSWindow& window)
{
    const WindowPresenter* presenter = presenterOf(window);
    const QPoint origin = presenter ? presenter->mapToGlobal(QPoint()) : QPoint();
    return { static_cast<double>(origin.x()), static_cast<double>(origin.y()) };
}

void QtWindowDisplay::setNeedsDisplay(NSWindow& window)
{
    if (WindowPresenter* presenter = presenterOf(window))
        presenter->setNeedsDisplay();
}

void QtWindowDisplay::beginOpenPanel(std::shared_ptr<NSOpenPanel> panel, NSWindow& parent,
                                     std::function<void(int)> completion)
{
    openPanels_->begin(std::move(panel), presenterOf(parent), std::move(completion));
}

NSSize QtWindowDisplay::roomFor(const NSWindow& window)
{
    const WindowPresenter* presenter = presenterOf(window);
    if (const auto parent = window.sheetParent(); !presenter && parent)
        presenter = presenterOf(*parent);
    const QSize room = roomForContent(presenter);
    return { static_cast<double>(room.width()), static_cast<double>(room.height()) };
}

NSSize QtWindowDisplay::naturalSize(const NSTextField& field, double widthLimit)
{
    return sizes_.of(field, widthLimit);
}

NSSize QtWindowDisplay::naturalSize(const NSButton& button, double widthLimit)
{
    return sizes_.of(button, widthLimit);
}

NSSize QtWindowDisplay::naturalSize(const NSPopUpButton& button)
{
    return sizes_.of(button);
}

double QtWindowDisplay::fontSize()
{
    return QFontInfo(ordinaryFont()).pixelSize();
}

double QtWindowDisplay::tableRowHeight()
{
    return sizes_.tableRowHeight();
}

double QtWindowDisplay::scrollerWidth(bool isSmall)
{
    return sizes_.scrollerWidth(isSmall);
}

double QtWindowDisplay::scrollViewBorder()
{
    return sizes_.scrollViewBorder();
}

NSEdgeInsets QtWindowDisplay::tabViewInsets()
{
    return sizes_.tabViewInsets();
}

} // namespace quillbox
