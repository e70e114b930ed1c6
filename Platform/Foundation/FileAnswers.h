#pragma once

#include "DirectoryListing.h"
#include "FileIdentity.h"
#include "FileQuestion.h"
#include "Result.h"
#include "URLResourceValues.h"

#include <sys/stat.h>

namespace quillbox {

// Asks the file system itself, for however long that takes: in the helper process (MountHelper), which installs no
// MountInquiry. What is not asked of the file system gives EPROTO.
FileAnswer answered(const FileQuestion& question);

// What the answers mean, for those whose question it was. An answer that can't be understood gives the error EPROTO,
// as the system would.
namespace answer {
    Result<URLResourceValues> resourceValues(const FileAnswer& answer, const std::string& path);
    Result<DirectoryListing> listing(const FileAnswer& answer, const std::string& path);
    Result<FileStatus> identity(const FileAnswer& answer, const std::string& path);
    Result<struct stat> status(const FileAnswer& answer, const std::string& path);
    Result<std::string> text(const FileAnswer& answer, const char* what, const std::string& path);
} // namespace answer

} // namespace quillbox
