#pragma once

#include "TemporaryDirectory.h"

#include <QIcon>
#include <QStringList>

#include <string>

namespace quillbox {

// The contents of a picture that is one square of that colour.
inline std::string plainSvg(const std::string& colour, const std::string& side = "16")
{
    return "<svg xmlns='http://www.w3.org/2000/svg' width='" + side + "' height='" + side + "'><rect width='" + side
        + "' height='" + side + "' fill='" + colour + "'/></svg>";
}

// The icon themes of a test's own, "green" and "red", each with a single icon, "known", of that colour. They are all
// that the desktop has, and the green one is its theme, for as long as this lives.
class IconThemes {
public:
    IconThemes()
    {
        for (const std::string theme : { "green", "red" }) {
            directory.writeFile(theme + "/index.theme",
                                "[Icon Theme]\nDirectories=16\n[16]\nSize=16\nType=Scalable\nMaxSize=512\n");
            directory.writeFile(theme + "/16/known.svg", plainSvg(theme == "red" ? "#ff0000" : "#00ff00"));
        }
        QIcon::setThemeSearchPaths({ QString::fromStdString(directory.path()) });
        QIcon::setThemeName("green");
    }
    ~IconThemes()
    {
        QIcon::setThemeSearchPaths(formerPaths_);
        QIcon::setThemeName({});
    }
    IconThemes(const IconThemes&) = delete;
    IconThemes& operator=(const IconThemes&) = delete;

    const TemporaryDirectory directory;

private:
    const QStringList formerPaths_ = QIcon::themeSearchPaths();
};

} // namespace quillbox
