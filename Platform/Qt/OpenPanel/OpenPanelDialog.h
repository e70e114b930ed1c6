#pragma once

#include "NSOpenPanel.h"
#include "Places.h"

#include <QDialog>

#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quillbox {

class DirectoryModel;
class FilesTable;
class NavigationBar;
class OpenPanelPlaces;
class PathField;
class SearchField;

// The open panel as people know it from their desktop: places, a path that can be typed, a table of one directory.
// Unlike the toolkit's own, one panel gives files and directories together: Return and a double click enter a
// directory, the confirm button takes it. Packages are taken as files are. What is chosen is what was touched last,
// the selection or the typed path; with neither, it is the directory shown. Made by OpenPanelPresenter; reads the
// directory when it is shown, and again when the person comes back to it.
class OpenPanelDialog final : public QDialog {
public:
    // `panel` must outlive the dialog. It begins in `directory`, or above it where that is gone; empty means the home
    // directory.
    OpenPanelDialog(const NSOpenPanel& panel, const std::vector<Place>& places, std::string directory, QWidget* parent);

    // Returns what was chosen, in the order shown, once the dialog was accepted.
    const std::vector<URL>& urls() const { return urls_; }
    // Returns how the person has arranged the panel.
    OpenPanelSettings settings() const;
    // Returns nothing if the directory could not be read.
    std::optional<std::string> directoryShown() const;

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeTop(QVBoxLayout* down);
    void makeMiddle(QVBoxLayout* down, const std::vector<Place>& places);
    void makeButtons(QVBoxLayout* down);
    void makeShortcuts();
    void applySettings();

    // Shows the directory, with the entries of these names selected.
    void showDirectory(const std::string& directory, const std::vector<std::string>& selected = {});
    // Does the same, and lets the person go back to the directory before.
    void enter(const std::string& directory);
    void goBack();
    void goUp();
    void reload();
    void select(const std::vector<std::string>& names);
    void showHiddenFiles(bool shows);
    void search(const QString& text);
    void showEmptyNote();

    // Says whether nothing else can be meant than the directory shown.
    bool isDirectoryChosen() const;
    std::vector<std::string> chosenPaths() const;
    void selectionHasChanged();
    void pathWasEdited();
    // Called when the person presses Return or clicks twice.
    void openSelection();
    void openTypedPath();
    void confirm(const std::vector<std::string>& paths);

    const NSOpenPanel& panel_;
    std::vector<URL> urls_;
    std::vector<std::string> back_;
    std::string firstDirectory_;
    // Why the directory can't be shown; empty where it can.
    QString failure_;
    // What the path field names while it is edited; none where nothing is there.
    std::optional<std::string> typed_;
    // Set while rows change for another reason than that the person selects some.
    bool isSelectionPassive_ = false;
    // In logical pixels, when the dialog was shown.
    QSize firstSize_;

    DirectoryModel* model_ = nullptr;
    OpenPanelPlaces* places_ = nullptr;
    FilesTable* table_ = nullptr;
    NavigationBar* bar_ = nullptr;
    // Both are parts of the bar.
    PathField* path_ = nullptr;
    SearchField* search_ = nullptr;
    QCheckBox* showsHidden_ = nullptr;
    QLabel* note_ = nullptr;
    QPushButton* confirm_ = nullptr;
};

} // namespace quillbox
