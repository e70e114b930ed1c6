#include "WindowWorld.h"

#include "WindowPresenter.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace quillbox {

namespace {

    struct RowWriter final : NSPasteboardWriting {
        explicit RowWriter(int number) : row(number) { }
        std::vector<std::string> writableTypes() const override { return { "row", NSPasteboardTypeString }; }
        std::optional<PropertyList> pasteboardPropertyList(const std::string& type) const override
        {
            return type == "row" ? PropertyList(std::int64_t { row }) : PropertyList("row " + std::to_string(row));
        }
        int row;
    };

    std::string numbersOn(const NSDraggingInfo& info)
    {
        std::string text;
        for (const PropertyList& value : info.draggingPasteboard.propertyLists("row"))
            text += " " + std::to_string(*value.as<std::int64_t>());
        for (const PropertyList& value : info.draggingPasteboard.propertyLists(NSPasteboardTypeFileURL))
            text += " " + *value.as<std::string>();
        return text;
    }

} // namespace

class WindowWorld::Recorder final : public NSObject, public NSTableViewDataSource, public NSTableViewDelegate {
public:
    Recorder(WindowWorld& world, int count) : rowCount(count), world_(world) { }

    void pressed(NSButton* sender)
    {
        world_.log.push_back(sender->title());
        if (sender->title() == "Apply" && world_.duringAction)
            world_.duringAction();
    }

    int numberOfRows(NSTableView&) override { return rowCount; }
    std::shared_ptr<NSPasteboardWriting> pasteboardWriterForRow(NSTableView&, int row) override
    {
        return row > 0 ? std::make_shared<RowWriter>(row) : nullptr;
    }
    NSDragOperation validateDrop(NSTableView&, const NSDraggingInfo& info, int row, DropOperation) override
    {
        world_.log.push_back("over " + std::to_string(row));
        return row == 0                              ? NSDragOperation::none
            : info.draggingPasteboard.hasType("row") ? NSDragOperation::move
                                                     : NSDragOperation::copy;
    }
    bool acceptDrop(NSTableView& tableView, const NSDraggingInfo& info, int row, DropOperation) override
    {
        world_.log.push_back("drop" + numbersOn(info) + " above " + std::to_string(row));
        tableView.reloadData();
        return true;
    }
    std::shared_ptr<NSView> viewForRow(NSTableView&, int row) override
    {
        auto view = std::make_shared<NSView>();
        auto label = NSTextField::label("row " + std::to_string(row));
        label->setMaximumNumberOfLines(1);
        label->setTranslatesAutoresizingMaskIntoConstraints(false);
        view->addSubview(label);
        NSLayoutConstraint::activate({ label->leftAnchor().constraintEqualTo(view->leftAnchor(), 24),
                                       label->centerYAnchor().constraintEqualTo(view->centerYAnchor()) });
        return view;
    }
    bool shouldSelectRow(NSTableView&, int row) override { return row > 0; }

    int rowCount;

private:
    WindowWorld& world_;
};

WindowWorld::WindowWorld(int rowCount) : desktop(*qApp), recorder_(std::make_shared<Recorder>(*this, rowCount))
{
    const auto view = std::make_shared<NSView>();
    view->setFrame({ {}, { kWidth, kHeight } });
    const auto add = [&](const std::shared_ptr<NSView>& subview, NSRect frame) {
        subview->setFrame(frame);
        view->addSubview(subview);
    };
    field = std::make_shared<NSTextField>();
    field->setEditable(true);
    field->setSelectable(true);
    field->setBezeled(true);
    field->setStringValue("name");
    add(field, { { 10, 10 }, { 200, 28 } });
    checkbox = NSButton::checkbox("Check & see");
    add(checkbox, { { 10, 50 }, { 200, 24 } });
    table = std::make_shared<NSTableView>();
    table->setAllowsMultipleSelection(true);
    table->setDataSource(recorder_);
    table->setDelegate(recorder_);
    table->registerForDraggedTypes({ "row", NSPasteboardTypeFileURL });
    scrollView = NSScrollView::create();
    scrollView->setHasVerticalScroller(true);
    scrollView->setDocumentView(table);
    add(scrollView, { { 10, 100 }, { 200, 200 } });
    addButton("Cancel", "\x1b", *view, 320);
    addButton("Apply", "\r", *view, 360);

    auto controller = std::make_shared<NSViewController>();
    controller->setView(view);
    const auto made = NSWindow::create(std::move(controller));
    made->setTitle("Trial");
    made->setStyleMask(NSWindow::titled | NSWindow::closable | NSWindow::resizable);
    made->setContentMinSize({ kWidth, kHeight });
    made->setContentMaxSize({ kWidth, kHeight + 300 });
    made->orderFrontRegardless();
    window = made;
    settle();
}

WindowWorld::~WindowWorld()
{
    NSWindow::closeAll();
    settle();
}

void WindowWorld::addButton(const std::string& title, const std::string& key, NSView& in, double y)
{
    static const Selector pressed = makeSelector<&Recorder::pressed>("pressed:");
    auto made = std::make_shared<NSButton>();
    made->setTitle(title);
    made->setKeyEquivalent(key);
    made->setTarget(recorder_, &pressed);
    made->setFrame({ { 10, y }, { 120, 28 } });
    in.addSubview(made);
}

std::shared_ptr<NSWindow> WindowWorld::beginSheet()
{
    const auto view = std::make_shared<NSView>();
    view->setFrame({ {}, { 200, 120 } });
    addButton("Discard", "\x1b", *view, 10);
    addButton("Use", "\r", *view, 50);
    auto controller = std::make_shared<NSViewController>();
    controller->setView(view);
    auto sheet = NSWindow::create(std::move(controller));
    sheet->setStyleMask(NSWindow::titled);
    window.lock()->beginSheet(sheet, [this](NSModalResponse code) { log.push_back("ended " + std::to_string(code)); });
    settle();
    return sheet;
}

void WindowWorld::settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

std::string WindowWorld::takeLog()
{
    std::string text;
    for (const std::string& line : std::exchange(log, {}))
        text += (text.empty() ? "" : ", ") + line;
    return text;
}

QWidget* WindowWorld::widget() const
{
    for (QWidget* each : QApplication::topLevelWidgets()) {
        if (dynamic_cast<WindowPresenter*>(each) && !each->parentWidget() && each->isVisible())
            return each;
    }
    return nullptr;
}

QPushButton* WindowWorld::button(const QString& title) const
{
    for (auto* each : widget()->findChildren<QPushButton*>()) {
        if (each->text() == title)
            return each;
    }
    return nullptr;
}

void WindowWorld::key(QWidget& window, int key, const QString& text)
{
    for (const auto type : { QEvent::KeyPress, QEvent::KeyRelease }) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(window.focusWidget() ? window.focusWidget() : &window, &event);
    }
    settle();
}

void WindowWorld::click(QWidget& widget)
{
    // A checkbox takes clicks on itself and its text only.
    const QPointF place(10, widget.rect().center().y());
    for (const auto type : { QEvent::MouseButtonPress, QEvent::MouseButtonRelease }) {
        QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    settle();
}

} // namespace quillbox
