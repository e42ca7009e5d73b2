#include <atomic>
#include <csignal>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "scratch.h"

namespace vx3::core {

namespace {

constexpr int64_t megabyte = 1024 * 1024;

struct ProgressLog {
    int calls = 0;
    int elements = 0;
    int64_t bytes = 0;
    int cancelAt = -1; // the call that answers no
};

int32_t Note(void* user, int32_t mode, int32_t count, int64_t size, int32_t)
{
    auto& log = *static_cast<ProgressLog*>(user);
    EXPECT_EQ(mode, 2);
    log.elements += count;
    log.bytes += size;
    return log.calls++ == log.cancelAt ? -1 : 0;
}

bool CopyTo(const std::string& from, const std::string& to, ProgressLog* log = nullptr, VX3Bool* cancelled = nullptr)
{
    return FolderServices()->copy(Path(from).Get(), Path(to).Get(), 0, 0, log ? Note : nullptr, log, cancelled);
}

bool RemovePath(const std::string& path, ProgressLog* log = nullptr, VX3Bool* cancelled = nullptr)
{
    return FolderServices()->remove(Path(path).Get(), 0, 0, log ? Note : nullptr, log, cancelled);
}

bool Renamed(const std::string& from, const std::string& to)
{
    return FolderServices()->rename(Path(from).Get(), Path(to).Get());
}

// A tree with all that can be copied: links, a read-only folder, a hard name.
void MakeTree(const Scratch& scratch, const std::string& root)
{
    scratch.Folder(root + "/sub/deeper");
    scratch.File(root + "/a", "alpha");
    scratch.File(root + "/sub/bad\xFF", std::string(3 * megabyte + 5, 'b'));
    scratch.File(root + "/sub/deeper/empty", "");
    files::create_symlink("../a", scratch / (root + "/sub/link"));
    files::create_symlink("gone", scratch / (root + "/dead"));
    chmod((scratch / (root + "/sub/deeper")).c_str(), 0555);
}

TEST(Rename, NeverReplacesWhateverStandsThere)
{
    Scratch scratch;
    scratch.File("a", "A");
    scratch.File("b", "B");
    scratch.Folder("full/inner");
    scratch.Folder("emptyfolder");
    files::create_symlink("nowhere", scratch / "dead");
    auto before = NamesBelow(scratch.Root());
    const std::pair<const char*, const char*> refused[] = {
        { "a", "b" }, { "a", "dead" },     { "a", "emptyfolder" }, { "full", "emptyfolder" }, { "full", "full/inner/full" },
        { "a", "a" }, { "absent", "new" }, { "a", "absent/a" }
    };
    for (const auto& [from, to] : refused)
        EXPECT_FALSE(Renamed(scratch / from, scratch / to)) << from << " " << to;
    files::create_hard_link(scratch / "a", scratch / "A");
    EXPECT_FALSE(Renamed(scratch / "a", scratch / "A")) << "two names of one file are not one name in two cases";
    files::remove(scratch / "A");
    EXPECT_EQ(NamesBelow(scratch.Root()), before);
    EXPECT_EQ(Contents(scratch / "b"), "B");
    EXPECT_TRUE(Renamed(scratch / "full", scratch / "moved"));
    EXPECT_TRUE(Renamed(scratch / "dead", scratch / "moved/dead"));
    EXPECT_TRUE(files::is_symlink(scratch / "moved/dead"));
}

TEST(Rename, OfManyThreadsToOneNameExactlyOneWins)
{
    constexpr int threadCount = 4;
    Scratch scratch;
    for (int round = 0; round < 50; ++round) {
        std::vector<std::thread> threads;
        std::atomic<int> winners = 0;
        for (int i = 0; i < threadCount; ++i)
            scratch.File("source" + std::to_string(i), std::to_string(i));
        for (int i = 0; i < threadCount; ++i)
            threads.emplace_back([&, i] { winners += Renamed(scratch / ("source" + std::to_string(i)), scratch / "target"); });
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(winners, 1);
        ASSERT_EQ(NamesBelow(scratch.Root()).size(), static_cast<size_t>(threadCount)); // the losers and the target
        files::remove(scratch / "target");
    }
}

TEST(Copy, OfATreeKeepsAllOfIt)
{
    Scratch scratch;
    MakeTree(scratch, "tree");
    struct timespec times[2] = { { 1000000000, 0 }, { 1100000000, 123 } };
    utimensat(AT_FDCWD, (scratch / "tree/a").c_str(), times, 0);
    utimensat(AT_FDCWD, (scratch / "tree/sub").c_str(), times, 0);
    chmod((scratch / "tree/a").c_str(), 0640);
    ProgressLog log;
    VX3Bool cancelled = 1;
    ASSERT_TRUE(CopyTo(scratch / "tree", scratch / "copy", &log, &cancelled));
    EXPECT_FALSE(cancelled);
    EXPECT_EQ(NamesBelow(scratch / "copy"), NamesBelow(scratch / "tree"));
    EXPECT_EQ(Contents(scratch / "copy/sub/bad\xFF"), Contents(scratch / "tree/sub/bad\xFF"));
    EXPECT_EQ(files::read_symlink(scratch / "copy/sub/link"), "../a");
    EXPECT_EQ(log.elements, 8); // with the top folder
    EXPECT_EQ(log.bytes, 3 * megabyte + 5 + 5);
    for (const char* name : { "/a", "/sub", "/sub/deeper" }) {
        struct stat from;
        struct stat to;
        stat((scratch / "tree" + name).c_str(), &from);
        stat((scratch / "copy" + name).c_str(), &to);
        EXPECT_EQ(from.st_mode, to.st_mode) << name;
        EXPECT_EQ(from.st_mtim.tv_sec, to.st_mtim.tv_sec) << name;
        EXPECT_EQ(from.st_mtim.tv_nsec, to.st_mtim.tv_nsec) << name;
    }
    EXPECT_EQ(std::distance(files::directory_iterator(scratch.Root()), {}), 2) << "something temporary was left";
}

TEST(Copy, CancelledAtAnyStepLeavesNothing)
{
    Scratch scratch;
    MakeTree(scratch, "tree");
    auto before = NamesBelow(scratch.Root());
    int cancelledRuns = 0;
    for (;; ++cancelledRuns) {
        ProgressLog log;
        log.cancelAt = cancelledRuns;
        VX3Bool cancelled = 0;
        if (CopyTo(scratch / "tree", scratch / "copy", &log, &cancelled))
            break;
        ASSERT_TRUE(cancelled);
        ASSERT_EQ(NamesBelow(scratch.Root()), before) << "cancelled at call " << cancelledRuns;
        ASSERT_LT(cancelledRuns, 100);
    }
    EXPECT_EQ(cancelledRuns, 13); // 8 elements and 5 pieces of contents
}

// What must not be there afterwards, for each reason to refuse.
TEST(Copy, RefusedLeavesNothing)
{
    Scratch scratch;
    MakeTree(scratch, "tree");
    scratch.Folder("withpipe");
    scratch.File("withpipe/first");
    mkfifo((scratch / "withpipe/pipe").c_str(), 0666);
    files::create_symlink("tree", scratch / "roundabout");
    std::string longName(255, 'n');
    scratch.File(longName);
    auto before = NamesBelow(scratch.Root());
    const std::pair<std::string, std::string> refused[] = { { "tree", "withpipe" },        { "tree", "tree/sub/tree" },
                                                            { "tree", "roundabout/tree" }, { "withpipe", "copy" },
                                                            { "absent", "copy" },          { "tree/a", "nofolder/copy" },
                                                            { "tree/a", "tree/dead" } };
    for (const auto& [from, to] : refused) {
        VX3Bool cancelled = 1;
        EXPECT_FALSE(CopyTo(scratch / from, scratch / to, nullptr, &cancelled)) << from << " " << to;
        EXPECT_FALSE(cancelled);
        EXPECT_EQ(NamesBelow(scratch.Root()), before) << from << " " << to;
    }
    EXPECT_TRUE(CopyTo(scratch / longName, scratch / ("tree/" + longName))) << "the temporary name must be allowed as well";
    EXPECT_TRUE(CopyTo(scratch / "tree/sub/link", scratch / "link"));
    EXPECT_TRUE(files::is_symlink(scratch / "link"));
}

TEST(Copy, OfALinkWhoseNameIsTakenMeanwhileLeavesNothing)
{
    Scratch scratch;
    files::create_symlink("anywhere", scratch / "link");
    std::string to = scratch / "copy";
    auto takeName = [](void* user, int32_t, int32_t, int64_t, int32_t) {
        std::ofstream(*static_cast<std::string*>(user)) << "another's";
        return int32_t(0);
    };
    EXPECT_FALSE(FolderServices()->copy(Path(scratch / "link").Get(), Path(to).Get(), 0, 0, takeName, &to, nullptr));
    EXPECT_EQ(NamesBelow(scratch.Root()), (std::set<std::string>{ "copy", "link" }));
    EXPECT_EQ(Contents(to), "another's");
}

TEST(Copy, OfATreeWithAPipeFailsBeforeAnythingIsWritten)
{
    Scratch scratch;
    MakeTree(scratch, "tree");
    mkfifo((scratch / "tree/sub/zpipe").c_str(), 0666);
    for (const char* source : { "tree", "tree/sub", "tree/sub/zpipe" }) {
        ProgressLog log;
        VX3Bool cancelled = 1;
        EXPECT_FALSE(CopyTo(scratch / source, scratch / "copy", &log, &cancelled)) << source;
        EXPECT_FALSE(cancelled) << source;
        EXPECT_EQ(log.calls, 0) << source;
    }
    EXPECT_EQ(std::distance(files::directory_iterator(scratch.Root()), {}), 1);
}

TEST(Copy, ThatDoesNotFitLeavesNothing)
{
    Scratch scratch;
    MakeTree(scratch, "tree");
    auto before = NamesBelow(scratch.Root());
    struct rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    auto* oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = { 2 * megabyte, old.rlim_max };
    setrlimit(RLIMIT_FSIZE, &small);
    VX3Bool cancelled = 1;
    bool isCopied = CopyTo(scratch / "tree", scratch / "copy", nullptr, &cancelled);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(isCopied);
    EXPECT_FALSE(cancelled);
    EXPECT_EQ(NamesBelow(scratch.Root()), before);
}

TEST(Copy, OfASparseFileStaysSparse)
{
    Scratch scratch;
    std::string file = scratch.File("sparse", "head");
    truncate(file.c_str(), 500 * megabyte);
    std::ofstream(file, std::ios::in | std::ios::binary).seekp(300 * megabyte) << "middle";
    ProgressLog log;
    ASSERT_TRUE(CopyTo(file, scratch / "copy", &log));
    struct stat status;
    stat((scratch / "copy").c_str(), &status);
    EXPECT_EQ(status.st_size, 500 * megabyte);
    EXPECT_LT(status.st_blocks, 4096) << "the holes were filled";
    std::ifstream copy(scratch / "copy", std::ios::binary);
    char text[7] = {};
    copy.seekg(300 * megabyte).read(text, 6);
    EXPECT_STREQ(text, "middle");
    EXPECT_EQ(log.bytes, 500 * megabyte); // a bar reaches its end
}

TEST(Remove, NeverFollowsALink)
{
    Scratch scratch;
    MakeTree(scratch, "kept");
    scratch.Folder("gone/inner");
    scratch.File("gone/inner/file");
    for (const char* link : { "gone/tokept", "gone/inner/tokept", "toplink" })
        files::create_symlink(scratch / "kept", scratch / link);
    auto kept = NamesBelow(scratch / "kept");
    ProgressLog log;
    EXPECT_TRUE(RemovePath(scratch / "gone", &log));
    EXPECT_EQ(log.elements, 5);
    EXPECT_EQ(log.bytes, 7);
    EXPECT_TRUE(RemovePath(scratch / "toplink"));
    EXPECT_FALSE(RemovePath(scratch / "toplink"));
    EXPECT_EQ(NamesBelow(scratch / "kept"), kept);
    EXPECT_EQ(std::distance(files::directory_iterator(scratch.Root()), {}), 1);
}

TEST(Remove, IsNotLimitedByDepth)
{
    // Deeper than paths may be long and than files may be open.
    constexpr int depth = 700;
    Scratch scratch;
    struct rlimit old;
    getrlimit(RLIMIT_NOFILE, &old);
    struct rlimit few = { 100, old.rlim_max };
    setrlimit(RLIMIT_NOFILE, &few);
    scratch.Folder("deep");
    int folder = open((scratch / "deep").c_str(), O_PATH | O_DIRECTORY);
    for (int i = 0; i < depth; ++i) {
        ASSERT_EQ(mkdirat(folder, "folder", 0755), 0);
        int inner = openat(folder, "folder", O_PATH | O_DIRECTORY);
        close(folder);
        folder = inner;
    }
    close(folder);
    ProgressLog log;
    EXPECT_TRUE(CopyTo(scratch / "deep", scratch / "copy", &log));
    EXPECT_EQ(log.elements, depth + 1);
    EXPECT_TRUE(RemovePath(scratch / "deep"));
    EXPECT_TRUE(RemovePath(scratch / "copy"));
    setrlimit(RLIMIT_NOFILE, &old);
    EXPECT_TRUE(NamesBelow(scratch.Root()).empty());
}

TEST(Remove, StopsWhereItIsToldAndRefusesMounts)
{
    Scratch scratch;
    MakeTree(scratch, "tree");
    ProgressLog log;
    log.cancelAt = 0;
    VX3Bool cancelled = 0;
    EXPECT_FALSE(RemovePath(scratch / "tree", &log, &cancelled));
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(NamesBelow(scratch / "tree").size(), 7u);
    EXPECT_TRUE(IsMountPoint("/proc"));
    EXPECT_TRUE(IsMountPoint("/"));
    EXPECT_FALSE(IsMountPoint(scratch.Root()));
    EXPECT_FALSE(RemovePath("/proc"));
}

TEST(Volumes, OneVolumeHoldsAFolderAndWhatIsNotThereYet)
{
    Scratch scratch;
    auto same = [](const std::string& a, const std::string& b) { return FolderServices()->sameVolume(Path(a).Get(), Path(b).Get()); };
    EXPECT_TRUE(same(scratch.Root(), scratch / "absent"));
    EXPECT_FALSE(same(scratch.Root(), "/proc"));
    EXPECT_FALSE(same(scratch.Root(), scratch / "absent/deeper"));
    files::create_symlink("/proc", scratch / "toproc");
    files::create_symlink("file", scratch / "tofile");
    EXPECT_FALSE(same(scratch / "toproc", scratch / "absent")) << "what goes into the link goes to another volume";
    EXPECT_TRUE(same(scratch / "toproc", "/proc/version"));
    EXPECT_TRUE(same(scratch.Root(), scratch / "toproc")) << "the link itself is here";
    EXPECT_TRUE(same(scratch / "tofile", scratch.Root()));
    EXPECT_FALSE(FolderServices()->createFolder(Path(scratch.Root()).Get()));
    EXPECT_TRUE(FolderServices()->createFolder(Path(scratch / "new").Get()));
}

} // namespace

} // namespace vx3::core
