#include "GnomeUseRecord.h"

#include "FileContents.h"

#include <pugixml.hpp>

#include <cerrno>

namespace quillbox {

static constexpr std::size_t kLargestRecord = 16 << 20;

static void addApplications(const pugi::xml_node& parent, RecentUses& uses)
{
    for (const pugi::xml_node& application : parent.children("application")) {
        const double when = application.attribute("last-seen").as_double();
        if (when > 0)
            uses.applications.push_back({ application.attribute("id").value(), {}, {}, when });
    }
}

std::optional<RecentUses> GnomeUseRecord::read()
{
    Result<Data> bytes = readFile(file(), kLargestRecord);
    if (!bytes)
        return bytes.error().code == ENOENT ? std::optional(RecentUses()) : std::nullopt;
    pugi::xml_document document;
    // If there is an error in the text, the document still has what comes before it.
    document.load_buffer_inplace(bytes->data(), bytes->size(), pugi::parse_minimal | pugi::parse_escapes);
    RecentUses uses;
    const pugi::xml_node state = document.child("application-state");
    addApplications(state, uses);
    for (const pugi::xml_node& context : state.children("context"))
        addApplications(context, uses);
    return uses;
}

} // namespace quillbox
