#pragma once

#include "ShownText.h"

#include <QWidget>

#include <optional>

namespace quillbox {

// Text that can only be read. It is painted in the palette's colour for its background, unless it has a colour of its
// own.
class TextLabel final : public QWidget {
public:
    explicit TextLabel(QWidget* parent) : QWidget(parent) { }

    void showText(const AttributedString& text, bool isOneLine);
    // Without a colour, the palette's is used.
    void setOwnColour(std::optional<QColor> colour);
    const QString& text() const { return plain_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    ShownText& laidOut();

    AttributedString text_;
    bool isOneLine_ = false;
    QString plain_;
    std::optional<QColor> ownColour_;
    std::optional<ShownText> laidOut_;
};

} // namespace quillbox
