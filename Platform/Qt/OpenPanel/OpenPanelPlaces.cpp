#include "OpenPanelPlaces.h"

#include "ImageRenderer.h"
#include "MenuText.h"
#include "NSWorkspace.h"
#include "Unicode.h"

#include <QFontMetrics>
#include <QIcon>
#include <QKeyEvent>

namespace quillbox {

namespace {

    constexpr int kIconSide = 16;
    constexpr int kCharactersWide = 18;
    constexpr int kPathRole = Qt::UserRole;

    QByteArray bytes(const std::string& path)
    {
        return QByteArray(path.data(), static_cast<qsizetype>(path.size()));
    }

    std::string pathOf(const QListWidgetItem& item)
    {
        return item.data(kPathRole).toByteArray().toStdString();
    }

    // Of the desktop's icon theme; empty for a place that has the icon of its directory.
    QString iconNameOf(Place::Kind kind)
    {
        switch (kind) {
        case Place::Kind::fileSystem:
            return QStringLiteral("drive-harddisk");
        case Place::Kind::volume:
            return QStringLiteral("drive-removable-media");
        default:
            return {};
        }
    }

} // namespace

OpenPanelPlaces::OpenPanelPlaces(const std::vector<Place>& places, QWidget* parent) : QListWidget(parent)
{
    setAccessibleName(QStringLiteral("Places"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setIconSize({ kIconSide, kIconSide });
    for (const Place& place : places)
        add(place);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { onOpen(pathOf(*item)); });
}

void OpenPanelPlaces::add(const Place& place)
{
    auto* item = new QListWidgetItem(shownOnOneLine(place.title), this);
    item->setData(kPathRole, bytes(place.path));
    item->setToolTip(toolTipMarkup(shownOnOneLine(unicode::displayText(place.path))));
    QIcon icon = QIcon::fromTheme(iconNameOf(place.kind));
    if (icon.isNull()) {
        NSImage image = NSWorkspace::sharedWorkspace().icon(place.path, NSWorkspace::EntryKind::directory);
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
        return onOpen(pathOf(*currentItem()));
    QListWidget::keyPressEvent(event);
}

} // namespace quillbox
