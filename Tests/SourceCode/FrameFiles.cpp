#include "FrameFiles.h"

#include "ViewDump.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace quillbox {

void expectFrames(const std::string& name, const NSView& view)
{
    const std::string path = QUILLBOX_SOURCE_DIR "/Tests/SourceCode/Frames/" + name + ".txt";
    if (std::getenv("QUILLBOX_WRITE_FRAMES")) {
        std::ofstream(path) << viewDump(view);
        ADD_FAILURE() << "written anew, to be read and compared with the constraints: " << path;
        return;
    }
    std::stringstream wanted;
    wanted << std::ifstream(path).rdbuf();
    EXPECT_EQ(viewDump(view), wanted.str()) << path;
}

} // namespace quillbox
