#include "ViewKinds.h"

#include "ButtonPresenter.h"
#include "ImageViewPresenter.h"
#include "PopUpButtonPresenter.h"
#include "ScrollViewPresenter.h"
#include "TableViewPresenter.h"
#include "TabViewPresenter.h"
#include "TextFieldPresenter.h"

namespace quillbox {

namespace {

    template <class View, class Presenter>
    std::unique_ptr<ViewPresenter> makeIf(const std::shared_ptr<NSView>& view, QWidget& parent)
    {
        auto wanted = std::dynamic_pointer_cast<View>(view);
        return wanted ? std::make_unique<Presenter>(wanted, parent) : nullptr;
    }

} // namespace

std::unique_ptr<ViewPresenter> makeViewPresenter(const std::shared_ptr<NSView>& view, QWidget& parent)
{
    using Make = std::unique_ptr<ViewPresenter> (*)(const std::shared_ptr<NSView>&, QWidget&);
    static constexpr Make kKinds[] = {
        makeIf<NSTextField, TextFieldPresenter>,     makeIf<NSButton, ButtonPresenter>,
        makeIf<NSTableView, TableViewPresenter>,     makeIf<NSScrollView, ScrollViewPresenter>,
        makeIf<NSImageView, ImageViewPresenter>,     makeIf<NSTabView, TabViewPresenter>,
        makeIf<NSPopUpButton, PopUpButtonPresenter>,
    };
    for (const Make makeKind : kKinds) {
        if (auto presenter = makeKind(view, parent))
            return presenter;
    }
    return std::make_unique<ViewPresenter>(view, new QWidget(&parent));
}

} // namespace quillbox
