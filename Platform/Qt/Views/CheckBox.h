#pragma once

#include <QCheckBox>

namespace quillbox {

// A checkbox whose title wraps where it is too narrow for it, and whose box can be seen on every background. Space
// changes it; Return is the window's, which has a default button for it.
class CheckBox final : public QCheckBox {
public:
    using QCheckBox::QCheckBox;

    // "&&" for an ampersand.
    void showTitle(const QString& title);
    // As wide as the title, or as `widthLimit` (logical pixels) with as many lines as that takes.
    QSize sizeWithin(double widthLimit);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString title_;
};

} // namespace quillbox
