#pragma once

#include "TitleSearch.h"

#include <QLineEdit>

#include <functional>
#include <optional>

class QKeyEvent;

namespace quillbox {

// The line at the top of a popup in which text is typed that narrows its rows. Every key that it gets goes to the popup
// first, which passes on those that are for the text. A MenuPopup owns it, and the popup's events say what follows from
// a change of the text.
class NarrowingLine final : public QLineEdit {
public:
    // `keyPressed` gets each key.
    NarrowingLine(QWidget& popup, const NSMenu& menu, std::function<void(QKeyEvent&)> keyPressed);

    // Returns false for a key that is not for the text.
    bool type(QKeyEvent& event);
    // The rows that contain the text, as indexes into the menu's items; nothing if the text is empty.
    std::optional<TitleSearch::Rows> rows() const;

protected:
    bool event(QEvent* event) override;

private:
    TitleSearch search_;
    std::function<void(QKeyEvent&)> keyPressed_;
};

} // namespace quillbox
