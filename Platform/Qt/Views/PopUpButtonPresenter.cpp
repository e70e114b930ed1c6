#include "PopUpButtonPresenter.h"

#include "Appearance.h"

#include <QComboBox>
#include <QWheelEvent>

namespace quillbox {

namespace {

    // The wheel scrolls what it is in; it does not choose by the way.
    class PopUpBox final : public QComboBox {
    public:
        using QComboBox::QComboBox;

    protected:
        void wheelEvent(QWheelEvent* event) override { event->ignore(); }
    };

    QWidget* makeWidget(const std::shared_ptr<NSPopUpButton>& button, QWidget& parent)
    {
        auto* box = new PopUpBox(&parent);
        QObject::connect(box, &QComboBox::activated, box,
                         [box, chosenIn = std::weak_ptr<NSPopUpButton>(button)](int at) {
                             if (const auto known = chosenIn.lock()) {
                                 known->userSelectsItem(at);
                                 box->setCurrentIndex(known->indexOfSelectedItem());
                             }
                         });
        return box;
    }

} // namespace

PopUpButtonPresenter::PopUpButtonPresenter(const std::shared_ptr<NSPopUpButton>& button, QWidget& parent)
    : ViewPresenter(button, makeWidget(button, parent))
{
}

void PopUpButtonPresenter::showContent(NSView& view)
{
    const auto& button = dynamic_cast<const NSPopUpButton&>(view);
    auto* box = static_cast<QComboBox*>(widget());
    box->setFont(shownFont(button.font(), ordinaryFont()));
    box->setEnabled(button.isEnabled());
    if (shownTitles_ != button.itemTitles()) {
        shownTitles_ = button.itemTitles();
        box->clear();
        for (const std::string& title : shownTitles_)
            box->addItem(QString::fromStdString(title));
    }
    box->setCurrentIndex(button.indexOfSelectedItem());
}

} // namespace quillbox
