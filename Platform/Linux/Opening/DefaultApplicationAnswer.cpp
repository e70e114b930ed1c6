#include "DefaultApplicationAnswer.h"

#include "GLibPointer.h"

#include <cerrno>
#include <gio/gdesktopappinfo.h>

namespace quillbox {

std::string entriesOfHandlers(const std::string& contentType)
{
    GList* infos = g_app_info_get_all_for_type(contentType.c_str());
    // GIO lists what the user has added first, and the default application somewhere.
    if (GAppInfo* usual = g_app_info_get_default_for_type(contentType.c_str(), FALSE))
        infos = g_list_prepend(infos, usual);
    std::string entries;
    for (const GList* link = infos; link; link = link->next) {
        GAppInfo* info = G_APP_INFO(link->data);
        const char* entry = g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(info));
        const bool isUsualAgain = link != infos && g_app_info_equal(info, G_APP_INFO(infos->data));
        if (entry && !isUsualAgain && (g_app_info_supports_files(info) || g_app_info_supports_uris(info)))
            entries.append(entry).push_back('\0');
    }
    g_list_free_full(infos, g_object_unref);
    return entries;
}

FileAnswer answerWithDefaultApplication(const FileQuestion& question)
{
    if (question.number == 1)
        return { 0, 0, entriesOfHandlers(question.bytes) };
    const GLibObject<GAppInfo> info(g_app_info_get_default_for_type(question.bytes.c_str(), FALSE));
    const char* entry = info ? g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(info.get())) : nullptr;
    return entry ? FileAnswer { 0, 0, entry } : FileAnswer { ENOENT, 0, {} };
}

} // namespace quillbox
