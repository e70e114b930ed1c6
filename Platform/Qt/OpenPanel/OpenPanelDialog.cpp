#include "OpenPanelDialog.h"

#include "CanonicalPath.h"
#include "DirectoryModel.h"
#include "FileManager.h"
#include "LinkChain.h"
#include "OpenPanelPlaces.h"
#include "TypedPath.h"
#include "Unicode.h"
#include "URLResourceValues.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStringListModel>
#include <QStyle>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace quillbox {

namespace {

    // Logical pixels.
    constexpr QSize kNaturalSize { 760, 500 };
    constexpr double kLargestPart = 0.9;
    constexpr int kSizeCharacters = 12;
    constexpr int kDateCharacters = 22;

    FileManager& files()
    {
        return FileManager::defaultManager();
    }

    bool isDirectory(const std::string& path)
    {
        return files().isDirectory(path);
    }

    // What links and alias files at the end of the path lead to; the path itself where that is not there.
    std::string resolvingAliases(const std::string& path)
    {
        const auto end = endOfLinks(path);
        if (!end || end->path == path)
            return path;
        const Result<std::string> canonical = canonicalPath(end->path);
        return canonical ? *canonical : path;
    }

    QLabel* makeNote(QWidget* parent)
    {
        auto* label = new QLabel(parent);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    }

} // namespace

OpenPanelDialog::OpenPanelDialog(const NSOpenPanel& panel, QWidget* parent) : QDialog(parent), panel_(panel)
{
    setWindowTitle(QApplication::applicationDisplayName());
    auto* down = new QVBoxLayout(this);
    makeTop(down);
    makeMiddle(down);
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
    const auto addButton = [&](const char* iconName, QStyle::StandardPixmap icon, const char* name, auto action) {
        auto* button = new QToolButton(this);
        button->setIcon(QIcon::fromTheme(QString::fromLatin1(iconName), style()->standardIcon(icon)));
        button->setToolTip(QString::fromLatin1(name));
        button->setAccessibleName(QString::fromLatin1(name));
        button->setAutoRaise(true);
        connect(button, &QToolButton::clicked, this, action);
        across->addWidget(button);
        return button;
    };
    backButton_ = addButton("go-previous", QStyle::SP_ArrowBack, "Back", &OpenPanelDialog::goBack);
    upButton_ = addButton("go-up", QStyle::SP_ArrowUp, "Up", &OpenPanelDialog::goUp);

    path_ = new QLineEdit(this);
    path_->setAccessibleName(QStringLiteral("Path"));
    continuations_ = new QStringListModel(this);
    auto* completer = new QCompleter(continuations_, path_);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    path_->setCompleter(completer);
    path_->installEventFilter(this);
    connect(path_, &QLineEdit::textEdited, this, &OpenPanelDialog::pathWasEdited);
    completer->popup()->installEventFilter(this);
    // A continuation that was picked from the list, once the field has it; Return may have entered it already.
    connect(
        completer, qOverload<const QString&>(&QCompleter::activated), this,
        [this](const QString& text) {
            if (typedPath(text, model_->directory()) == model_->directory())
                choiceHasChanged();
            else
                pathWasEdited(text);
        },
        Qt::QueuedConnection);
    connect(path_, &QLineEdit::returnPressed, this, &OpenPanelDialog::openTypedPath);
    across->addWidget(path_, 1);
}

void OpenPanelDialog::makeMiddle(QVBoxLayout* down)
{
    auto* splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    down->addWidget(splitter, 1);
    places_ = new OpenPanelPlaces(splitter, [this](const std::string& path) {
        enter(path);
        table_->setFocus();
    });
    model_ = new DirectoryModel(this);
    model_->setFilesEnabled(panel_.canChooseFiles());
    table_ = new QTreeView(splitter);
    table_->setAccessibleName(QStringLiteral("Files"));
    table_->setModel(model_);
    table_->setRootIsDecorated(false);
    table_->setItemsExpandable(false);
    table_->setUniformRowHeights(true);
    table_->setAllColumnsShowFocus(true);
    table_->setTextElideMode(Qt::ElideMiddle);
    table_->setSelectionMode(panel_.allowsMultipleSelection() ? QAbstractItemView::ExtendedSelection
                                                              : QAbstractItemView::SingleSelection);
    table_->setSortingEnabled(true);
    table_->sortByColumn(DirectoryModel::name, Qt::AscendingOrder);
    QHeaderView* header = table_->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(DirectoryModel::name, QHeaderView::Stretch);
    const int character = fontMetrics().averageCharWidth();
    header->resizeSection(DirectoryModel::size, character * kSizeCharacters);
    header->resizeSection(DirectoryModel::modified, character * kDateCharacters);
    table_->installEventFilter(this);
    connect(table_, &QTreeView::doubleClicked, this, &OpenPanelDialog::openSelection);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &OpenPanelDialog::choiceHasChanged);

    emptyNote_ = makeNote(table_->viewport());
    emptyNote_->setAlignment(Qt::AlignCenter);
    auto* over = new QVBoxLayout(table_->viewport());
    over->addWidget(emptyNote_);
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
        const std::vector<std::string> selected = selectedNames();
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
    while (directory.size() > 1 && !isDirectory(directory))
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
    emptyNote_->setEnabled(!result);
    if (!result)
        emptyNote_->setText(
            QStringLiteral("This directory can't be shown: %1").arg(QString::fromStdString(result.error().reason())));
    else
        emptyNote_->setText(QStringLiteral("Nothing here"));
    emptyNote_->setVisible(model_->rowCount() == 0);
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
    showDirectory(directory, selectedNames());
    table_->verticalScrollBar()->setValue(scrolled);
    if (isTyping) {
        path_->setText(text);
        pathWasEdited(text);
    }
}

void OpenPanelDialog::select(const std::vector<std::string>& names)
{
    const std::unordered_set<std::string_view> wanted(names.begin(), names.end());
    QItemSelection selection;
    int first = -1;
    // One range for rows that follow one another, since there may be thousands.
    int rangeStart = -1;
    for (int row = 0; row <= model_->rowCount(); ++row) {
        const bool isWanted = row < model_->rowCount() && wanted.contains(model_->nameOf(row));
        if (isWanted && rangeStart < 0)
            rangeStart = row;
        if (isWanted || rangeStart < 0)
            continue;
        selection.select(model_->index(rangeStart, 0), model_->index(row - 1, model_->columnCount() - 1));
        first = first < 0 ? rangeStart : first;
        rangeStart = -1;
    }
    // Arrow keys go on from the first one, or begin at the top.
    if (model_->rowCount() > 0) {
        const QModelIndex current = model_->index(std::max(first, 0), 0);
        table_->selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
        table_->scrollTo(current);
    }
    table_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    choiceHasChanged();
}

// What is chosen

std::vector<std::string> OpenPanelDialog::selectedPaths() const
{
    const QModelIndexList selected = table_->selectionModel()->selectedRows();
    std::vector<int> rows(static_cast<std::size_t>(selected.size()));
    std::transform(selected.begin(), selected.end(), rows.begin(),
                   [](const QModelIndex& index) { return index.row(); });
    std::sort(rows.begin(), rows.end());
    std::vector<std::string> paths(rows.size());
    std::transform(rows.begin(), rows.end(), paths.begin(), [this](int row) { return model_->path(row); });
    return paths;
}

std::vector<std::string> OpenPanelDialog::selectedNames() const
{
    std::vector<std::string> names = selectedPaths();
    for (std::string& name : names)
        name = path::lastPathComponent(name);
    return names;
}

std::vector<std::string> OpenPanelDialog::chosenPaths() const
{
    if (typed_)
        return { *typed_ };
    return selectedPaths();
}

bool OpenPanelDialog::canChoose(const std::string& path) const
{
    const std::string target = panel_.resolvesAliases() ? resolvingAliases(path) : path;
    const bool isFile = !isDirectory(target) || isPackageName(path::lastPathComponent(target));
    return isFile ? panel_.canChooseFiles() : panel_.canChooseDirectories();
}

std::optional<std::string> OpenPanelDialog::directoryToEnter(const std::string& path) const
{
    if (isDirectory(path))
        return isPackageName(path::lastPathComponent(path)) ? std::nullopt : std::optional(path);
    const std::string target = panel_.resolvesAliases() ? resolvingAliases(path) : path;
    return target != path && isDirectory(target) ? directoryToEnter(target) : std::nullopt;
}

void OpenPanelDialog::choiceHasChanged()
{
    if (isTyping_)
        return;
    typed_.reset();
    note_->clear();
    path_->setText(typedText(model_->directory()));
    confirm_->setEnabled(table_->selectionModel()->hasSelection());
}

void OpenPanelDialog::pathWasEdited(const QString& text)
{
    const QString begun = text.left(text.lastIndexOf(QChar('/')) + 1) + (text.contains("/.") ? "." : "");
    if (continued_ != begun) {
        continued_ = begun;
        continuations_->setStringList(typedContinuations(text, model_->directory()));
    }
    note_->clear();
    isTyping_ = true;
    table_->clearSelection();
    isTyping_ = false;
    const std::string path = typedPath(text, model_->directory());
    const bool isThere = !text.isEmpty() && path != model_->directory() && files().fileExists(path);
    typed_ = isThere ? std::optional(path) : std::nullopt;
    confirm_->setEnabled(typed_ && canChoose(*typed_));
}

void OpenPanelDialog::continueTyping()
{
    const QString typed = path_->text();
    std::optional<QString> common;
    for (const QString& text : continuations_->stringList()) {
        if (!text.startsWith(typed, Qt::CaseInsensitive))
            continue;
        qsizetype length = typed.size();
        while (common && length < std::min(common->size(), text.size()) && (*common)[length] == text[length])
            ++length;
        common = common ? common->left(length) : text;
    }
    if (!common)
        return;
    path_->setText(*common);
    pathWasEdited(*common);
    path_->completer()->setCompletionPrefix(*common);
    path_->completer()->complete();
}

void OpenPanelDialog::openSelection()
{
    const std::vector<std::string> paths = selectedPaths();
    const auto directory = paths.size() == 1 ? directoryToEnter(paths.front()) : std::nullopt;
    if (directory)
        enter(*directory);
    else
        confirm(paths);
}

void OpenPanelDialog::openTypedPath()
{
    const QString text = path_->text();
    const std::string path = typedPath(text, model_->directory());
    if (!files().fileExists(path)) {
        note_->setText(QStringLiteral("There is no “%1”").arg(text));
        return;
    }
    // With a slash behind it, a package's name means its inside.
    const bool isInsideMeant = text.endsWith(QChar('/')) && isDirectory(path);
    if (const auto directory = isInsideMeant ? std::optional(path) : directoryToEnter(path)) {
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
        if (canChoose(path))
            urls.push_back(URL::fileURLWithPath(panel_.resolvesAliases() ? resolvingAliases(path) : path));
    }
    // Where directories can't be chosen, the confirm button opens them.
    const auto directory = urls.empty() && paths.size() == 1 ? directoryToEnter(paths.front()) : std::nullopt;
    if (directory)
        return enter(*directory);
    if (urls.empty())
        return;
    urls_ = std::move(urls);
    accept();
}

// Keys that the table or the path field would not hand on, or only together with the default button's

bool OpenPanelDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Hide && !event->spontaneous())
        reject();
    if (event->type() != QEvent::KeyPress)
        return false;
    auto& key = static_cast<QKeyEvent&>(*event);
    if (watched == table_)
        return handleKeyOfTable(key);
    if (watched == path_->completer()->popup() && key.key() == Qt::Key_Tab) {
        continueTyping();
        return true;
    }
    const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (watched == path_ && isReturn && !key.modifiers().testFlag(Qt::ControlModifier)) {
        openTypedPath();
        return true;
    }
    return false;
}

bool OpenPanelDialog::handleKeyOfTable(QKeyEvent& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        openSelection();
        return true;
    case Qt::Key_Backspace:
        goUp();
        return true;
    case Qt::Key_Slash:
    case Qt::Key_AsciiTilde:
        path_->setFocus();
        path_->setText(event.text());
        pathWasEdited(path_->text());
        path_->completer()->complete();
        return true;
    default:
        return false;
    }
}

} // namespace quillbox
