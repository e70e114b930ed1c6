#include "MountTable.h"

#include "URL.h"

#include <algorithm>
#include <charconv>
#include <fcntl.h>
#include <poll.h>

namespace quillbox {

namespace {

    constexpr const char* kMountInfo = "/proc/self/mountinfo";

    std::string readTable()
    {
        std::string text;
        const FileDescriptor file(::open(kMountInfo, O_RDONLY | O_CLOEXEC));
        char bytes[16384];
        for (ssize_t count = 0; file && (count = ::read(file.get(), bytes, sizeof bytes)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }

    // Blanks and backslashes are written as a backslash and three octal digits.
    std::string unescaped(std::string_view field)
    {
        std::string text;
        for (std::size_t i = 0; i < field.size(); ++i) {
            unsigned value = 0;
            if (field[i] == '\\' && i + 3 < field.size()
                && std::from_chars(field.data() + i + 1, field.data() + i + 4, value, 8).ptr == field.data() + i + 4) {
                text += static_cast<char>(value);
                i += 3;
            } else {
                text += field[i];
            }
        }
        return text;
    }

    std::vector<std::string_view> split(std::string_view text, char separator)
    {
        std::vector<std::string_view> parts;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find(separator), text.size());
            parts.push_back(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return parts;
    }

} // namespace

const MountTable& MountTable::current()
{
    static MountTable table;
    if (table.hasChanged()) {
        table.parse(readTable());
        ++table.generation_;
    }
    return table;
}

bool MountTable::hasChanged()
{
    if (!watched_) {
        watched_ = FileDescriptor(::open(kMountInfo, O_RDONLY | O_CLOEXEC));
        return true;
    }
    pollfd change { watched_.get(), POLLPRI, 0 };
    return ::poll(&change, 1, 0) > 0 && (change.revents & (POLLPRI | POLLERR)) != 0;
}

void MountTable::parse(std::string_view mountinfo)
{
    roots_.clear();
    namesByDirectory_.clear();
    sources_.clear();
    for (const std::string_view line : split(mountinfo, '\n')) {
        // "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw": optional fields end at the dash.
        const std::vector<std::string_view> fields = split(line, ' ');
        std::uint64_t id = 0;
        if (fields.size() < 7
            || std::from_chars(fields[0].data(), fields[0].data() + fields[0].size(), id).ec != std::errc())
            continue;
        std::string root = unescaped(fields[4]);
        for (std::size_t i = 6; i + 2 < fields.size(); ++i) {
            if (fields[i] == "-") {
                sources_[id] = unescaped(fields[i + 2]);
                break;
            }
        }
        namesByDirectory_[std::string(path::deletingLastPathComponent(root))].emplace_back(
            path::lastPathComponent(root));
        roots_.insert(std::move(root));
    }
}

std::unordered_set<std::string> MountTable::mountPointsIn(const std::string& directoryPath) const
{
    const auto found = namesByDirectory_.find(directoryPath);
    if (found == namesByDirectory_.end())
        return {};
    return { found->second.begin(), found->second.end() };
}

const std::string& MountTable::source(std::uint64_t mountId) const
{
    static const std::string kNone;
    const auto found = sources_.find(mountId);
    return found == sources_.end() ? kNone : found->second;
}

} // namespace quillbox
