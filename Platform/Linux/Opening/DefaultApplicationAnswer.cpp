#include "DefaultApplicationAnswer.h"

#include "GLibPointer.h"

#include <cerrno>
#include <gio/gdesktopappinfo.h>

namespace quillbox {

FileAnswer answerWithDefaultApplication(const FileQuestion& question)
{
    const GLibObject<GAppInfo> info(g_app_info_get_default_for_type(question.bytes.c_str(), FALSE));
    const char* entry = info ? g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(info.get())) : nullptr;
    return entry ? FileAnswer { 0, 0, entry } : FileAnswer { ENOENT, 0, {} };
}

} // namespace quillbox
