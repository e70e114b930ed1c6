#pragma once

#include "NSOpenPanel.h"

#include <QDialog>

#include <optional>
#include <string>
#include <vector>

class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;
class QStringListModel;
class QToolButton;
class QTreeView;
class QVBoxLayout;

namespace quillbox {

class DirectoryModel;
class OpenPanelPlaces;

// The open panel as people know it from their desktop: places, a path that can be typed, a table of one directory.
// Unlike the toolkit's own, one panel gives files and directories together: Return and a double click enter a
// directory, the confirm button takes it. Packages are taken as files are. What is chosen is what was touched last,
// the selection or the typed path. Made by OpenPanelPresenter; reads the directory when it is shown, and again when
// the person comes back to it.
class OpenPanelDialog final : public QDialog {
public:
    // `panel` must outlive the dialog.
    OpenPanelDialog(const NSOpenPanel& panel, QWidget* parent);

    // Once it was accepted: what was chosen, in the order shown.
    const std::vector<URL>& urls() const { return urls_; }

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeTop(QVBoxLayout* down);
    void makeMiddle(QVBoxLayout* down);
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

    // In the order shown.
    std::vector<std::string> selectedPaths() const;
    std::vector<std::string> selectedNames() const;
    std::vector<std::string> chosenPaths() const;
    bool canChoose(const std::string& path) const;
    // The directory that opening this path shows; none for files and packages.
    std::optional<std::string> directoryToEnter(const std::string& path) const;

    void pathWasEdited(const QString& text);
    // Tab: types what all continuations have in common.
    void continueTyping();
    // Return, or a double click.
    void openSelection();
    void openTypedPath();
    void confirm(const std::vector<std::string>& paths);
    void choiceHasChanged();
    bool handleKeyOfTable(QKeyEvent& event);

    const NSOpenPanel& panel_;
    std::vector<URL> urls_;
    std::vector<std::string> back_;
    // What the path field names while it is edited and nothing else is selected.
    std::optional<std::string> typed_;
    bool isTyping_ = false;

    DirectoryModel* model_ = nullptr;
    QStringListModel* continuations_ = nullptr;
    // The part of the typed text that the continuations are of.
    std::optional<QString> continued_;
    OpenPanelPlaces* places_ = nullptr;
    QTreeView* table_ = nullptr;
    QLineEdit* path_ = nullptr;
    // In place of the table's rows where there are none.
    QLabel* emptyNote_ = nullptr;
    QLabel* note_ = nullptr;
    QPushButton* confirm_ = nullptr;
    QToolButton* backButton_ = nullptr;
    QToolButton* upButton_ = nullptr;
};

} // namespace quillbox
