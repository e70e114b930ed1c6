#include "OpenPanelDialog.h"

#include "DirectoryModel.h"
#include "FileManager.h"
#include "FilesTable.h"
#include "MenuText.h"
#include "MountInquiry.h"
#include "NavigationBar.h"
#include "OpenPanelPlaces.h"
#include "PathField.h"
#include "SearchField.h"
#include "Unicode.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QShowEvent>
#include <QSplitter>
#include <QVBoxLayout>

namespace quillbox {

namespace {

    // Logical pixels.
    constexpr QSize kNaturalSize { 760, 500 };
    constexpr double kLargestPart = 0.9;

    FileManager& files()
    {
        return FileManager::defaultManager();
    }

    QLabel* makeNote(QWidget* parent)
    {
        auto* label = new QLabel(parent);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    }

} // namespace

OpenPanelDialog::OpenPanelDialog(const NSOpenPanel& panel, const std::vector<Place>& places, std::string directory,
                                 QWidget* parent)
    : QDialog(parent),
      panel_(panel),
      firstDirectory_(std::move(directory))
{
    setWindowTitle(QApplication::applicationDisplayName());
    auto* down = new QVBoxLayout(this);
    makeTop(down);
    makeMiddle(down, places);
    makeButtons(down);
    makeShortcuts();
    table_->setFocus();
    applySettings();
    if (parent)
        parent->installEventFilter(this);
}

void OpenPanelDialog::makeTop(QVBoxLayout* down)
{
    if (!panel_.message().empty()) {
        QLabel* message = makeNote(this);
        message->setText(QString::fromStdString(panel_.message()));
        down->addWidget(message);
    }
    bar_ = new NavigationBar(this);
    bar_->onBack = [this] { goBack(); };
    bar_->onUp = [this] { goUp(); };
    path_ = &bar_->path();
    path_->onEdited = [this] { pathWasEdited(); };
    path_->onReturn = [this] { openTypedPath(); };
    search_ = &bar_->search();
    search_->onReturn = [this] { openSelection(); };
    search_->onEnd = [this] { table_->setFocus(); };
    search_->onMove = [this](QKeyEvent& event) {
        table_->setFocus();
        QApplication::sendEvent(table_, &event);
    };
    connect(search_, &QLineEdit::textChanged, this, &OpenPanelDialog::search);
    down->addWidget(bar_);
}

void OpenPanelDialog::makeMiddle(QVBoxLayout* down, const std::vector<Place>& places)
{
    auto* splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    down->addWidget(splitter, 1);
    places_ = new OpenPanelPlaces(places, splitter);
    places_->onOpen = [this](const std::string& path) {
        enter(path);
        table_->setFocus();
    };
    model_ = new DirectoryModel(this);
    model_->setFilesEnabled(panel_.canChooseFiles());
    table_ = new FilesTable(*model_, splitter);
    table_->setSelectionMode(panel_.allowsMultipleSelection() ? QAbstractItemView::ExtendedSelection
                                                              : QAbstractItemView::SingleSelection);
    table_->onOpen = [this] { openSelection(); };
    table_->onUp = [this] { goUp(); };
    table_->onPathBegun = [this](const QString& text) {
        path_->setFocus();
        path_->type(text);
    };
    table_->onSearchEnded = [this] { search_->clear(); };
    table_->onSearchBegun = [this](const QString& text) { search_->type(text); };
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &OpenPanelDialog::selectionHasChanged);
    splitter->setStretchFactor(1, 1);
    const int placesWidth = places_->sizeHint().width();
    splitter->setSizes({ placesWidth, kNaturalSize.width() - placesWidth });
}

void OpenPanelDialog::makeButtons(QVBoxLayout* down)
{
    auto* across = new QHBoxLayout;
    showsHidden_ = new QCheckBox(QStringLiteral("&Hidden files"), this);
    showsHidden_->setToolTip(QStringLiteral("Ctrl+H"));
    connect(showsHidden_, &QCheckBox::toggled, this, &OpenPanelDialog::showHiddenFiles);
    across->addWidget(showsHidden_);
    note_ = makeNote(this);
    across->addWidget(note_, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    confirm_ = buttons->addButton(QString::fromStdString(panel_.prompt()), QDialogButtonBox::AcceptRole);
    confirm_->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    connect(confirm_, &QPushButton::clicked, this, [this] { confirm(chosenPaths()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    across->addWidget(buttons);
    down->addLayout(across);
}

// Those of the parts are made by them.
void OpenPanelDialog::makeShortcuts()
{
    const auto add = [this](Qt::KeyboardModifier modifier, Qt::Key key, auto action) {
        connect(new QShortcut(QKeyCombination(modifier, key), this), &QShortcut::activated, this, action);
    };
    add(Qt::ControlModifier, Qt::Key_H, [this] { showsHidden_->toggle(); });
    add(Qt::AltModifier, Qt::Key_Down, [this] { openSelection(); });
    add(Qt::AltModifier, Qt::Key_Home, [this] { enter(files().homeDirectoryForCurrentUser().path()); });
    add(Qt::NoModifier, Qt::Key_F5, [this] { reload(); });
    for (const Qt::Key key : { Qt::Key_Return, Qt::Key_Enter })
        add(Qt::ControlModifier, key, [this] { confirm_->click(); });
}

// How it is arranged

void OpenPanelDialog::applySettings()
{
    const OpenPanelSettings& settings = panel_.settings();
    table_->setOrder(settings.order, settings.isAscending);
    showsHidden_->setChecked(settings.showsHiddenFiles);
    const QSize room = screen()->availableSize() * kLargestPart;
    const QSize last(static_cast<int>(settings.size.width), static_cast<int>(settings.size.height));
    resize((last.isEmpty() ? kNaturalSize : last).expandedTo(minimumSizeHint()).boundedTo(room));
}

OpenPanelSettings OpenPanelDialog::settings() const
{
    OpenPanelSettings settings = panel_.settings();
    // On a smaller screen the panel was made smaller, and not by the person.
    if (size() != firstSize_ && !isMaximized() && !isFullScreen())
        settings.size = { static_cast<double>(width()), static_cast<double>(height()) };
    settings.order = table_->order();
    settings.isAscending = table_->isAscending();
    settings.showsHiddenFiles = model_->showsHidden();
    return settings;
}

std::optional<std::string> OpenPanelDialog::directoryShown() const
{
    return failure_.isEmpty() && !model_->directory().empty() ? std::optional(model_->directory()) : std::nullopt;
}

void OpenPanelDialog::showHiddenFiles(bool shows)
{
    isSelectionPassive_ = true;
    table_->setShowsHidden(shows);
    isSelectionPassive_ = false;
    path_->setShowsHidden(shows);
    showEmptyNote();
    if (!path_->isEdited())
        selectionHasChanged();
}

void OpenPanelDialog::search(const QString& text)
{
    table_->search(text);
    showEmptyNote();
    selectionHasChanged();
}

void OpenPanelDialog::showEmptyNote()
{
    if (!failure_.isEmpty())
        table_->setEmptyNote(QStringLiteral("This directory can't be shown: %1").arg(failure_), true);
    else if (!search_->text().isEmpty())
        table_->setEmptyNote(QStringLiteral("No name here contains “%1”").arg(search_->text()), false);
    else
        table_->setEmptyNote(QStringLiteral("Nothing here"), false);
}

// Where it is

void OpenPanelDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (event->spontaneous() || !model_->directory().empty())
        return;
    firstSize_ = size();
    std::string directory = firstDirectory_;
    if (directory.empty())
        directory = files().homeDirectoryForCurrentUser().path();
    while (directory.size() > 1 && !files().isDirectory(directory))
        directory = path::deletingLastPathComponent(directory);
    showDirectory(directory.empty() ? "/" : directory);
}

void OpenPanelDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    // The person may have made there what they want to choose.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !model_->directory().empty()
        && model_->isOutOfDate())
        reload();
}

void OpenPanelDialog::showDirectory(const std::string& directory, const std::vector<std::string>& selected)
{
    // The person goes somewhere: mounts that did not answer are asked again.
    MountInquiry::beginOpening();
    isSelectionPassive_ = true;
    if (directory != model_->directory())
        search_->clear();
    const Result<void> result = model_->read(directory);
    isSelectionPassive_ = false;
    failure_ = result ? QString() : QString::fromStdString(result.error().reason());
    showEmptyNote();
    places_->setShown(directory);
    bar_->setWays(!back_.empty(), directory != "/");
    select(selected);
}

void OpenPanelDialog::enter(const std::string& directory)
{
    if (directory != model_->directory())
        back_.push_back(model_->directory());
    showDirectory(directory);
}

void OpenPanelDialog::goBack()
{
    if (back_.empty())
        return;
    const std::string from = model_->directory();
    const std::string to = back_.back();
    back_.pop_back();
    const bool isAbove = path::deletingLastPathComponent(from) == to;
    showDirectory(to,
                  isAbove ? std::vector { std::string(path::lastPathComponent(from)) } : std::vector<std::string>());
}

void OpenPanelDialog::goUp()
{
    const std::string from = model_->directory();
    if (from == "/")
        return;
    back_.push_back(from);
    showDirectory(std::string(path::deletingLastPathComponent(from)), { std::string(path::lastPathComponent(from)) });
}

void OpenPanelDialog::reload()
{
    const int scrolled = table_->verticalScrollBar()->value();
    const bool isTyping = path_->isEdited();
    const QString text = path_->text();
    const std::string directory = model_->directory();
    showDirectory(directory, table_->selectedNames());
    table_->verticalScrollBar()->setValue(scrolled);
    if (isTyping)
        path_->type(text);
}

void OpenPanelDialog::select(const std::vector<std::string>& names)
{
    table_->select(names);
    selectionHasChanged();
}

// What is chosen

bool OpenPanelDialog::isDirectoryChosen() const
{
    return !model_->directory().empty() && panel_.canChooseDirectories() && !table_->selectionModel()->hasSelection()
        && !path_->isEdited() && search_->text().isEmpty() && panel_.canChoose(model_->directory());
}

std::vector<std::string> OpenPanelDialog::chosenPaths() const
{
    if (typed_)
        return { *typed_ };
    if (isDirectoryChosen())
        return { model_->directory() };
    return table_->selectedPaths();
}

void OpenPanelDialog::selectionHasChanged()
{
    if (isSelectionPassive_)
        return;
    typed_.reset();
    path_->setDirectory(model_->directory());
    const bool isDirectoryMeant = isDirectoryChosen();
    const std::string shownName = unicode::displayText(path::lastPathComponent(model_->directory()));
    note_->setText(isDirectoryMeant
                       ? QStringLiteral("With nothing selected, “%1” itself is chosen").arg(shownOnOneLine(shownName))
                       : QString());
    confirm_->setEnabled(isDirectoryMeant || table_->selectionModel()->hasSelection());
}

void OpenPanelDialog::pathWasEdited()
{
    MountInquiry::continueOpening();
    note_->clear();
    isSelectionPassive_ = true;
    table_->clearSelection();
    isSelectionPassive_ = false;
    const std::string path = path_->path();
    const bool isThere = !path_->text().trimmed().isEmpty() && files().fileExists(path);
    typed_ = isThere ? std::optional(path) : std::nullopt;
    confirm_->setEnabled(typed_ && panel_.canChoose(*typed_));
}

void OpenPanelDialog::openSelection()
{
    const std::vector<std::string> paths = table_->selectedPaths();
    const auto directory = paths.size() == 1 ? panel_.directoryToEnter(paths.front()) : std::nullopt;
    if (directory)
        enter(*directory);
    else
        confirm(paths);
}

void OpenPanelDialog::openTypedPath()
{
    const QString text = path_->text().trimmed();
    const std::string path = path_->path();
    if (const Result<FileKind> kind = files().kind(path); !kind) {
        note_->setText(kind.error().isNotThere() ? QStringLiteral("There is no “%1”").arg(text)
                                                 : QString::fromStdString(kind.error().description()));
        return;
    }
    // With a slash behind it, a package's name means its inside.
    const bool isInsideMeant = text.endsWith(QChar('/')) && files().isDirectory(path);
    if (const auto directory = isInsideMeant ? std::optional(path) : panel_.directoryToEnter(path)) {
        enter(*directory);
        path_->end(false);
    } else {
        confirm({ path });
    }
}

void OpenPanelDialog::confirm(const std::vector<std::string>& paths)
{
    std::vector<URL> urls;
    for (const std::string& path : paths) {
        if (panel_.canChoose(path))
            urls.push_back(panel_.urlOfChoice(path));
    }
    // Where directories can't be chosen, the confirm button opens them.
    const auto directory = urls.empty() && paths.size() == 1 ? panel_.directoryToEnter(paths.front()) : std::nullopt;
    if (directory)
        return enter(*directory);
    if (urls.empty())
        return;
    urls_ = std::move(urls);
    accept();
}

bool OpenPanelDialog::eventFilter(QObject* watched, QEvent* event)
{
    // The panel goes with its window.
    if (watched == parentWidget() && event->type() == QEvent::Hide && !event->spontaneous())
        reject();
    return false;
}

} // namespace quillbox
