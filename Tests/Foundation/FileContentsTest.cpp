#include "FileContents.h"

#include "TemporaryDirectory.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>

using namespace quillbox;

namespace {

TEST(FileContents, AreReadUpToTheLimitAndNoFurther)
{
    const TemporaryDirectory files;
    const std::string path = files.writeFile("file", "12345678");
    EXPECT_EQ(readFile(path, 8)->size(), 8U);
    EXPECT_EQ(readFile(path, 7).error().code, EFBIG);
    EXPECT_EQ(readSmallFile(AT_FDCWD, path.c_str(), 8), "12345678");
    EXPECT_EQ(readSmallFile(AT_FDCWD, path.c_str(), 7), "1234567");
}

} // namespace
