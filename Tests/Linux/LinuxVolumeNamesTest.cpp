#include "LinuxVolumeNames.h"

#include "MountNamespace.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillbox {
namespace {

    TEST(LinuxVolumeNames, AreLabelsOrWhatTheMountPointTells)
    {
        if (!MountNamespace::enter())
            return;
        const TemporaryDirectory files;
        const std::string root = files.makeDirectory("media/stick");
        LinuxVolumeNames names(files.makeDirectory("labels"));
        EXPECT_FALSE(names.localizedName(root));
        ASSERT_EQ(mount("none", root.c_str(), "tmpfs", 0, nullptr), 0);
        EXPECT_EQ(names.localizedName(root), "stick");
        struct stat status { };
        ASSERT_EQ(stat(root.c_str(), &status), 0);
        const std::string link = files.path("labels/My\\x20Disk \xc3\xa9\\x2");
        if (!MountNamespace::isRootOfMachine())
            GTEST_SKIP() << "only root makes device files, and so a volume with a label";
        ASSERT_EQ(mknod(link.c_str(), S_IFBLK | 0600, status.st_dev), 0);
        EXPECT_EQ(names.localizedName(root), "My Disk \xc3\xa9\\x2");
        EXPECT_EQ(umount2(root.c_str(), 0), 0);
        EXPECT_FALSE(names.localizedName(root));
    }

} // namespace
} // namespace quillbox
