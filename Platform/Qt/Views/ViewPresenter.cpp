#include "ViewPresenter.h"

#include "Appearance.h"
#include "LayerOverlay.h"
#include "MenuText.h"

#include <algorithm>

namespace quillbox {

namespace {

    Qt::CursorShape shapeOf(NSCursor cursor)
    {
        switch (cursor) {
        case NSCursor::pointingHand:
            return Qt::PointingHandCursor;
        case NSCursor::iBeam:
            return Qt::IBeamCursor;
        case NSCursor::arrow:
            break;
        }
        return Qt::ArrowCursor;
    }

} // namespace

void ViewPresenter::retire(std::unique_ptr<ViewPresenter> presenter)
{
    QWidget* widget = presenter->widget();
    if (!widget)
        return;
    const QWidget* focused = widget->window()->focusWidget();
    if (focused && (focused == widget || widget->isAncestorOf(focused))) {
        QWidget* next = widget->parentWidget();
        while (next && !(next->focusPolicy() & Qt::ClickFocus))
            next = next->parentWidget();
        if (next)
            next->setFocus(Qt::OtherFocusReason);
    }
    widget->hide();
    widget->deleteLater();
}

ViewPresenter::ViewPresenter(const std::shared_ptr<NSView>& view, QWidget* widget) : view_(view), widget_(widget) { }

ViewPresenter::~ViewPresenter() = default;

void ViewPresenter::sync(MakeViewPresenter makePresenter)
{
    const std::shared_ptr<NSView> shown = view();
    if (!shown || !widget_)
        return;
    if (shownCount_ != shown->displayCount()) {
        shownCount_ = shown->displayCount();
        const QString tip = QString::fromStdString(shown->toolTip());
        widget_->setToolTip(tip.isEmpty() ? QString() : toolTipMarkup(tip));
        widget_->setAccessibleDescription(tip);
        if (!shown->accessibilityLabel().empty())
            keyWidget()->setAccessibleName(QString::fromStdString(shown->accessibilityLabel()));
        showContent(*shown);
        syncLayer(*shown);
    }
    syncSubviews(*shown, makePresenter);
    subviewsShown(*shown);
    syncCursor(*shown);
}

void ViewPresenter::forgetShown()
{
    shownCount_.reset();
    for (const auto& presenter : below_)
        presenter->forgetShown();
}

void ViewPresenter::showContent(NSView& view)
{
    // A view that only draws a layer lets the mouse through to what is under it.
    widget_->setAttribute(Qt::WA_TransparentForMouseEvents, view.layer() && view.subviews().empty());
}

void ViewPresenter::syncSubviews(NSView& view, MakeViewPresenter makePresenter)
{
    std::vector<std::unique_ptr<ViewPresenter>> before = std::move(below_);
    std::vector<const ViewPresenter*> stacked;
    stacked.reserve(before.size());
    for (const auto& presenter : before)
        stacked.push_back(presenter.get());

    below_.clear();
    below_.reserve(view.subviews().size());
    std::vector<const ViewPresenter*> made;
    for (const auto& subview : view.subviews()) {
        const auto known = std::find_if(before.begin(), before.end(), [&](const auto& presenter) {
            return presenter && presenter->view() == subview && presenter->suits(*subview);
        });
        if (known != before.end()) {
            below_.push_back(std::move(*known));
        } else if (!subview->isHidden()) {
            // A view that has never been visible has no presenter.
            below_.push_back(makePresenter(subview, *widget_));
            made.push_back(below_.back().get());
        }
    }
    for (auto& gone : before) {
        if (gone) {
            std::erase(stacked, gone.get());
            retire(std::move(gone));
        }
    }
    // The toolkit puts new widgets on top.
    stacked.insert(stacked.end(), made.begin(), made.end());
    const bool isInOrder = std::equal(stacked.begin(), stacked.end(), below_.begin(), below_.end(),
                                      [](const auto* one, const auto& other) { return one == other.get(); });
    for (const auto& presenter : below_) {
        if (!isInOrder)
            presenter->widget()->raise();
        presenter->place(view.bounds().origin, makePresenter);
    }
}

void ViewPresenter::place(NSPoint boundsOrigin, MakeViewPresenter makePresenter)
{
    const std::shared_ptr<NSView> shown = view();
    if (!shown || !widget_)
        return;
    NSRect frame = shown->frame();
    frame.origin.x -= boundsOrigin.x;
    frame.origin.y -= boundsOrigin.y;
    widget_->setGeometry(shownRect(frame));
    if (!shown->isHidden())
        sync(makePresenter);
    // It is shown last, so that it appears complete.
    widget_->setVisible(!shown->isHidden());
}

void ViewPresenter::syncLayer(NSView& view)
{
    if (!view.layer() && !layer_)
        return;
    if (!layer_)
        layer_ = new LayerOverlay(view_, *widget_);
    layer_->showLayer();
}

void ViewPresenter::syncCursor(NSView& view)
{
    // A cursor area is always a whole view, because a widget has only one cursor.
    const auto& areas = view.updatedCursorRects();
    const std::optional<NSCursor> wanted = areas.empty() ? std::nullopt : std::optional(areas.back().cursor);
    if (wanted == shownCursor_)
        return;
    shownCursor_ = wanted;
    if (wanted)
        widget_->setCursor(shapeOf(*wanted));
    else
        widget_->unsetCursor();
}

ViewPresenter* ViewPresenter::find(const NSView& wanted)
{
    if (view().get() == &wanted)
        return this;
    for (const auto& presenter : below_) {
        if (ViewPresenter* found = presenter->find(wanted))
            return found;
    }
    return nullptr;
}

ViewPresenter* ViewPresenter::find(const QWidget* widget)
{
    if (!widget_ || !widget || (widget_ != widget && !widget_->isAncestorOf(widget)))
        return nullptr;
    for (const auto& presenter : below_) {
        if (ViewPresenter* found = presenter->find(widget))
            return found;
    }
    return this;
}

} // namespace quillbox
