#pragma once

#include <QLineEdit>

#include <functional>

namespace quillbox {

// The open panel's field for a text that narrows the table down to the names which contain it. Keys that move in a list
// are handed on to the table.
class SearchField final : public QLineEdit {
public:
    explicit SearchField(QWidget* parent);

    // Called when what was found is to be opened.
    std::function<void()> onReturn;
    // Called when the search is given up, and the field is empty.
    std::function<void()> onEnd;
    // Called with a key that is meant for the table.
    std::function<void(QKeyEvent& event)> onMove;

    // Puts the keyboard here and the text behind what is searched for already, as a person who types it does.
    void type(const QString& more);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace quillbox
