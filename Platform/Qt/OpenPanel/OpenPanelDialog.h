#pragma once

#include "NSOpenPanel.h"
#include "Places.h"

#include <QDialog>
#include <QStyle>

#include <optional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace quillbox {

class DirectoryModel;
class FilesTable;
class OpenPanelPlaces;
class PathField;

// The open panel as people know it from their desktop: places, a path that can be typed, a table of one directory.
// Unlike the toolkit's own, one panel gives files and directories together: Return and a double click enter a
// directory, the confirm button takes it. Packages are taken as files are. What is chosen is what was touched last,
// the selection or the typed path. Made by OpenPanelPresenter; reads the directory when it is shown, and again when
// the person comes back to it.
class OpenPanelDialog final : public QDialog {
public:
    // `panel` must outlive the dialog.
    OpenPanelDialog(const NSOpenPanel& panel, const std::vector<Place>& places, QWidget* parent);

    // Once it was accepted: what was chosen, in the order shown.
    const std::vector<URL>& urls() const { return urls_; }

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeTop(QVBoxLayout* down);
    QToolButton* makeButton(const char* iconName, QStyle::StandardPixmap icon, const char* name,
                            void (OpenPanelDialog::*action)());
    void makeMiddle(QVBoxLayout* down, const std::vector<Place>& places);
    void makeButtons(QVBoxLayout* down);
    void makeShortcuts();

    // Shows the directory, with the entries of these names selected.
    void showDirectory(const std::string& directory, const std::vector<std::string>& selected = {});
    // The same, and the one before can be gone back to.
    void enter(const std::string& directory);
    void goBack();
    void goUp();
    void reload();
    void select(const std::vector<std::string>& names);

    std::vector<std::string> chosenPaths() const;
    void selectionHasChanged();
    void pathWasEdited();
    // By Return or a double click.
    void openSelection();
    void openTypedPath();
    void confirm(const std::vector<std::string>& paths);

    const NSOpenPanel& panel_;
    std::vector<URL> urls_;
    std::vector<std::string> back_;
    // What the path field names while it is edited and nothing else is selected.
    std::optional<std::string> typed_;
    bool isTyping_ = false;

    DirectoryModel* model_ = nullptr;
    OpenPanelPlaces* places_ = nullptr;
    FilesTable* table_ = nullptr;
    PathField* path_ = nullptr;
    QLabel* note_ = nullptr;
    QPushButton* confirm_ = nullptr;
    QToolButton* backButton_ = nullptr;
    QToolButton* upButton_ = nullptr;
};

} // namespace quillbox
