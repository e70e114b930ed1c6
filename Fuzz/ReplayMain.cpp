#include "FileContents.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

// Runs a fuzz target on files, in builds without a fuzzing library: each file as a whole, and cut off at up to a
// hundred places.

// NOLINTNEXTLINE(readability-identifier-naming): the fuzzing library's name.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
// NOLINTNEXTLINE(readability-identifier-naming): the fuzzing library's name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int argc, char** argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i]))
            continue;
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
            files.push_back(entry.path().string());
    }
    if (files.empty()) {
        std::fputs("There is no directory with files among the arguments.\n", stderr);
        return 1;
    }
    for (const std::string& file : files) {
        constexpr std::size_t kLargest = std::size_t { 1 } << 20;
        const quillbox::Result<quillbox::Data> bytes = quillbox::readFile(file, kLargest);
        if (!bytes) {
            std::fprintf(stderr, "%s\n", bytes.error().description().c_str());
            return 1;
        }
        std::printf("%s: %zu bytes\n", file.c_str(), bytes->size());
        std::fflush(stdout);
        const std::size_t step = bytes->size() / 100 + 1;
        for (std::size_t size = 0; size < bytes->size(); size += step)
            LLVMFuzzerTestOneInput(bytes->data(), size);
        LLVMFuzzerTestOneInput(bytes->data(), bytes->size());
    }
    return 0;
}
