#include "OpenPanelDialog.h"

#include "DirectoryModel.h"
#include "FileManager.h"
#include "FilesTable.h"
#include "OpenPanelPlaces.h"
#include "PathField.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QShowEvent>
#include <QSplitter>
#include <QToolButton>
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

OpenPanelDialog::OpenPanelDialog(const NSOpenPanel& panel, const std::vector<Place>& places, QWidget* parent)
    : QDialog(parent),
      panel_(panel)
{
    setWindowTitle(QApplication::applicationDisplayName());
    auto* down = new QVBoxLayout(this);
    makeTop(down);
    makeMiddle(down, places);
    makeButtons(down);
    makeShortcuts();
    table_->setFocus();
    const QSize room = screen()->availableSize() * kLargestPart;
    resize(kNaturalSize.expandedTo(minimumSizeHint()).boundedTo(room));
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
    auto* across = new QHBoxLayout;
    down->addLayout(across);
    backButton_ = makeButton("go-previous", QStyle::SP_ArrowBack, "Back", &OpenPanelDialog::goBack);
    across->addWidget(backButton_);
    upButton_ = makeButton("go-up", QStyle::SP_ArrowUp, "Up", &OpenPanelDialog::goUp);
    across->addWidget(upButton_);
    path_ = new PathField(this);
    path_->onEdited = [this] { pathWasEdited(); };
    path_->onReturn = [this] { openTypedPath(); };
    across->addWidget(path_, 1);
}

QToolButton* OpenPanelDialog::makeButton(const char* iconName, QStyle::StandardPixmap icon, const char* name,
                                         void (OpenPanelDialog::*action)())
{
    auto* button = new QToolButton(this);
    button->setIcon(QIcon::fromTheme(QString::fromLatin1(iconName), style()->standardIcon(icon)));
    button->setToolTip(QString::fromLatin1(name));
    button->setAccessibleName(QString::fromLatin1(name));
    button->setAutoRaise(true);
    connect(button, &QToolButton::clicked, this, action);
    return button;
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
    table_->onPathBegun = [this](const QString& text) { path_->type(text); };
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &OpenPanelDialog::selectionHasChanged);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({ places_->sizeHint().width(), kNaturalSize.width() });
}

void OpenPanelDialog::makeButtons(QVBoxLayout* down)
{
    auto* across = new QHBoxLayout;
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

void OpenPanelDialog::makeShortcuts()
{
    const auto add = [this](Qt::KeyboardModifier modifier, Qt::Key key, auto action) {
        connect(new QShortcut(QKeyCombination(modifier, key), this), &QShortcut::activated, this, action);
    };
    add(Qt::ControlModifier, Qt::Key_H, [this] {
        const std::vector<std::string> selected = table_->selectedNames();
        model_->setShowsHidden(!model_->showsHidden());
        select(selected);
    });
    add(Qt::ControlModifier, Qt::Key_L, [this] {
        path_->setFocus();
        path_->selectAll();
    });
    add(Qt::AltModifier, Qt::Key_Up, [this] { goUp(); });
    add(Qt::AltModifier, Qt::Key_Down, [this] { openSelection(); });
    add(Qt::AltModifier, Qt::Key_Left, [this] { goBack(); });
    add(Qt::AltModifier, Qt::Key_Home, [this] { enter(files().homeDirectoryForCurrentUser().path()); });
    add(Qt::NoModifier, Qt::Key_F5, [this] { reload(); });
    for (const Qt::Key key : { Qt::Key_Return, Qt::Key_Enter })
        add(Qt::ControlModifier, key, [this] { confirm_->click(); });
}

// Where it is

void OpenPanelDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (event->spontaneous() || !model_->directory().empty())
        return;
    std::string directory = panel_.directoryURL().path();
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
    const Result<void> result = model_->read(directory);
    if (result)
        table_->setEmptyNote(QStringLiteral("Nothing here"), false);
    else
        table_->setEmptyNote(
            QStringLiteral("This directory can't be shown: %1").arg(QString::fromStdString(result.error().reason())),
            true);
    places_->setShown(directory);
    backButton_->setEnabled(!back_.empty());
    upButton_->setEnabled(directory != "/");
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
    const bool isTyping = typed_.has_value() || path_->isModified();
    const QString text = path_->text();
    const std::string directory = model_->directory();
    showDirectory(directory, table_->selectedNames());
    table_->verticalScrollBar()->setValue(scrolled);
    if (isTyping) {
        path_->setText(text);
        pathWasEdited();
    }
}

void OpenPanelDialog::select(const std::vector<std::string>& names)
{
    table_->select(names);
    selectionHasChanged();
}

// What is chosen

std::vector<std::string> OpenPanelDialog::chosenPaths() const
{
    if (typed_)
        return { *typed_ };
    return table_->selectedPaths();
}

void OpenPanelDialog::selectionHasChanged()
{
    if (isTyping_)
        return;
    typed_.reset();
    note_->clear();
    path_->setDirectory(model_->directory());
    confirm_->setEnabled(table_->selectionModel()->hasSelection());
}

void OpenPanelDialog::pathWasEdited()
{
    note_->clear();
    isTyping_ = true;
    table_->clearSelection();
    isTyping_ = false;
    const std::string path = path_->path();
    const bool isThere = !path_->text().isEmpty() && path != model_->directory() && files().fileExists(path);
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
    const QString text = path_->text();
    const std::string path = path_->path();
    if (!files().fileExists(path)) {
        note_->setText(QStringLiteral("There is no “%1”").arg(text));
        return;
    }
    // With a slash behind it, a package's name means its inside.
    const bool isInsideMeant = text.endsWith(QChar('/')) && files().isDirectory(path);
    if (const auto directory = isInsideMeant ? std::optional(path) : panel_.directoryToEnter(path)) {
        enter(*directory);
        path_->setModified(false);
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
