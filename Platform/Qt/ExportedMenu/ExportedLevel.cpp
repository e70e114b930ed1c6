#include "ExportedLevel.h"

#include "ImageRenderer.h"
#include "MenuText.h"
#include "ShownTitle.h"
#include "StatusIcon.h"

#include <QBuffer>
#include <QIcon>

#include <algorithm>
#include <unordered_map>

namespace quillbox {

namespace {

    using Kind = ExportedRow::Kind;

    // Hosts scale pictures down to the size of icons in their menus; one of this many times that size stays sharp.
    constexpr double kPictureScale = 2;

    // Returns the name to send if no theme here has any of the names. The host's theme may have one: most themes have
    // icons for groups of types.
    QString nameForOtherThemes(const std::vector<std::string>& names)
    {
        const auto group = std::find_if(names.begin(), names.end(),
                                        [](const std::string& name) { return name.ends_with("-x-generic"); });
        const auto likely = group == names.end() ? names.begin() : group;
        return likely == names.end() ? QString() : QString::fromStdString(*likely);
    }

    // Looks each source up once for a level, because most rows share a few.
    class IconsOfLevel {
    public:
        void describe(const NSImage& image, ExportedRow& row)
        {
            if (image.isEmpty())
                return;
            const auto [found, isNew] = known_.try_emplace(image.source());
            if (isNew)
                found->second = lookUp(image);
            row.iconName = found->second.name;
            row.iconData = found->second.data;
        }

    private:
        struct Icon {
            QString name;
            QByteArray data;
        };

        static Icon lookUp(const NSImage& image)
        {
            const ImageContent content = image.source()->content();
            const auto* themed = std::get_if<ThemedImage>(&content);
            if (themed) {
                for (const std::string& name : themed->names)
                    if (const QString themeName = QString::fromStdString(name); QIcon::hasThemeIcon(themeName))
                        return { themeName, {} };
            }
            const QPixmap pixmap = ImageRenderer::pixmap(image, kPictureScale, StatusIcon::neutralColour());
            if (pixmap.isNull())
                return { themed ? nameForOtherThemes(themed->names) : QString(), {} };
            Icon icon;
            QBuffer buffer(&icon.data);
            if (buffer.open(QBuffer::WriteOnly))
                pixmap.save(&buffer, "PNG");
            return icon;
        }

        std::unordered_map<const ImageSource*, Icon> known_;
    };

    void appendRows(std::vector<ExportedRow>& rows, const NSMenuItem& item, std::size_t place, IconsOfLevel& icons)
    {
        ExportedRow row;
        row.kind = exportedKind(item);
        row.place = place;
        if (item.state())
            row.isChecked = item.state() == NSControlStateValue::on;
        if (row.kind != Kind::separator)
            icons.describe(item.image(), row);
        if (row.kind != Kind::text) {
            row.title = exportedTitle(item);
            rows.push_back(std::move(row));
            return;
        }
        for (const QString& line : shownLines(item)) {
            row.title = line;
            rows.push_back(row);
            row.iconName.clear();
            row.iconData.clear();
        }
    }

    // Appends a row for each part of the items from `begin` to `end`. The last one gets the remainder.
    void appendMoreRows(std::vector<ExportedRow>& rows, const NSMenu::ItemArray& items, std::size_t begin,
                        std::size_t end)
    {
        const bool isOne = end - begin <= kItemsPerExportedLevel;
        for (std::size_t part = 0; begin < end; ++part) {
            const bool isLast = part + 1 == kItemsPerExportedLevel;
            const std::size_t count = isLast ? end - begin : std::min(end - begin, kItemsPerExportedLevel);
            const QString title = isOne || count > kItemsPerExportedLevel
                ? QStringLiteral("More (%1)").arg(count)
                : QStringLiteral("More (%1 \u2013 %2)")
                      .arg(shownTitle(exportedTitle(*items[begin]), TitleWidth::half),
                           shownTitle(exportedTitle(*items[begin + count - 1]), TitleWidth::half));
            rows.push_back({ Kind::more, title, {}, {}, begin, count });
            begin += count;
        }
    }

} // namespace

Kind exportedKind(const NSMenuItem& item)
{
    if (item.isSeparatorItem())
        return Kind::separator;
    if (item.hasSubmenu())
        return item.action() ? Kind::submenuWithAction : Kind::submenu;
    return item.action() ? Kind::item : Kind::text;
}

QString exportedTitle(const NSMenuItem& item)
{
    return item.isSeparatorItem() ? QString() : shownLines(item).join(QChar(' '));
}

std::vector<ExportedRow> exportedLevel(const NSMenu& menu, const ExportedRow& super)
{
    const NSMenu::ItemArray& items = menu.itemArray();
    const bool goesOn = super.kind == Kind::more;
    const std::size_t begin = goesOn ? std::min(super.place, items.size()) : 0;
    const std::size_t end = goesOn ? std::min(super.place + super.count, items.size()) : items.size();
    const std::size_t endOfItems = std::min(end, begin + kItemsPerExportedLevel);

    std::vector<ExportedRow> rows;
    if (super.kind == Kind::submenuWithAction) {
        rows.push_back({ Kind::openSuper, QStringLiteral("Open %1").arg(super.title), super.iconName, super.iconData });
        if (begin < end)
            rows.push_back({ Kind::separator, {}, {}, {} });
    }
    IconsOfLevel icons;
    for (std::size_t place = begin; place < endOfItems; ++place)
        appendRows(rows, *items[place], place, icons);
    appendMoreRows(rows, items, endOfItems, end);
    return rows;
}

} // namespace quillbox
