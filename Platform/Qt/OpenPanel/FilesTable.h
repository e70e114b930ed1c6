#pragma once

#include "OpenPanelSettings.h"

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
    // Called with the character that begins a path, when one is typed here, and with any other that is.
    std::function<void(const QString& text)> onPathBegun;
    std::function<void(const QString& text)> onSearchBegun;
    // Called by Escape while something is searched for.
    std::function<void()> onSearchEnded;

    // Selects the entries of these names alone. Arrow keys go on from the first of them, or begin at the top.
    void select(const std::vector<std::string>& names);
    // In the order shown.
    std::vector<std::string> selectedPaths() const;
    std::vector<std::string> selectedNames() const;

    // What is selected stays so where it is still shown.
    void setShowsHidden(bool shows);
    // Leaves what the text is found in, and selects what it most likely means. An empty one ends the search.
    void search(const QString& text);
    void setOrder(OpenPanelSettings::Order order, bool isAscending);
    OpenPanelSettings::Order order() const;
    bool isAscending() const;

    // Says why there are no rows; shown while there are none. A note about a failure is drawn as an enabled text.
    void setEmptyNote(const QString& text, bool isFailure);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setUpColumns();
    // Sorts by the column; the other way round where it is sorted by that one.
    void toggleOrder(int column);
    int widthOf(int column, const QStringList& texts) const;

    DirectoryModel& model_;
    bool isSearching_ = false;
    QLabel* emptyNote_;
};

} // namespace quillbox
