#pragma once

#include "NSView.h"

#include <string>

namespace quillbox {

// Compares the frames of a view and all below it with Tests/SourceCode/Frames/<name>.txt. Where they differ the test
// fails and says how; with QUILLBOX_WRITE_FRAMES set in the environment the file is written instead, and fails too.
void expectFrames(const std::string& name, const NSView& view);

} // namespace quillbox
