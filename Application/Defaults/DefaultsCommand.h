#pragma once

#include <span>
#include <string>

namespace quillbox {

// What `quillbox-defaults` does with the application's settings: lists, reads, writes and deletes keys, exports and
// imports the menu. Answers on standard output, tells what went wrong on standard error. Uses the UserDefaults that
// are the standard ones, whose file a running Quillbox looks at when its menu opens next.
class DefaultsCommand {
public:
    DefaultsCommand() = delete;

    // Gives the exit code: 0, 1 where the world refused, 2 where the words make no command.
    static int run(std::span<const std::string> words);
};

} // namespace quillbox
