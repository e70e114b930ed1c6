#pragma once

#include <sqlite3.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace quillbox {

// Plasma's record, kept by a process of its own as the desktop's is.
class PlasmaWriter {
public:
    explicit PlasmaWriter(const std::string& database)
    {
        std::filesystem::create_directories(std::filesystem::path(database).parent_path());
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends_) != 0 || (child_ = fork()) < 0)
            throw std::runtime_error("no process for the writer");
        close(ends_[child_ == 0 ? 0 : 1]);
        if (child_ == 0)
            serve(database);
    }
    ~PlasmaWriter() { stop(); }
    PlasmaWriter(const PlasmaWriter&) = delete;
    PlasmaWriter& operator=(const PlasmaWriter&) = delete;

    // Whether all of those statements could be run.
    bool run(const std::string& statements)
    {
        bool isDone = false;
        return write(ends_[0], statements.c_str(), statements.size() + 1) > 0
            && read(ends_[0], &isDone, sizeof isDone) > 0 && isDone;
    }
    // Closes the database, as the desktop does at its end.
    void stop()
    {
        if (child_ <= 0)
            return;
        close(ends_[0]);
        waitpid(child_, nullptr, 0);
        child_ = -1;
    }

private:
    [[noreturn]] void serve(const std::string& file)
    {
        sqlite3* database = nullptr;
        sqlite3_open(file.c_str(), &database);
        char statements[4096];
        while (read(ends_[1], statements, sizeof statements) > 0) {
            const bool isDone = sqlite3_exec(database, statements, nullptr, nullptr, nullptr) == SQLITE_OK;
            if (write(ends_[1], &isDone, sizeof isDone) < 0)
                break;
        }
        sqlite3_close(database);
        _exit(0);
    }

    int ends_[2] {};
    pid_t child_ = -1;
};

} // namespace quillbox
