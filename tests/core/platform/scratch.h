// A folder on a real disk for one test, and short ways to fill and read it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/fileoperations.h"
#include "core/services.h"
#include "core/values.h"

namespace vx3::core {

namespace files = std::filesystem;

class Scratch
{
public:
    Scratch()
    {
        std::string pattern = (files::temp_directory_path() / "vx3platform-XXXXXX").string();
        root = mkdtemp(pattern.data());
    }
    ~Scratch() { RemoveOwnRemains(root); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::string& Root() const { return root; }
    std::string operator/(const std::string& tail) const { return root + "/" + tail; }
    std::string Folder(const std::string& tail) const
    {
        files::create_directories(*this / tail);
        return *this / tail;
    }
    std::string File(const std::string& tail, const std::string& bytes = "content") const
    {
        std::ofstream(*this / tail, std::ios::binary) << bytes;
        return *this / tail;
    }

private:
    std::string root;
};

inline std::string Contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

// All names below a folder, as relative paths; links are not followed.
inline std::set<std::string> NamesBelow(const std::string& folder)
{
    std::set<std::string> names;
    for (const auto& entry : files::recursive_directory_iterator(folder))
        names.insert(entry.path().lexically_relative(folder).string());
    return names;
}

struct SeenEntry {
    int64_t size = 0;
    uint32_t flags = 0;
    VX3FileDate created = {};
    VX3FileDate modified = {};
};

// What a walk tells, by native name.
inline std::map<std::string, SeenEntry> Walk(const std::string& folder, uint32_t options = VX3_WALK_HIDDEN | VX3_WALK_READONLY)
{
    std::map<std::string, SeenEntry> seen;
    VX3FolderWalk* walk = FolderServices()->startWalk(Path(folder).Get(), options);
    EXPECT_NE(walk, nullptr);
    VX3FolderEntry entry = {};
    while (walk && FolderServices()->nextEntry(walk, &entry))
        EXPECT_TRUE(seen.insert({ NativeNameBytes(entry.name), { entry.size, entry.flags, entry.created, entry.modified } }).second);
    EXPECT_TRUE(!walk || FolderServices()->walkIsSound(walk));
    FolderServices()->endWalk(walk);
    TextServices()->destruct(&entry.name);
    return seen;
}

inline bool IsRoot()
{
    return geteuid() == 0;
}

} // namespace vx3::core
