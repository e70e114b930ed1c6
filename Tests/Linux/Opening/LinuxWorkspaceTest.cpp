#include "LinuxWorkspace.h"

#include "FileDescriptor.h"
#include "MountNamespace.h"
#include "XdgTree.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>

namespace quillbox {
namespace {

    namespace fs = std::filesystem;
    using testing::ElementsAre;
    using testing::HasSubstr;
    using testing::IsEmpty;

    using Lines = std::vector<std::string>;

    // A pipe that started programs write their lines to.
    class Answers {
    public:
        explicit Answers(std::string path) : path_(std::move(path))
        {
            mkfifo(path_.c_str(), 0600);
            reopen();
        }
        ~Answers() { unlink(path_.c_str()); }
        Answers(const Answers&) = delete;
        Answers& operator=(const Answers&) = delete;

        const std::string& path() const { return path_; }

        // Waits until one program has written all it had to say.
        Lines read()
        {
            constexpr int kLongestWait = 20'000;
            std::string text;
            pollfd wait { pipe_.get(), POLLIN, 0 };
            for (char byte = 0; poll(&wait, 1, kLongestWait) > 0 && ::read(pipe_.get(), &byte, 1) > 0;)
                text += byte;
            // A pipe whose writer has gone says so for ever.
            reopen();
            Lines lines;
            std::istringstream stream(text);
            for (std::string line; std::getline(stream, line);)
                lines.push_back(line);
            return lines;
        }

    private:
        void reopen() { pipe_ = FileDescriptor(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)); }

        std::string path_;
        FileDescriptor pipe_;
    };

    class LinuxWorkspaceTest : public testing::Test {
    protected:
        LinuxWorkspaceTest()
        {
            tree.environment.desktops = { "XFCE" };
            tree.environment.programDirectories.emplace_back("/usr/bin");
        }

        // A program that tells its own arguments, or what `script` echoes.
        std::string writeTeller(std::string_view name, const std::string& script = "printf '%s\\n' \"$@\"")
        {
            return tree.writeProgram(name, "{ " + script + "; } > '" + answers.path() + "'\n");
        }

        // Opens the bundle of an entry with that Exec and those lines.
        bool openBundle(const std::string& exec, std::string_view more = {})
        {
            tree.writeEntry("system", "a.desktop",
                            "[Desktop Entry]\nType=Application\nName=A\nIcon=icon\nExec=" + exec + "\n"
                                + std::string(more));
            makeWorkspace();
            tree.update();
            return open(bundle);
        }

        bool open(const std::string& path) { return workspace->open(URL::fileURLWithPath(path)); }

        // What the program tells that was started, if one was.
        Lines told(bool isStarted) { return isStarted ? answers.read() : Lines { "(not started)" }; }

        void makeWorkspace()
        {
            workspace.reset();
            tree.restart();
            workspace = std::make_unique<LinuxWorkspace>(tree.keeper(),
                                                         [this](const std::string& message, const std::string& detail) {
                                                             messages.push_back(message + " | " + detail);
                                                         });
            opened.clear();
            workspace->onOpened = [this](const std::string& path) { opened.push_back(path); };
        }

        const std::string home = std::getenv("HOME");
        XdgTree tree;
        const std::string bundle = tree.bundlePath("System/Applications/A.app");
        Answers answers { home + "/answers" };
        std::unique_ptr<LinuxWorkspace> workspace;
        std::vector<std::string> messages;
        // What the present workspace has told of.
        std::vector<std::string> opened;
    };

    TEST_F(LinuxWorkspaceTest, ABundleStartsItsEntry)
    {
        EXPECT_THAT(told(openBundle(writeTeller("teller") + " \"two words\" %i %c %% %U")),
                    ElementsAre("two words", "--icon", "icon", "A", "%"));
        // Where there is no bus, what asks to be activated over it is started by its Exec.
        EXPECT_THAT(told(openBundle(writeTeller("teller") + " again", "DBusActivatable=true\n")), ElementsAre("again"));
        EXPECT_THAT(messages, IsEmpty());

        EXPECT_THAT(told(workspace->launchApplication("a")), ElementsAre("again"));
        EXPECT_FALSE(workspace->launchApplication("none"));
        EXPECT_FALSE(open("/gone"));
        EXPECT_THAT(opened, ElementsAre(bundle, tree.path("system/applications/a.desktop")));
    }

    TEST_F(LinuxWorkspaceTest, AStartedProgramStandsOnItsOwnFeet)
    {
        int pipeEnds[2];
        ASSERT_EQ(pipe(pipeEnds), 0);
        const std::string script = "read -r a b c d e session rest < /proc/$$/stat; echo $session; pwd; "
                                   "[ -e /proc/$$/fd/"
            + std::to_string(pipeEnds[1]) + " ] && echo inherited; readlink /proc/$$/fd/0 /proc/$$/fd/2";
        EXPECT_TRUE(openBundle(writeTeller("teller", script)));
        close(pipeEnds[0]);
        close(pipeEnds[1]);
        EXPECT_THAT(answers.read(),
                    ElementsAre(testing::Ne(std::to_string(getsid(0))), std::filesystem::canonical(home).native(),
                                "/dev/null", "/dev/null"));
        EXPECT_THAT(told(openBundle(writeTeller("teller", "pwd"), "Path=/usr\n")), ElementsAre("/usr"));
    }

    TEST_F(LinuxWorkspaceTest, TheActivationTokenServesOneStart)
    {
        const std::string teller = writeTeller("teller", "echo \"<$XDG_ACTIVATION_TOKEN|$DESKTOP_STARTUP_ID>\"");
        EXPECT_THAT(told(openBundle(teller)), ElementsAre("<|>"));
        workspace->setActivationToken("token-7");
        EXPECT_THAT(told(open(bundle)), ElementsAre("<token-7|token-7>"));
        EXPECT_THAT(told(open(bundle)), ElementsAre("<|>"));
    }

    TEST_F(LinuxWorkspaceTest, TerminalProgramsGetATerminal)
    {
        const std::string command = tree.writeProgram("top") + " \"an argument\"";
        const std::string program = tree.path("bin/top");
        tree.environment.programDirectories = { tree.path("bin") };
        EXPECT_FALSE(openBundle(command, "Terminal=true\n"));
        EXPECT_THAT(messages, ElementsAre(HasSubstr("no terminal program")));

        writeTeller("xfce4-terminal");
        EXPECT_THAT(told(openBundle(command, "Terminal=true\n")), ElementsAre("-x", program, "an argument"));
        tree.environment.terminal = writeTeller("my 100%u \\'terminal");
        EXPECT_THAT(told(openBundle(command, "Terminal=true\nDBusActivatable=true\n")),
                    ElementsAre("-e", program, "an argument"));
    }

    TEST_F(LinuxWorkspaceTest, DocumentsAndDirectoriesOpenInTheDefaultApplication)
    {
        makeWorkspace();
        const std::string file = tree.files().writeFile("it's 100%20 \"odd\" \xFF.txt", "text");
        EXPECT_THAT(told(open(file)), ElementsAre("viewer", file));
        EXPECT_THAT(told(open(tree.files().makeDirectory("Foreign.app"))),
                    ElementsAre("files", tree.path("Foreign.app")));
        EXPECT_THAT(messages, IsEmpty());
    }

    TEST_F(LinuxWorkspaceTest, AFileOpensWithEveryApplicationOfItsType)
    {
        makeWorkspace();
        const std::string file = tree.files().writeFile("notes.txt", "text");
        const auto known = workspace->applications(URL::fileURLWithPath(file));
        ASSERT_TRUE(known) << known.error().description();
        ASSERT_GE(known->size(), 2U);
        EXPECT_EQ((*known)[0].name, "viewer") << "the default one comes first";
        const auto other = std::find_if(known->begin(), known->end(),
                                        [](const auto& application) { return application.name == "files"; });
        ASSERT_NE(other, known->end());
        EXPECT_THAT(told(workspace->open(URL::fileURLWithPath(file), *other)), ElementsAre("files", file));
        EXPECT_THAT(opened, ElementsAre(file));
        EXPECT_FALSE(workspace->applications(URL::fileURLWithPath(tree.path("gone"))));
    }

    TEST_F(LinuxWorkspaceTest, WithoutAFileManagerOnTheBusTheDirectoryIsShown)
    {
        EXPECT_THAT(told(openBundle(writeTeller("teller"))), ElementsAre(""));
        const auto show = [&](const std::string& path) {
            return told(workspace->activateFileViewer(URL::fileURLWithPath(path)));
        };
        tree.files().writeFile("far/notes.txt");
        tree.files().makeLink("near", tree.path("far"));
        tree.files().makeLink("far/link", "/nowhere");
        EXPECT_THAT(show(tree.path("near/notes.txt")), ElementsAre("files", tree.path("far")));
        EXPECT_THAT(show(tree.path("far/link")), ElementsAre("files", tree.path("far")));
        EXPECT_THAT(show(bundle), ElementsAre("files", tree.path("system/applications")));
        EXPECT_FALSE(workspace->activateFileViewer(URL::fileURLWithPath(tree.path("gone"))));
        EXPECT_THAT(messages, ElementsAre(HasSubstr("“gone”")));
    }

    TEST_F(LinuxWorkspaceTest, AppDirsTrustedEntriesAndTheSettingsProgramStart)
    {
        makeWorkspace();
        EXPECT_FALSE(workspace->launchApplication("com.apple.systempreferences"));
        EXPECT_THAT(messages, ElementsAre(HasSubstr("settings program")));
        const std::string program = writeTeller("teller", "echo started");
        std::filesystem::create_directory(tree.path("50% off.AppDir"));
        std::filesystem::copy(program, tree.path("50% off.AppDir/AppRun"));
        EXPECT_THAT(told(open(tree.path("50% off.AppDir"))), ElementsAre("started"));
        const std::string entry =
            tree.writeEntry("local", "xfce-settings-manager.desktop",
                            "[Desktop Entry]\nType=Application\nName=A\nOnlyShowIn=XFCE;\nExec=" + program + "\n");
        chmod(entry.c_str(), 0755);
        EXPECT_THAT(told(open(entry)), ElementsAre("started"));
        EXPECT_THAT(told(workspace->launchApplication("com.apple.systempreferences")), ElementsAre("started"));
    }

    TEST_F(LinuxWorkspaceTest, ADirectoryThatLooksLikeABundleStartsNothing)
    {
        EXPECT_THAT(told(openBundle(writeTeller("teller", "echo started"))), ElementsAre("started"));
        // Somebody's package, whose own link names an entry that would start a program.
        const std::string evil = tree.writeEntry(
            "stick", "evil.desktop",
            "[Desktop Entry]\nType=Application\nName=Evil\nIcon=evil\nExec=" + writeTeller("evil", "echo evil") + "\n");
        const std::string package = tree.files().makeDirectory("stick/A.app");
        tree.files().makeLink("stick/A.app/Contents/Entry.desktop", evil);
        const std::string climb = tree.environment.bundlesDirectory() + "/../../../stick/A.app";
        tree.files().makeLink("Documents/innocent.pdf", climb);
        for (const std::string& path : { package, climb, tree.path("Documents/innocent.pdf") }) {
            EXPECT_THAT(told(open(path)), ElementsAre("files", package)) << path;
            const NSImage icon = workspace->icon(path, NSWorkspace::EntryKind::symbolicLink);
            EXPECT_EQ(std::get<ThemedImage>(icon.source()->content()).names.front(), "application-x-executable");
        }
        // A bundle of ours whose link was bent starts what the keeper made it for.
        fs::remove(tree.bundlePath("System/Applications/A.app/Contents/Entry.desktop"));
        tree.files().makeLink("user/quillbox/bundles/System/Applications/A.app/Contents/Entry.desktop", evil);
        EXPECT_THAT(told(open(bundle)), ElementsAre("started"));
    }

    TEST_F(LinuxWorkspaceTest, BundlesOfADataDirectoryBehindALinkAreKnownByEachPath)
    {
        tree.files().makeLink("home", "user");
        tree.environment.dataHome = tree.path("home");
        EXPECT_THAT(told(openBundle(writeTeller("teller", "echo started"))), ElementsAre("started"));
        tree.files().makeLink("favourite", tree.path("home/quillbox/bundles/System/Applications/A.app"));
        for (const char* path : { "home/quillbox/bundles/System/Applications/A.app", "favourite" })
            EXPECT_THAT(told(open(tree.path(path))), ElementsAre("started")) << path;
    }

    TEST_F(LinuxWorkspaceTest, EntriesThatAreNotToBeTrustedOpenAsDocuments)
    {
        if (!MountNamespace::enter())
            return;
        makeWorkspace();
        const std::string text =
            "[Desktop Entry]\nType=Application\nName=A\nExec=" + writeTeller("teller", "echo started") + "\n";
        tree.files().makeDirectory("stick");
        tree.files().makeDirectory("disk");
        ASSERT_EQ(mount("none", tree.path("stick").c_str(), "tmpfs", MS_NOSUID | MS_NODEV, nullptr), 0);
        ASSERT_EQ(mount("none", tree.path("disk").c_str(), "tmpfs", 0, nullptr), 0);
        struct {
            const char* name;
            mode_t mode;
            bool isStarted;
        } const cases[] = {
            { "own.desktop", 0755, true },       { "disk/own.desktop", 0755, true },   { "plain.desktop", 0644, false },
            { "anybodys.desktop", 0777, false }, { "stick/own.desktop", 0755, false }, { "notes.txt", 0755, false },
        };
        for (const auto& row : cases) {
            const std::string file = tree.files().writeFile(row.name, text);
            ASSERT_EQ(chmod(file.c_str(), row.mode), 0);
            EXPECT_EQ(told(open(file)), row.isStarted ? Lines { "started" } : Lines({ "viewer", file })) << row.name;
        }
        const std::string run = tree.files().writeFile("stick/Holiday.AppDir/AppRun", "#!/bin/sh\n");
        ASSERT_EQ(chmod(run.c_str(), 0755), 0);
        EXPECT_THAT(told(open(tree.path("stick/Holiday.AppDir"))),
                    ElementsAre("files", tree.path("stick/Holiday.AppDir")));
        EXPECT_THAT(messages, IsEmpty());
    }

    TEST_F(LinuxWorkspaceTest, PathsMeanWhatTheKernelMakesOfThem)
    {
        makeWorkspace();
        tree.files().writeFile("a/y.txt", "by the text");
        const std::string meant = tree.files().writeFile("far/y.txt", "by the kernel");
        tree.files().makeDirectory("far/away/sub");
        tree.files().makeLink("a/L", tree.path("far/away"));
        tree.files().makeLink("far/away/sub/x.txt", "../../y.txt");
        for (const char* path : { "a/L/sub/x.txt", "a/L/sub/../../y.txt" })
            EXPECT_THAT(told(open(tree.path(path))), ElementsAre("viewer", meant)) << path;
        EXPECT_THAT(opened, ElementsAre(meant, meant)) << "and is noted under one path";
    }

    TEST_F(LinuxWorkspaceTest, WhatCannotBeOpenedIsToldToThePerson)
    {
        EXPECT_FALSE(openBundle("/no/such/program"));
        EXPECT_THAT(messages.back(), testing::AllOf(HasSubstr("“A.app”"), HasSubstr("isn't installed")));
        std::filesystem::remove(tree.path("system/applications/a.desktop"));
        EXPECT_FALSE(open(bundle));
        EXPECT_THAT(messages.back(), HasSubstr("it is gone"));
        EXPECT_FALSE(open(tree.path("missing.txt")));
        EXPECT_THAT(messages.back(), HasSubstr("“missing.txt”"));
        EXPECT_FALSE(open(tree.files().makeDirectory("Empty.AppDir")));
        EXPECT_THAT(messages.back(), HasSubstr("no program"));
        mkfifo(tree.path("pipe").c_str(), 0600);
        EXPECT_FALSE(open(tree.path("pipe")));
        EXPECT_FALSE(open(""));
        EXPECT_EQ(messages.size(), 6U);
        EXPECT_THAT(opened, IsEmpty());
    }

} // namespace
} // namespace quillbox
