// A crash after every single change of a disk, and in the middle of each write: what had been
// written is there in its old or its new form, and at most what was being replaced is missing.
#include "libraryfixture.h"

#include <map>
#include <set>

#include "storage/browserdatabaseitem.h"

namespace {

using namespace vx3::tests;
using browser::AllowRewrite;
using browser::BrowserDatabase;
using browser::BrowserDatabaseItem;
using browser::Force;

constexpr const char* folder = "/lib";
constexpr const char* cutFolder = "/cut";
const std::string absent = "(absent)";

// What a library held at each moment, by the units that the disk had seen.
class History
{
public:
    void Note(const std::string& path, const std::string& content, int64_t units) { changes[path].push_back({ units, content }); }
    void NoteFlush(int64_t units)
    {
        for (auto& [path, list] : changes)
            flushed[path].push_back({ units, list.back().content });
    }
    // All that may be found of a path behind a cut.
    std::set<std::string> Allowed(const std::string& path, int64_t cut) const
    {
        std::set<std::string> allowed;
        int64_t since = -1;
        std::string kept = absent;
        if (const auto found = flushed.find(path); found != flushed.end())
            for (const State& state : found->second)
                if (state.units <= cut) {
                    since = state.units;
                    kept = state.content;
                }
        allowed.insert(kept);
        for (const State& state : changes.at(path))
            if (state.units <= cut && state.units >= since)
                allowed.insert(state.content);
        return allowed;
    }
    bool WasFlushed(const std::string& path, int64_t cut) const
    {
        const auto found = flushed.find(path);
        return found != flushed.end() && found->second.front().units <= cut;
    }
    std::vector<std::string> Paths() const
    {
        std::vector<std::string> paths;
        for (const auto& [path, list] : changes)
            paths.push_back(path);
        return paths;
    }

private:
    struct State {
        int64_t units;
        std::string content;
    };
    std::map<std::string, std::vector<State>> changes;
    std::map<std::string, std::vector<State>> flushed;
};

class CrashTest : public LibraryTest
{
protected:
    CrashTest() { testHost.Journal().Begin(folder); }

    int64_t Units() { return testHost.Journal().Units(); }
    static browser::String PathOfName(const std::string& name) { return TextOf("preset://a.libvx/" + name); }
    static std::string ContentOf(BrowserDatabaseItem& item)
    {
        browser::Block data, preview;
        if (!item.GetData(data))
            return "(broken)";
        const bool hasPreview = item.GetPreviewBytes(1, preview);
        const auto text = [](const browser::Block& block) {
            return std::string(reinterpret_cast<const char*>(block.Bytes()), static_cast<size_t>(block.Size()));
        };
        return text(data) + "/" + (hasPreview ? text(preview) : "");
    }

    // An item gets data and a preview, and is written when its handle goes, or with the rest.
    void Store(BrowserDatabase& library, const std::string& name, int version, bool writes = true)
    {
        const std::string data = name + " data " + std::to_string(version) + std::string(static_cast<size_t>(40 * version), 'd');
        const std::string picture = name + " picture " + std::to_string(version);
        history.Note(name, data + "/" + picture, Units());
        BrowserDatabaseItem* item = library.OpenItem(PathOfName(name));
        ASSERT_TRUE(item);
        EXPECT_TRUE(item->SetType(1000));
        EXPECT_TRUE(item->SetData(data.data(), static_cast<int64_t>(data.size()), version % 2 == 0));
        browser::PreviewInfo info;
        info.number = info.grade = 1;
        info.width = info.height = 16;
        (void)item->DeletePreview(1);
        EXPECT_TRUE(item->AddPreviewBytes(picture.data(), static_cast<int64_t>(picture.size()), info));
        if (writes) {
            item->Release();
            history.NoteFlush(Units());
        } else {
            delete item;
        }
    }
    void Flush(BrowserDatabase& library, AllowRewrite allowRewrite = AllowRewrite::No)
    {
        EXPECT_TRUE(library.Flush(Force::Yes, allowRewrite));
        history.NoteFlush(Units());
    }
    void Delete(BrowserDatabase& library, const std::string& name)
    {
        history.Note(name, absent, Units());
        EXPECT_TRUE(library.DeleteItem(PathOfName(name)));
    }
    void Move(BrowserDatabase& library, const std::string& from, const std::string& to)
    {
        browser::BrowserDatabaseItem* item = browser::FindItem(PathOfName(from));
        ASSERT_TRUE(item);
        const std::string content = ContentOf(*item);
        delete item;
        history.Note(from, absent, Units());
        history.Note(to, content, Units());
        EXPECT_TRUE(library.MoveItem(PathOfName(from), PathOfName(to)));
    }
    BrowserDatabase& MakeNamed()
    {
        BrowserDatabase& library = Make();
        EXPECT_TRUE(library.SetLibraryName(TextOf("preset://a.libvx")));
        return library;
    }

    // Everything that a disk may hold: at each step, and within each write.
    std::vector<int64_t> Cuts()
    {
        std::vector<int64_t> cuts = { 0 };
        int64_t units = 0;
        for (const vx3::testing::JournalStep& step : testHost.Journal().Steps()) {
            const int64_t more = step.Units();
            for (int64_t inside : { int64_t(1), more / 2, more - 1 })
                if (inside > 0 && inside < more)
                    cuts.push_back(units + inside);
            cuts.push_back(units += more);
        }
        std::sort(cuts.begin(), cuts.end());
        cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
        return cuts;
    }

    // How many images of the disk were looked at.
    int CheckAllCuts()
    {
        browser::CloseAll(false, false);
        testHost.Journal().End();
        int images = 0;
        for (int64_t cut : Cuts()) {
            testHost.FileSystem().Remove(cutFolder);
            testHost.FileSystem().AddFolder(cutFolder);
            EXPECT_TRUE(testHost.Journal().Replay(cut, testHost.PlainTable(), cutFolder));
            CheckImage(cut);
            ++images;
            if (HasFailure())
                break;
        }
        return images;
    }

    void CheckImage(int64_t cut)
    {
        const std::string file = std::string(cutFolder) + "/a.libvx";
        const std::string recovered = Recover(file);
        const std::map<std::string, std::string> first = Contents(recovered, cut, true);
        int missing = 0;
        for (const auto& [name, content] : first) {
            const std::set<std::string> allowed = history.Allowed(name, cut);
            if (allowed.count(content) != 0)
                continue;
            EXPECT_TRUE(content == absent || IsWithoutPreview(content, allowed)) << name << " at " << cut << ": " << content;
            ++missing;
        }
        EXPECT_LE(missing, 1) << "at " << cut;
        EXPECT_EQ(Contents(recovered, cut, false), first) << "a normal flush loses nothing more, at " << cut;
    }

    // An old preview is marked dead when the new one comes, before the record is written.
    static bool IsWithoutPreview(const std::string& content, const std::set<std::string>& allowed)
    {
        return std::any_of(allowed.begin(), allowed.end(), [&](const std::string& one) {
            return content.back() == '/' && one.size() > content.size() && one.compare(0, content.size(), content) == 0;
        });
    }

    // What a user does where a library has no file: the whole one of the two beside it.
    std::string Recover(const std::string& file)
    {
        for (const char* suffix : { "", ".new", ".bak" })
            if (testHost.FileSystem().Exists(file + suffix))
                return file + suffix;
        return file;
    }

    std::map<std::string, std::string> Contents(const std::string& file, int64_t cut, bool writes)
    {
        std::map<std::string, std::string> contents;
        BrowserDatabase& library = Make(file.c_str());
        if (library.Load()) {
            EXPECT_TRUE(writes || !library.IsDamaged()) << "at " << cut;
            for (const std::string& name : history.Paths()) {
                BrowserDatabaseItem* item = browser::FindItem(PathOfName(name));
                contents[name] = item ? ContentOf(*item) : absent;
                delete item;
            }
            const bool isWritten = !writes || library.Flush(Force::Yes, AllowRewrite::Yes);
            EXPECT_TRUE(isWritten) << "at " << cut;
        } else {
            for (const std::string& name : history.Paths())
                contents[name] = absent;
        }
        browser::CloseLibrary(&library);
        return contents;
    }

    History history;
};

TEST_F(CrashTest, ANewLibrary)
{
    BrowserDatabase& library = MakeNamed();
    Flush(library);
    for (int i = 0; i < 12; ++i)
        Store(library, "item " + std::to_string(i), 1 + i % 3);
    EXPECT_GT(CheckAllCuts(), 400);
}

TEST_F(CrashTest, Churn)
{
    BrowserDatabase& library = MakeNamed();
    for (int i = 0; i < 6; ++i)
        Store(library, "item " + std::to_string(i), 1, false);
    Flush(library);
    for (int round = 0; round < 4; ++round) {
        Store(library, "item " + std::to_string(round), 2 + round);
        Move(library, "item " + std::to_string(round), "moved " + std::to_string(round));
        Flush(library);
        Store(library, "item 5", 2 + round);
        Delete(library, "moved " + std::to_string(round));
        Flush(library);
        Store(library, "more " + std::to_string(round), 1);
    }
    EXPECT_TRUE(library.SetCategory(TextOf("wood")));
    Flush(library);
    EXPECT_GT(CheckAllCuts(), 800);
}

TEST_F(CrashTest, TheRoadsToARewrite)
{
    BrowserDatabase& library = MakeNamed();
    for (int i = 0; i < 6; ++i)
        Store(library, "item " + std::to_string(i), 1, false);
    Flush(library);
    for (int round = 0; round < 3; ++round) {
        Delete(library, "item " + std::to_string(round));
        Store(library, "item 5", 2 + round, false);
        EXPECT_TRUE(library.Compact());
        history.NoteFlush(Units());
    }
    EXPECT_TRUE(library.FreezeReadOnly(true));
    EXPECT_GT(CheckAllCuts(), 400);
}

} // namespace
