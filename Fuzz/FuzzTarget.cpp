#include "FuzzTarget.h"

#include "Check.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <unistd.h>

namespace quillbox {

namespace {

    std::map<std::string_view, FuzzTarget::Function>& targets()
    {
        static std::map<std::string_view, FuzzTarget::Function> all;
        return all;
    }

    FuzzTarget::Function chosen = nullptr;

} // namespace

FuzzTarget::FuzzTarget(const char* name, Function function)
{
    targets().emplace(name, function);
}

std::string textOf(const Data& bytes)
{
    return { bytes.begin(), bytes.end() };
}

const TemporaryDirectory& scratchDirectory()
{
    // In memory where that can be had: a target that saves its input would wait for the disk each time.
    static const std::unique_ptr<TemporaryDirectory> directory = [] {
        if (::access("/dev/shm", W_OK) == 0)
            ::setenv("TMPDIR", "/dev/shm", 0);
        return std::make_unique<TemporaryDirectory>();
    }();
    return *directory;
}

} // namespace quillbox

// The two functions that the fuzzing library calls by these names.
// NOLINTNEXTLINE(readability-identifier-naming): the fuzzing library's name.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
// NOLINTNEXTLINE(readability-identifier-naming): the fuzzing library's name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    constexpr std::string_view kOption = "--target=";
    for (int i = 1; i < *argc; ++i) {
        const std::string_view argument = (*argv)[i];
        if (!argument.starts_with(kOption))
            continue;
        const auto found = quillbox::targets().find(argument.substr(kOption.size()));
        if (found != quillbox::targets().end())
            quillbox::chosen = found->second;
    }
    if (!quillbox::chosen) {
        std::fputs("Name one of these by --target=:\n", stderr);
        for (const auto& [name, function] : quillbox::targets())
            std::fprintf(stderr, "  %s\n", std::string(name).c_str());
        std::exit(2);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    quillbox::chosen(quillbox::Data(bytes, bytes + size));
    return 0;
}
