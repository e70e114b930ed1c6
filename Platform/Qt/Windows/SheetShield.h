#pragma once

#include <QPointer>
#include <QWidget>

namespace quillbox {

// Lies over a window while a sheet is on it and takes all input: a click brings the sheet forward, and what is typed
// goes to it. The toolkit's own modality would drop such a click, and some window managers would leave the keyboard
// with the window that takes no keys. Gives the keyboard back to where it was when it goes. A child of the window.
class SheetShield final : public QWidget {
public:
    SheetShield(QWidget& window, QWidget& sheet);
    ~SheetShield() override;

    // Whether the widget is the sheet of some window. Assistive technologies are told that it is modal.
    static bool isSheet(const QWidget& widget);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* window, QEvent* event) override;

private:
    void bringSheetForward();

    QPointer<QWidget> sheet_;
    QPointer<QWidget> hadFocus_;
};

} // namespace quillbox
