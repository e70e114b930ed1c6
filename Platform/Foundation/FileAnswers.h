#pragma once

#include "DirectoryListing.h"
#include "FileIdentity.h"
#include "FileQuestion.h"
#include "Result.h"
#include "URLResourceValues.h"

#include <sys/stat.h>

namespace quillbox {

// Answers the question by asking the file system itself, however long that takes. It is called in the helper process
// (MountHelper), which installs no MountInquiry. A question that is not for the file system gives EPROTO.
FileAnswer answered(const FileQuestion& question);

// These functions turn an answer back into the value that was asked for. They are called in the process that asked. An
// answer that can't be understood gives the error EPROTO.
namespace answer {
    Result<URLResourceValues> resourceValues(const FileAnswer& answer, const std::string& path);
    Result<DirectoryListing> listing(const FileAnswer& answer, const std::string& path);
    Result<FileStatus> identity(const FileAnswer& answer, const std::string& path);
    Result<struct stat> status(const FileAnswer& answer, const std::string& path);
    Result<std::string> text(const FileAnswer& answer, const char* what, const std::string& path);
} // namespace answer

} // namespace quillbox
