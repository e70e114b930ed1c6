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

std::string Error::reason() const
{
    if (code == 0)
        return what;
    // The text of strerror() depends on the locale, and this program speaks English.
    const char* text = strerrordesc_np(code);
    return text ? std::string(text) : "error " + std::to_string(code);
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
    if (code != 0)
        text += ": " + reason();
    return text;
}

} // namespace quillbox
