#include "TemporaryDirectory.h"

#include "Check.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <stdlib.h>

namespace quillbox {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory()
{
    std::string pattern = (fs::temp_directory_path() / "quillbox-test-XXXXXX").string();
    QB_CHECK(mkdtemp(pattern.data()));
    path_ = fs::canonical(pattern).string();
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryDirectory::writeFile(std::string_view name, std::string_view contents) const
{
    std::string whole = path(name);
    fs::create_directories(fs::path(whole).parent_path());
    std::ofstream file(whole, std::ios::binary);
    file << contents;
    file.close();
    QB_CHECK(file.good());
    return whole;
}

std::string TemporaryDirectory::makeDirectory(std::string_view name) const
{
    std::string whole = path(name);
    fs::create_directories(whole);
    return whole;
}

std::string TemporaryDirectory::makeLink(std::string_view name, std::string_view destination) const
{
    std::string whole = path(name);
    fs::create_directories(fs::path(whole).parent_path());
    fs::create_symlink(destination, whole);
    return whole;
}

std::string TemporaryDirectory::rename(std::string_view from, std::string_view to) const
{
    std::string whole = to.starts_with('/') ? std::string(to) : path(to);
    fs::rename(path(from), whole);
    return whole;
}

void TemporaryDirectory::remove(std::string_view name) const
{
    QB_CHECK(fs::remove_all(path(name)) > 0);
}

std::string TemporaryDirectory::readFile(std::string_view name) const
{
    std::ifstream file(path(name), std::ios::binary);
    std::ostringstream contents;
    contents << file.rdbuf();
    return contents.str();
}

std::vector<std::string> TemporaryDirectory::names(std::string_view directory) const
{
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(path(directory), ignored))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace quillbox
