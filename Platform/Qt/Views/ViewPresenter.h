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

// Makes the presenter for a view. Its widget is a child of `parent` and not shown yet.
using MakeViewPresenter = std::unique_ptr<ViewPresenter> (*)(const std::shared_ptr<NSView>& view, QWidget& parent);

// Shows one view with one widget, and its subviews with presenters of their own, which it owns. This class shows plain
// views; each kind of control has a presenter derived from it. The window's presenter calls sync() of the topmost one
// whenever something has changed.
//
// Views come and go while a widget handles an event. Therefore presenters and widgets refer to them weakly, and a
// widget is deleted only after the event.
class ViewPresenter {
public:
    // Takes the widget off the screen. If it had the keyboard focus, the nearest widget above that can take the focus
    // gets it.
    static void retire(std::unique_ptr<ViewPresenter> presenter);

    // The parent of `widget` owns it.
    ViewPresenter(const std::shared_ptr<NSView>& view, QWidget* widget);
    virtual ~ViewPresenter();
    ViewPresenter(const ViewPresenter&) = delete;
    ViewPresenter& operator=(const ViewPresenter&) = delete;

    std::shared_ptr<NSView> view() const { return view_.lock(); }
    QWidget* widget() const { return widget_; }
    // The widget that takes the keyboard focus for the view.
    virtual QWidget* keyWidget() const { return widget_; }

    // Updates this widget's content and the widgets below it to the state of the views. `makePresenter` makes the
    // presenters of views that are shown for the first time.
    void sync(MakeViewPresenter makePresenter);
    // Makes the next sync() show all contents again, changed or not, because the desktop's look has changed.
    void forgetShown();

    // Returns the presenter of the view, which may be this one or one below it; null if there is none.
    ViewPresenter* find(const NSView& view);
    // Returns the presenter whose widget contains `widget`, or is it.
    ViewPresenter* find(const QWidget* widget);

protected:
    // Called when the view has changed, or is shown for the first time.
    virtual void showContent(NSView& view);
    // Called after each sync of the views below.
    virtual void subviewsShown(NSView& view) { static_cast<void>(view); }
    // Returns false if the view has changed so much that it needs a new presenter.
    virtual bool suits(const NSView& view) const
    {
        static_cast<void>(view);
        return true;
    }
    // In the order of the views. Views that have never been visible have no presenter.
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
