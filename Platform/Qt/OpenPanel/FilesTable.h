#pragma once

#include <QTreeView>

#include <functional>
#include <string>
#include <vector>

class QLabel;

namespace quillbox {

class DirectoryModel;

// The open panel's table of one directory: columns, selection, and what the keys in it mean. It shows the model that it
// is given and does nothing by itself; its dialog hears what the person wants and carries it out.
class FilesTable final : public QTreeView {
public:
    // `model` outlives the table.
    FilesTable(DirectoryModel& model, QWidget* parent);

    // Called when the selection is opened, by Return or a double click.
    std::function<void()> onOpen;
    // Called when the directory above is wanted.
    std::function<void()> onUp;
    // Called with the character that begins a path, when one is typed here.
    std::function<void(const QString& text)> onPathBegun;

    // Selects the entries of these names alone. Arrow keys go on from the first of them, or begin at the top.
    void select(const std::vector<std::string>& names);
    // In the order shown.
    std::vector<std::string> selectedPaths() const;
    std::vector<std::string> selectedNames() const;

    // Says why there are no rows; shown while there are none. A note about a failure is drawn as an enabled text.
    void setEmptyNote(const QString& text, bool isFailure);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setUpColumns();

    DirectoryModel& model_;
    QLabel* emptyNote_;
};

} // namespace quillbox
