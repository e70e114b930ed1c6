#include "Bundle.h"
#include "DefaultsCommand.h"
#include "MountInquiry.h"

#include <vector>

int main(int argc, char** argv)
{
    using namespace quillbox;
    // Files that the menu names may lie on mounts that do not answer.
    const MountInquiry mounts(Bundle::pathForAuxiliaryExecutable("quillbox-mount-helper").value_or(""),
                              [](const Error&) {});
    return DefaultsCommand::run(std::vector<std::string>(argv + 1, argv + argc));
}
