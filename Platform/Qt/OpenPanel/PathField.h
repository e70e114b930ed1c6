#pragma once

#include <QLineEdit>

#include <functional>
#include <optional>
#include <string>

class QStringListModel;

namespace quillbox {

// The open panel's field that shows where it is and in which another path can be typed: it lists how the typed text
// could go on, and Tab types what all of these have in common. What its text stands for is told by TypedPath.
class PathField final : public QLineEdit {
public:
    explicit PathField(QWidget* parent);

    // Called when the person has changed the text.
    std::function<void()> onEdited;
    // Called when they press Return in it.
    std::function<void()> onReturn;

    // Shows a directory, in which relative paths begin from now on. What was typed goes.
    void setDirectory(const std::string& directory);
    // The absolute path that the text stands for; there need not be anything.
    std::string path() const;
    // Whether the text is what the person has typed since then.
    bool isEdited() const { return isEdited_; }
    // Types a text in place of all that is there.
    void type(const QString& text);
    // Offers hidden entries as well.
    void setShowsHidden(bool shows);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void wasEdited();
    void lookForContinuations();
    void continueTyping();

    std::string directory_;
    // What was shown or typed last.
    QString knownText_;
    bool isEdited_ = false;
    bool showsHidden_ = false;
    QStringListModel* continuations_;
    // The part of the typed text that the continuations are of.
    std::optional<QString> continued_;
};

} // namespace quillbox
