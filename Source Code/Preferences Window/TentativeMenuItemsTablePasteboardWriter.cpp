#include "TentativeMenuItemsTablePasteboardWriter.h"

#include "GlobalVars.h"

namespace quillbox {

std::vector<std::string> TentativeMenuItemsTablePasteboardWriter::writableTypes() const
{
    return { GlobalVars::tentativeMenuItemPasteboardType(), NSPasteboardTypeString };
}

std::optional<PropertyList>
TentativeMenuItemsTablePasteboardWriter::pasteboardPropertyList(const std::string& forType) const
{
    if (forType == GlobalVars::tentativeMenuItemPasteboardType())
        return std::int64_t { rowNumber };
    if (forType == NSPasteboardTypeString)
        return stringToDrop;
    return std::nullopt;
}

} // namespace quillbox
