#include "OpenPanelPlaces.h"

#include "FileManager.h"
#include "ImageRenderer.h"
#include "Installed.h"
#include "MenuText.h"
#include "MountTable.h"
#include "NSWorkspace.h"
#include "Unicode.h"
#include "VolumeNames.h"

#include <QFontMetrics>
#include <QIcon>
#include <QKeyEvent>

namespace quillbox {

namespace {

    constexpr int kIconSide = 16;
    constexpr int kCharactersWide = 18;
    constexpr int kPathRole = Qt::UserRole;

    QString shownName(const std::string& path)
    {
        return shownOnOneLine(unicode::displayText(path::lastPathComponent(path)));
    }

    QByteArray bytes(const std::string& path)
    {
        return QByteArray(path.data(), static_cast<qsizetype>(path.size()));
    }

} // namespace

OpenPanelPlaces::OpenPanelPlaces(QWidget* parent, std::function<void(const std::string&)> open)
    : QListWidget(parent),
      open_(std::move(open))
{
    setAccessibleName(QStringLiteral("Places"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setIconSize({ kIconSide, kIconSide });
    FileManager& files = FileManager::defaultManager();
    const std::string home = files.homeDirectoryForCurrentUser().path();
    add(QStringLiteral("Home"), home);
    std::vector<std::string> paths;
    for (const auto directory : { SearchPathDirectory::desktopDirectory, SearchPathDirectory::documentDirectory,
                                  SearchPathDirectory::downloadsDirectory, SearchPathDirectory::musicDirectory,
                                  SearchPathDirectory::picturesDirectory, SearchPathDirectory::moviesDirectory }) {
        for (const URL& url : files.urls(directory, SearchPathDomainMask::userDomainMask))
            paths.push_back(url.path());
    }
    for (const std::string& path : paths) {
        if (path != home && files.fileExists(path))
            add(shownName(path), path);
    }
    add(QStringLiteral("File System"), "/", QStringLiteral("drive-harddisk"));
    addVolumes();
    // A place that is shown already is opened again, too: the person may have left it empty-handed.
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { open_(item->data(kPathRole).toByteArray().toStdString()); });
}

void OpenPanelPlaces::addVolumes()
{
    VolumeNames* names = Installed<VolumeNames>::current();
    for (const MountTable::Mount& mount : MountTable::current().mounts()) {
        if (!mount.isPersons())
            continue;
        const auto name = names ? names->localizedName(mount.mountPoint) : std::nullopt;
        add(name ? shownOnOneLine(unicode::displayText(*name)) : shownName(mount.mountPoint), mount.mountPoint,
            QStringLiteral("drive-removable-media"));
    }
}

void OpenPanelPlaces::add(const QString& title, const std::string& path, const QString& iconName)
{
    auto* item = new QListWidgetItem(title, this);
    item->setData(kPathRole, bytes(path));
    item->setToolTip(toolTipMarkup(shownOnOneLine(unicode::displayText(path))));
    QIcon icon = iconName.isEmpty() ? QIcon() : QIcon::fromTheme(iconName);
    if (icon.isNull()) {
        NSImage image = NSWorkspace::sharedWorkspace().icon(path, NSWorkspace::EntryKind::directory);
        image.setSize({ kIconSide, kIconSide });
        icon = ImageRenderer::pixmap(image, devicePixelRatioF(), palette().color(QPalette::Text));
    }
    item->setIcon(icon);
}

void OpenPanelPlaces::setShown(const std::string& directory)
{
    int row = 0;
    while (row < count() && item(row)->data(kPathRole).toByteArray() != bytes(directory))
        ++row;
    if (row < count())
        setCurrentRow(row);
    else
        clearSelection();
}

QSize OpenPanelPlaces::sizeHint() const
{
    return { fontMetrics().averageCharWidth() * kCharactersWide, QListWidget::sizeHint().height() };
}

void OpenPanelPlaces::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // Ctrl+Return confirms the panel.
    if (isReturn && event->modifiers().testFlag(Qt::ControlModifier))
        return event->ignore();
    if (isReturn && currentItem())
        return open_(currentItem()->data(kPathRole).toByteArray().toStdString());
    QListWidget::keyPressEvent(event);
}

} // namespace quillbox
