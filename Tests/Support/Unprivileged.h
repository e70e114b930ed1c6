#pragma once

#include <functional>
#include <string>

namespace quillbox {

// What `work` returns when it runs in a child process that may do only what an ordinary person may: root
// reads everything, so tests of refused permissions run here. The child ends without running the
// destructors of the test. "(child failed)" where it did not end well.
std::string runWithoutPrivileges(const std::function<std::string()>& work);

} // namespace quillbox
