#pragma once

#include <QString>
#include <QStringList>

#include <string>

namespace quillbox {

// Paths as a person types them, and the file system's bytes that they stand for. A name that is no valid UTF-8 is
// shown and typed with U+FFFD in place of its odd bytes; the entry it stands for is looked up in its directory.

// Returns a path as it is shown in a field where paths are typed.
QString typedText(const std::string& path);

// Returns the absolute path that is meant, without "." and "..": "~" is the home directory, a relative path begins at
// `directory`, and a "file:" URL is a path too. Names that are shown like those of `directory` are taken to be those.
// Blanks around the text count only where something is called so. There need not be anything at the path.
std::string typedPath(const QString& text, const std::string& directory);

// Returns what the text could go on to: everything in the directory that it names so far, written as it began, with a
// slash behind directories. Hidden entries are among them where `showsHidden` is set, and those whose names begin with
// a dot where the name begun does too. Empty where the directory can't be read, and for URLs.
QStringList typedContinuations(const QString& text, const std::string& directory, bool showsHidden = false);

} // namespace quillbox
