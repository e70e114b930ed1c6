#pragma once

#include "AttributedString.h"

#include <QTextBrowser>

namespace quillbox {

// Text that can be selected and copied, on the background of its parent. A word that is too long wraps anywhere. The
// text takes the theme's colours. Links emit anchorClicked() and open nothing by themselves. Unless scroll bars are
// turned on, there are none, and whoever lays it out must give it the height that heightForWidth() returns.
class SelectableText final : public QTextBrowser {
public:
    explicit SelectableText(QWidget* parent);

    // Without attributes the text is in this widget's font. The selection stays where it is, as far as the text goes.
    // Paragraphs whose own lines are too long for the widget are reflowed where that is wished.
    void showText(const AttributedString& text, bool reflowsParagraphs = false);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return { 0, fontMetrics().height() }; }

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void followTheme();
    void fill();

    AttributedString text_;
    bool reflowsParagraphs_ = false;
};

} // namespace quillbox
