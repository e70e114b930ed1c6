#include "OpenPanelPlaces.h"

#include "ImageRenderer.h"
#include "MenuText.h"
#include "NSWorkspace.h"
#include "Unicode.h"

#include <QFontMetrics>
#include <QIcon>
#include <QKeyEvent>
#include <QStyle>

namespace quillbox {

namespace {

    constexpr int kIconSide = 16;
    constexpr int kCharactersWide = 26;
    // The height of a heading, in hundredths of its font's.
    constexpr int kHeadingPart = 170;
    constexpr int kPathRole = Qt::UserRole;

    QByteArray bytes(const std::string& path)
    {
        return QByteArray(path.data(), static_cast<qsizetype>(path.size()));
    }

    std::string pathOf(const QListWidgetItem& item)
    {
        return item.data(kPathRole).toByteArray().toStdString();
    }

    // In the desktop's icon theme; empty for a place that has the icon of its directory.
    QString iconNameOf(const Place& place)
    {
        if (place.kind == Place::Kind::fileSystem)
            return QStringLiteral("drive-harddisk");
        if (place.kind == Place::Kind::volume)
            return place.mayHang ? QStringLiteral("folder-remote") : QStringLiteral("drive-removable-media");
        return place.mayHang ? QStringLiteral("folder-remote") : QString();
    }

    // Empty for the places at the top, which need none.
    QString headingOf(Place::Kind kind)
    {
        switch (kind) {
        case Place::Kind::bookmark:
            return QStringLiteral("Bookmarks");
        case Place::Kind::volume:
            return QStringLiteral("Volumes");
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
    QString heading;
    for (const Place& place : places) {
        if (headingOf(place.kind) != heading) {
            heading = headingOf(place.kind);
            addHeading(heading);
        }
        add(place);
    }
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (item->flags().testFlag(Qt::ItemIsEnabled))
            onOpen(pathOf(*item));
    });
}

void OpenPanelPlaces::addHeading(const QString& title)
{
    auto* item = new QListWidgetItem(title, this);
    item->setFlags(Qt::NoItemFlags);
    QFont bold = font();
    bold.setBold(true);
    item->setFont(bold);
    item->setTextAlignment(Qt::AlignLeft | Qt::AlignBottom);
    item->setSizeHint({ 0, QFontMetrics(bold).height() * kHeadingPart / 100 });
}

void OpenPanelPlaces::add(const Place& place)
{
    auto* item = new QListWidgetItem(iconOf(place), shownOnOneLine(place.title), this);
    item->setData(kPathRole, bytes(place.path));
    item->setToolTip(toolTipMarkup(shownOnOneLine(unicode::displayText(place.path))));
}

QIcon OpenPanelPlaces::iconOf(const Place& place) const
{
    QIcon named = QIcon::fromTheme(iconNameOf(place));
    if (!named.isNull())
        return named;
    // The workspace looks at the directory.
    if (place.mayHang)
        return style()->standardIcon(QStyle::SP_DirLinkIcon, nullptr, this);
    NSImage image = NSWorkspace::sharedWorkspace().icon(place.path, NSWorkspace::EntryKind::directory);
    image.setSize({ kIconSide, kIconSide });
    return ImageRenderer::pixmap(image, devicePixelRatioF(), palette().color(QPalette::Text));
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
    if (isReturn && currentItem() && currentItem()->flags().testFlag(Qt::ItemIsEnabled))
        return onOpen(pathOf(*currentItem()));
    QListWidget::keyPressEvent(event);
}

} // namespace quillbox
