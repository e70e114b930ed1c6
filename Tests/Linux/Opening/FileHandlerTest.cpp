#include "FileHandler.h"

#include "MountInquiry.h"
#include "MountNamespace.h"
#include "StallingVolume.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace quillbox {
namespace {

    // What opens the file, or the number of the error.
    std::string handlerOf(const std::string& path, const XdgEnvironment& environment)
    {
        const Result<GLibObject<GAppInfo>> handler = defaultHandler(path, environment);
        return handler ? g_app_info_get_name(handler->get()) : std::to_string(handler.error().code);
    }

    // What else opens the file, or the number of the error.
    std::string entriesFor(const std::string& path, const XdgEnvironment& environment)
    {
        const Result<std::vector<std::string>> entries = handlerEntries(path, environment);
        std::string names;
        for (const std::string& entry : entries ? *entries : std::vector<std::string>())
            names += std::filesystem::path(entry).stem().string() + " ";
        return entries ? names : std::to_string(entries.error().code);
    }

    // GIO itself looks at the program that an entry names, and would wait for as long as the mount is silent.
    TEST(FileHandler, AnApplicationOnASilentMountKeepsNobodyWaiting)
    {
        if (!MountNamespace::enter())
            return;
        const TemporaryDirectory files;
        ASSERT_EQ(chmod(files.writeFile("served/pages", "#!/bin/sh\n").c_str(), 0755), 0);
        const StallingVolume volume(files.path("served"), files.path("mounted"), files.path("gate"));
        if (!volume.reasonItCannotBe().empty())
            GTEST_SKIP() << volume.reasonItCannotBe();
        XdgEnvironment environment;
        environment.dataHome = std::getenv("XDG_DATA_HOME");
        files.writeFile("pages.desktop",
                        "[Desktop Entry]\nType=Application\nName=pages\nTryExec=" + files.path("mounted/pages")
                            + "\nExec=" + files.path("mounted/pages") + " %f\n");
        files.writeFile("mimeapps.list", "[Default Applications]\ntext/html=pages.desktop\n");
        for (const char* name : { "pages.desktop", "mimeapps.list" })
            std::filesystem::copy(files.path(name), environment.dataHome + "/applications");
        const std::string page = files.writeFile("a.html", "<p>");
        const std::string text = files.writeFile("a.txt", "text");

        constexpr std::chrono::milliseconds kQuestion { 400 };
        constexpr std::chrono::milliseconds kOpening { 1500 };
        MountInquiry inquiry(std::filesystem::read_symlink("/proc/self/exe").replace_filename("quillbox-mount-helper"),
                             [](const Error&) {}, { kQuestion, kOpening });
        volume.stopAnswering();
        EXPECT_EQ(handlerOf(page, environment), std::to_string(ETIMEDOUT));
        MountInquiry::beginOpening();
        EXPECT_EQ(handlerOf(text, environment), "viewer") << "whose application is not on that mount";
        EXPECT_TRUE(entriesFor(text, environment).starts_with("viewer "));
        MountInquiry::beginOpening();
        EXPECT_EQ(entriesFor(page, environment), std::to_string(ETIMEDOUT));
        volume.answerAgain();
        MountInquiry::beginOpening();
        EXPECT_EQ(handlerOf(page, environment), "pages");
    }

} // namespace
} // namespace quillbox
