#include "DefaultApplicationAnswer.h"
#include "FileAnswers.h"
#include "MountHelper.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include <sys/stat.h>

// Looks at file systems that may not answer, so that the program that started it need not wait for them. It answers
// questions on the socket that is its standard input. Its parent has ended, so no process has to wait for its end, even
// if its file system keeps it for ever.
int main()
{
    using namespace quillbox;
    struct stat status { };
    if (::fstat(STDIN_FILENO, &status) != 0 || !S_ISSOCK(status.st_mode)) {
        std::fputs("Quillbox starts this by itself where it is needed.\n", stderr);
        return EXIT_FAILURE;
    }
    if (const pid_t child = ::fork(); child != 0)
        return child > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    return serveFileQuestions(FileDescriptor(STDIN_FILENO), [](const FileQuestion& question) {
        const bool isOfApplications = question.kind == FileQuestion::Kind::defaultApplication;
        return isOfApplications ? answerWithDefaultApplication(question) : answered(question);
    });
}
