// The same changes are told of a watched folder on a disk and in memory.
#include <gtest/gtest.h>

#include <functional>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

class WatchedFolder
{
public:
    explicit WatchedFolder(Files where)
        : host({ .files = where })
        , table(*host.Table())
        , root(where == Files::OnDisk ? host.Folder() + "/top" : "/top")
    {
        for (const char* folder : { "", "/watched", "/watched/inner", "/other" })
            table.folder->createFolder(At(folder).Get());
        for (const char* file : { "/watched/file", "/watched/inner/deep", "/other/thing" })
            Put(file);
        watch = table.folder->watch(
            At("/watched").Get(), [](void* told) { ++*static_cast<int*>(told); }, &count);
        EXPECT_NE(watch, nullptr);
    }
    ~WatchedFolder()
    {
        table.folder->unwatch(watch);
        EXPECT_EQ(host.ExpectClean(), "");
    }

    core::Path At(const std::string& path) const { return core::Path(root + path); }
    void Put(const char* path) const
    {
        VX3BinaryFile* file = Open(path, VX3_OPEN_CREATE);
        EXPECT_TRUE(table.file->write(file, "content", 7)) << path;
        table.file->free(file);
    }
    VX3BinaryFile* Open(const char* path, int32_t mode) const
    {
        VX3BinaryFile* file = table.file->create();
        EXPECT_TRUE(table.file->open(file, At(path).Get(), mode, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR)) << path;
        return file;
    }
    void Read(const char* path) const
    {
        char bytes[7];
        VX3BinaryFile* file = Open(path, VX3_OPEN_READ);
        EXPECT_EQ(table.file->read(file, bytes, sizeof(bytes)), 7);
        table.file->free(file);
    }
    void Make(const char* path) const { EXPECT_TRUE(table.folder->createFolder(At(path).Get())) << path; }
    void Rename(const char* from, const char* to) const { EXPECT_TRUE(table.folder->rename(At(from).Get(), At(to).Get())) << from; }
    void Move(const char* from, const char* to) const { EXPECT_TRUE(table.folder->move(At(from).Get(), At(to).Get())) << from; }
    void Copy(const char* from, const char* to) const
    {
        EXPECT_TRUE(table.folder->copy(At(from).Get(), At(to).Get(), 0, 0, nullptr, nullptr, nullptr)) << from;
    }
    void Remove(const char* path) const { EXPECT_TRUE(table.folder->remove(At(path).Get(), 0, 0, nullptr, nullptr, nullptr)) << path; }
    int Deliver()
    {
        host.Core().DeliverMessages();
        return std::exchange(count, 0);
    }

    TestHost host;
    const VX3Host& table;

private:
    std::string root;
    VX3FolderWatch* watch = nullptr;
    int count = 0;
};

struct Step {
    const char* name;
    std::function<void(WatchedFolder&)> act;
    int told;
};

// One after the other on the same folder.
const Step steps[] = {
    { "a look at it", [](WatchedFolder& w) { w.Read("/watched/file"); }, 0 },
    { "a new folder", [](WatchedFolder& w) { w.Make("/watched/new"); }, 1 },
    { "a new file", [](WatchedFolder& w) { w.Put("/watched/second"); }, 1 },
    { "an old file written anew", [](WatchedFolder& w) { w.Put("/watched/file"); }, 1 },
    { "another name", [](WatchedFolder& w) { w.Rename("/watched/second", "/watched/third"); }, 1 },
    { "moved out", [](WatchedFolder& w) { w.Move("/watched/third", "/other/third"); }, 1 },
    { "moved in", [](WatchedFolder& w) { w.Move("/other/third", "/watched/third"); }, 1 },
    { "copied in", [](WatchedFolder& w) { w.Copy("/other/thing", "/watched/copy"); }, 1 },
    { "copied out", [](WatchedFolder& w) { w.Copy("/watched/file", "/other/copy"); }, 0 },
    { "removed", [](WatchedFolder& w) { w.Remove("/watched/copy"); }, 1 },
    { "deeper", [](WatchedFolder& w) { w.Put("/watched/inner/second"); }, 0 },
    { "beside it", [](WatchedFolder& w) { w.Put("/other/fourth"); }, 0 },
    { "its own name", [](WatchedFolder& w) { w.Rename("/watched", "/renamed"); }, 1 },
    { "under its new name", [](WatchedFolder& w) { w.Put("/renamed/again"); }, 1 },
    { "its parent's name", [](WatchedFolder& w) { w.Make("/watched"), w.Move("/renamed", "/watched/below"); }, 1 },
    { "a parent that moves", [](WatchedFolder& w) { w.Rename("/watched", "/above"); }, 0 },
    { "its end", [](WatchedFolder& w) { w.Remove("/above"); }, 1 },
    { "another one at its place", [](WatchedFolder& w) { w.Make("/watched"), w.Put("/watched/file"); }, 0 },
};

void Walk(Files where)
{
    WatchedFolder watched(where);
    EXPECT_EQ(watched.Deliver(), 0);
    for (const Step& step : steps) {
        step.act(watched);
        EXPECT_EQ(watched.Deliver(), step.told) << step.name;
    }
}

} // namespace

TEST(MemoryWatch, ADiskTells)
{
    Walk(Files::OnDisk);
}

TEST(MemoryWatch, MemoryTellsTheSame)
{
    Walk(Files::InMemory);
}

TEST(MemoryWatch, WhatATestBuildsIsTold)
{
    WatchedFolder watched(Files::InMemory);
    MemoryFileSystem& fs = watched.host.FileSystem();
    const auto before = fs.Keep();
    const std::pair<const char*, std::function<void()>> changes[] = {
        { "file", [&] { fs.AddFile("/top/watched/new", "x"); } },
        { "folder", [&] { fs.AddFolder("/top/watched/a/b"); } },
        { "date",
          [&] {
              fs.SetDates("/top/watched/file", { 2001, 1, 1, 0, 0, 0 }, {});
          } },
        { "removal", [&] { fs.Remove("/top/watched/new"); } },
        { "another tree", [&] { fs.Restore(before); } },
    };
    for (const auto& [name, change] : changes) {
        change();
        EXPECT_EQ(watched.Deliver(), 1) << name;
    }
    EXPECT_EQ(fs.CountOf(Asked::Watch), 1);
}

TEST(MemoryWatch, WhatIsRemovedAboveTakesTheFolderAlong)
{
    WatchedFolder watched(Files::InMemory);
    watched.host.FileSystem().Remove("/top");
    EXPECT_EQ(watched.Deliver(), 1);
}

TEST(MemoryWatch, WhatCannotBeWatched)
{
    TestHost host({ .files = Files::InMemory });
    MemoryFileSystem& fs = host.FileSystem();
    fs.AddFile("/file", "x");
    fs.AddFolder("/locked");
    fs.SetUnreadable("/locked");
    fs.AddVolume("/server", "", VX3_VOLUME_NETWORK);
    fs.AddVolume("/dead", "");
    fs.FailProbe("/dead");
    fs.AddFolder("/server/folder");
    for (const char* path : { "/absent", "/file", "/locked", "/server/folder", "/dead" })
        EXPECT_EQ(host.Table()->folder->watch(
                      core::Path(path).Get(), [](void*) {}, nullptr),
                  nullptr)
            << path;
    EXPECT_EQ(host.ExpectClean(), "");
}

} // namespace vx3::testing
