#include "Result.h"

#include "Unicode.h"

#include <cerrno>
#include <cstring>

namespace quillbox {

Error Error::fromErrno(int code, std::string what, std::string path)
{
    return Error { code, std::move(what), std::move(path) };
}

bool Error::isNotThere() const
{
    return code == ENOENT || code == ENOTDIR;
}

std::string Error::description() const
{
    std::string text = what;
    if (!path.empty()) {
        text += " \"";
        // A line break in a file name must not break the one line.
        for (char c : unicode::displayText(path)) {
            if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
                text += "\xEF\xBF\xBD";
            else
                text += c;
        }
        text += '"';
    }
    if (code != 0) {
        // Not strerror(): its text depends on the locale, and this program speaks English.
        const char* reason = strerrordesc_np(code);
        text += ": ";
        text += reason ? std::string(reason) : "error " + std::to_string(code);
    }
    return text;
}

} // namespace quillbox
