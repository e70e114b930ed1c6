#pragma once

#include <QPointer>
#include <QWidget>

namespace quillbox {

// Covers a window while a sheet is on it and takes all its input: a click brings the sheet forward, and keys go to the
// sheet. The toolkit's own modality would drop such a click, and some window managers would leave the keyboard with the
// window, which accepts no keys. When it is destroyed, the widget that had the focus before gets it again. It is a
// child of the window.
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
