#include "MenuRows.h"

#include "MenuGraphics.h"
#include "NameOrder.h"
#include "Unicode.h"

namespace quillbox {

std::shared_ptr<NSMenuItem> textRow(std::string title)
{
    return std::make_shared<NSMenuItem>(std::move(title));
}

std::shared_ptr<NSMenuItem> missingRow(const std::string& title)
{
    auto row = textRow(unicode::displayText(title));
    if (missingItemIcon())
        row->setImage(*missingItemIcon());
    return row;
}

void setNamedImage(NSMenuItem& row, std::string_view name)
{
    if (const auto image = NSImage::imageNamed(name))
        row.setImage(*image);
}

ItemList sortedByTitle(ItemList items, bool ignoresArticles)
{
    NameOrder order(items.size());
    for (const auto& item : items)
        order.add(ignoresArticles ? titleWithoutArticle(item->title()) : item->title());
    ItemList sorted;
    sorted.reserve(items.size());
    for (const std::uint32_t position : order.sortedPositions())
        sorted.push_back(std::move(items[position]));
    return sorted;
}

} // namespace quillbox
