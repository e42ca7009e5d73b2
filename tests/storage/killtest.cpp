// A process that is killed at any moment of its work on a library, on a real disk.
//
// The child tells before and behind each change, in a file that survives it, what it does. What
// it said to be done is there afterwards; of the one change under way either state is right, or
// the item is missing while it was being replaced.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "itemfixture.h"
#include "support/campaign.h"

namespace vx3::tests {
namespace {

namespace files = std::filesystem;
using browser::BrowserDatabase;

constexpr int keys = 8;
constexpr int deletion = 0; // in place of a version

std::string PathOfKey(int key)
{
    return "preset://a.libvx/item " + std::to_string(key);
}

std::string ContentOf(int key, int version)
{
    const size_t length = 50 + static_cast<size_t>(version) * 7919 % 30000;
    return std::string(length, static_cast<char>('a' + (key + version) % 26)) + std::to_string(version);
}

// --- The process that is killed ---

class Worker
{
public:
    explicit Worker(const std::string& folder)
        : log(open((folder + "/log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600))
    {
        browser::host = testHost.Table();
        browser::SetPreferenceDefaults();
        library = browser::MakeLibrary(PathOf(folder + "/a.libvx"), browser::String(), 0);
    }

    [[noreturn]] void Run(uint32_t seed)
    {
        std::mt19937 random(seed);
        if (!library || !library->CreateEmptyFile() || !library->SetLibraryName(TextOf("preset://a.libvx")) || !library->Flush())
            _exit(1);
        Tell("ready");
        for (int version = 1;; ++version) {
            const int key = static_cast<int>(random() % keys);
            const bool isDeletion = random() % 5 == 0;
            Tell("begin " + std::to_string(key) + " " + std::to_string(isDeletion ? deletion : version));
            if (!(isDeletion ? Delete(key) : Store(key, version)))
                _exit(2);
            Tell("done");
            if (random() % 25 == 0 && !library->Compact())
                _exit(3);
        }
    }

private:
    void Tell(const std::string& line)
    {
        const std::string whole = line + "\n";
        if (write(log, whole.data(), whole.size()) != static_cast<ssize_t>(whole.size()))
            _exit(4);
    }
    bool Store(int key, int version)
    {
        browser::BrowserDatabaseItem* item = library->OpenItem(TextOf(PathOfKey(key)));
        const bool isStored = item && SetData(*item, ContentOf(key, version), version % 2)
            && item->AddPreviewBytes(&version, sizeof(version), { 0, 4, 4, 1, { 2026, 11, 23, 0, 0, 0 } });
        if (item)
            item->Release();
        return isStored && !library->IsDirty();
    }
    bool Delete(int key)
    {
        const browser::String path = TextOf(PathOfKey(key));
        const bool isThere = Item(browser::FindItem(path)) != nullptr; // with the handle gone, nothing waits for it
        return !isThere || (library->DeleteItem(path) && library->Flush());
    }

    vx3::testing::TestHost testHost;
    int log;
    BrowserDatabase* library = nullptr;
};

// --- What it said ---

struct Told {
    bool isReady = false;
    std::map<int, int> versions; // by key, of what is done
    int key = -1;                // of what was under way, -1 for nothing
    int version = 0;
};

Told ReadLog(const std::string& folder)
{
    Told told;
    std::ifstream log(folder + "/log");
    std::string word;
    while (log >> word) {
        if (word == "ready")
            told.isReady = true;
        if (word == "begin")
            log >> told.key >> told.version;
        if (word == "done") {
            told.versions[told.key] = told.version;
            told.key = -1;
        }
    }
    return told;
}

class Killed : public ModuleTest
{
protected:
    Killed()
        : folder(testHost.Folder() + "/killed")
    {
        browser::SetPreferenceDefaults();
    }
    ~Killed() override
    {
        browser::CloseAll(false, false);
        browser::FreeItemCompressor();
        browser::ForgetCurrentLanguage();
    }

    // False if it did not live long enough to say anything, or ended of itself.
    bool KillOne(uint32_t seed)
    {
        files::remove_all(folder);
        files::create_directory(folder);
        const pid_t child = fork();
        if (child == 0) {
            setenv("TMPDIR", folder.c_str(), 1); // what its host leaves behind goes with the rest
            Worker(folder).Run(seed);
        }
        while (!ReadLog(folder).isReady && waitpid(child, nullptr, WNOHANG) == 0)
            usleep(500);
        usleep(std::mt19937(seed)() % 30000);
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "ended with " << WEXITSTATUS(status);
        return ReadLog(folder).isReady;
    }
    // Between the two renamings of a rewrite there is only the old file under its other name.
    void TakeBackup() const
    {
        if (!files::exists(folder + "/a.libvx"))
            files::rename(folder + "/a.libvx.bak", folder + "/a.libvx");
    }
    void Check(const Told& told)
    {
        for (int key = 0; key < keys; ++key) {
            const auto known = told.versions.find(key);
            const int version = known == told.versions.end() ? deletion : known->second;
            const std::string found = DataOfKey(key);
            const bool isOld = found == Expected(key, version);
            const bool isNew = key == told.key && (found == Expected(key, told.version) || found == "none");
            EXPECT_TRUE(isOld || isNew) << key << ": " << found.substr(0, 20) << ", " << found.size() << " bytes";
        }
    }
    BrowserDatabase& Open()
    {
        BrowserDatabase& library = *browser::MakeLibrary(PathOf(folder + "/a.libvx"), browser::String(), 0);
        EXPECT_TRUE(library.Load());
        return library;
    }

    const std::string folder;

private:
    static std::string Expected(int key, int version) { return version == deletion ? "none" : ContentOf(key, version); }
    static std::string DataOfKey(int key)
    {
        const Item item(browser::FindItem(TextOf(PathOfKey(key))));
        return item ? DataOf(*item) : "none";
    }
};

TEST_F(Killed, AtAnyMomentLosesAtMostWhatWasBeingReplaced)
{
    const uint32_t wanted = InFull(200u, 25u);
    uint32_t killed = 0;
    size_t changes = 0, damaged = 0;
    for (uint32_t seed = 1; killed < wanted && seed < 2 * wanted && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        if (!KillOne(seed))
            continue;
        ++killed;
        TakeBackup();
        const Told told = ReadLog(folder);
        changes += told.versions.size();
        BrowserDatabase& library = Open();
        damaged += library.IsDamaged();
        Check(told);
        EXPECT_TRUE(library.Flush(browser::Force::Yes, browser::AllowRewrite::Yes));
        browser::CloseLibrary(&library);
        BrowserDatabase& again = Open();
        EXPECT_FALSE(again.IsDamaged()) << "an ordinary write makes it whole";
        Check(told);
        browser::CloseLibrary(&again);
    }
    EXPECT_EQ(killed, wanted);
    EXPECT_GT(changes, 2 * wanted);
    RecordProperty("runs", static_cast<int>(killed));
    RecordProperty("damaged", static_cast<int>(damaged));
}

} // namespace
} // namespace vx3::tests
