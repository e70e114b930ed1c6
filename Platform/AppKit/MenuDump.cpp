#include "MenuDump.h"

#include <sstream>

namespace quillbox {

namespace {

    void writeLine(std::ostream& out, std::string_view text)
    {
        for (const char character : text) {
            if (character == '\n')
                out << "\\n";
            else
                out << character;
        }
    }

    void dumpLevel(std::ostream& out, const NSMenu& menu, int depth)
    {
        for (const auto& item : menu.itemArray()) {
            out << std::string(static_cast<std::size_t>(depth) * 2, ' ');
            if (item->isSeparatorItem()) {
                out << "---\n";
                continue;
            }
            writeLine(out, item->attributedTitle() ? item->attributedTitle()->string() : item->title());
            if (item->hasSubmenu())
                out << " >";
            if (item->state())
                out << (item->state() == NSControlStateValue::on ? " [x]" : " [ ]");
            if (!item->image().isEmpty())
                out << " [" << item->image().source()->name() << "]";
            if (item->action())
                out << " (" << item->action()->name << ")";
            if (!item->toolTip().empty()) {
                out << " \"";
                writeLine(out, item->toolTip());
                out << "\"";
            }
            if (!item->isEnabled())
                out << " -";
            out << "\n";
            if (item->hasSubmenu())
                dumpLevel(out, *item->submenu(), depth + 1);
        }
    }

} // namespace

std::string menuDump(const NSMenu& menu)
{
    std::ostringstream out;
    dumpLevel(out, menu, 0);
    return out.str();
}

} // namespace quillbox
