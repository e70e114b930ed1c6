#pragma once

#include "NSView.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace quillbox {

class LayerOverlay;
class ViewPresenter;

// Makes the presenter for a view, with its widget in `parent`, not shown yet.
using MakeViewPresenter = std::unique_ptr<ViewPresenter> (*)(const std::shared_ptr<NSView>& view, QWidget& parent);

// Shows one view with one widget, and its subviews with presenters of their own, which it owns. This class shows
// plain views; each kind of control has a presenter derived from it. The window's presenter syncs the topmost one
// whenever something has changed.
//
// Views come and go while a widget handles an event: presenters and widgets refer to them weakly, and a widget is
// deleted only after the event.
class ViewPresenter {
public:
    // Takes the widget off the screen; the keyboard goes to the nearest widget above it that takes it.
    static void retire(std::unique_ptr<ViewPresenter> presenter);

    // `widget` is the parent widget's.
    ViewPresenter(const std::shared_ptr<NSView>& view, QWidget* widget);
    virtual ~ViewPresenter();
    ViewPresenter(const ViewPresenter&) = delete;
    ViewPresenter& operator=(const ViewPresenter&) = delete;

    std::shared_ptr<NSView> view() const { return view_.lock(); }
    QWidget* widget() const { return widget_; }
    // The one that takes the keyboard for the view.
    virtual QWidget* keyWidget() const { return widget_; }

    // Makes the widgets below, and this one's content, what the views are. Views seen for the first time get their
    // presenters from `makePresenter`.
    void sync(MakeViewPresenter makePresenter);
    // The contents are shown anew by the next sync(), changed or not: the desktop looks different now.
    void forgetShown();

    // Of this presenter or one below it; null where there is none.
    ViewPresenter* find(const NSView& view);
    // The view that the widget, or one around it, shows.
    ViewPresenter* find(const QWidget* widget);

protected:
    // The view is another one than it was, or is shown for the first time.
    virtual void showContent(NSView& view);
    // After each sync of the views below.
    virtual void subviewsShown(NSView& view) { static_cast<void>(view); }
    // False: the view has changed so much that it needs a new presenter.
    virtual bool suits(const NSView& view) const
    {
        static_cast<void>(view);
        return true;
    }
    // In the order of the views; what has never been seen is left out.
    const std::vector<std::unique_ptr<ViewPresenter>>& below() const { return below_; }

private:
    void place(NSPoint boundsOrigin, MakeViewPresenter makePresenter);
    void syncSubviews(NSView& view, MakeViewPresenter makePresenter);
    void syncLayer(NSView& view);
    void syncCursor(NSView& view);

    std::weak_ptr<NSView> view_;
    QPointer<QWidget> widget_;
    std::vector<std::unique_ptr<ViewPresenter>> below_;
    std::optional<unsigned> shownCount_;
    std::optional<NSCursor> shownCursor_;
    QPointer<LayerOverlay> layer_;
};

} // namespace quillbox
