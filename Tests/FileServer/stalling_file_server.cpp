#define FUSE_USE_VERSION 31
#include <fuse.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <unistd.h>

#include <csignal>
#include <sys/file.h>
#include <sys/prctl.h>

// A file system for tests that stops answering and comes back, as a network drive does whose server is away:
//
//     stalling-file-server CONTENTS GATE MOUNT_POINT
//
// shows the directory CONTENTS, read-only, at MOUNT_POINT for as long as the process that started it lives, and writes
// a line once it is there. Before it answers a request it takes a shared lock on the file GATE and releases it: while
// somebody holds that file locked, requests are taken and not answered, and not even a killed process that asked gets
// away. A lock ends with its holder, so nothing stays stuck when a test breaks.

namespace {

std::string contents;
int gate = -1;

std::string inside(const char* path)
{
    ::flock(gate, LOCK_SH);
    ::flock(gate, LOCK_UN);
    return contents + path;
}

int resultOf(long value)
{
    return value < 0 ? -errno : static_cast<int>(value);
}

int getStatus(const char* path, struct stat* status, fuse_file_info*)
{
    return resultOf(::lstat(inside(path).c_str(), status));
}

int readLink(const char* path, char* target, size_t size)
{
    const long length = ::readlink(inside(path).c_str(), target, size - 1);
    if (length < 0)
        return -errno;
    target[length] = '\0';
    return 0;
}

int readDirectory(const char* path, void* entries, fuse_fill_dir_t fill, off_t, fuse_file_info*, fuse_readdir_flags)
{
    DIR* directory = ::opendir(inside(path).c_str());
    if (!directory)
        return -errno;
    while (const dirent* entry = ::readdir(directory)) {
        struct stat status { };
        status.st_mode = static_cast<mode_t>(DTTOIF(entry->d_type));
        fill(entries, entry->d_name, &status, 0, static_cast<fuse_fill_dir_flags>(0));
    }
    ::closedir(directory);
    return 0;
}

int readFile(const char* path, char* bytes, size_t count, off_t position, fuse_file_info*)
{
    std::ifstream file(inside(path), std::ios::binary);
    file.seekg(position);
    file.read(bytes, static_cast<std::streamsize>(count));
    return static_cast<int>(file.gcount());
}

// What the kernel remembers would answer in the server's place.
void* start(fuse_conn_info*, fuse_config* config)
{
    config->attr_timeout = 0;
    config->entry_timeout = 0;
    config->negative_timeout = 0;
    std::puts("mounted");
    std::fflush(stdout);
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fputs("usage: stalling-file-server CONTENTS GATE MOUNT_POINT\n", stderr);
        return EXIT_FAILURE;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    contents = argv[1];
    gate = ::open(argv[2], O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (gate < 0) {
        std::perror(argv[2]);
        return EXIT_FAILURE;
    }
    fuse_operations operations {};
    operations.init = start;
    operations.getattr = getStatus;
    operations.readlink = readLink;
    operations.readdir = readDirectory;
    operations.read = readFile;
    std::string options[] { argv[0], "-f", "-s", "-osubtype=stalling,fsname=stalling,ro", argv[3] };
    char* arguments[] { options[0].data(), options[1].data(), options[2].data(), options[3].data(), options[4].data() };
    return fuse_main(5, arguments, &operations, nullptr);
}
