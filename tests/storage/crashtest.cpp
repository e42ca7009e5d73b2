// A crash after every single change of a disk, and in the middle of each write: what had been
// written is there in its old or its new form, and at most what was being replaced is missing.
#include "libraryfixture.h"
#include "libraryhistory.h"
#include "libraryitems.h"

namespace {

using namespace vx3::tests;
using browser::AllowRewrite;
using browser::BrowserDatabase;
using browser::BrowserDatabaseItem;
using browser::Force;

constexpr const char* folder = "/lib";
constexpr const char* cutFolder = "/cut";

enum class Stored { WithRest, AtOnce };

class CrashTest : public LibraryTest
{
protected:
    using Contents = std::map<std::string, std::string>; // by "file:item"

    CrashTest() { testHost.Journal().Begin(folder); }

    int64_t Units() { return testHost.Journal().Units(); }
    static std::string KeyOf(BrowserDatabase& library) { return Utf8(library.GetFilePath().Last()) + ":"; }
    static std::string KeyOf(BrowserDatabase& library, const std::string& item) { return KeyOf(library) + item; }
    static browser::String PathOfItem(BrowserDatabase& library, const std::string& item)
    {
        return TextOf(Utf8(library.GetLibraryName()) + "/" + item);
    }
    void NoteFlush(BrowserDatabase& library) { history.NoteFlush(KeyOf(library), Units()); }

    // --- What the workloads are made of ---

    BrowserDatabase& MakeNamed(const char* file = "a.libvx")
    {
        BrowserDatabase& library = Make((std::string(folder) + "/" + file).c_str());
        EXPECT_TRUE(library.SetLibraryName(TextOf("preset://a.libvx")));
        return library;
    }
    // An item gets data and a preview, and is written when its handle goes, or with the rest.
    void Store(BrowserDatabase& library, const std::string& name, int version, Stored stored = Stored::AtOnce)
    {
        const std::string data = name + " data " + std::to_string(version) + std::string(static_cast<size_t>(40 * version), 'd');
        const std::string picture = name + " picture " + std::to_string(version);
        history.Note(KeyOf(library, name), data + "/" + picture, Units());
        BrowserDatabaseItem* item = library.OpenItem(PathOfItem(library, name));
        ASSERT_TRUE(item);
        EXPECT_EQ(&item->Library(), &library);
        EXPECT_TRUE(item->SetType(1000));
        EXPECT_TRUE(item->SetData(data.data(), static_cast<int64_t>(data.size()), version % 2 == 0));
        browser::PreviewInfo info;
        info.number = info.grade = 1;
        info.width = info.height = 16;
        (void)item->DeletePreview(1);
        EXPECT_TRUE(item->AddPreviewBytes(picture.data(), static_cast<int64_t>(picture.size()), info));
        if (stored == Stored::WithRest)
            return delete item;
        item->Release();
        NoteFlush(library);
    }
    void Flush(BrowserDatabase& library, AllowRewrite allowRewrite = AllowRewrite::No)
    {
        EXPECT_TRUE(library.Flush(Force::Yes, allowRewrite));
        NoteFlush(library);
    }
    void Compact(BrowserDatabase& library)
    {
        EXPECT_TRUE(library.Compact());
        NoteFlush(library);
    }
    void Delete(BrowserDatabase& library, const std::string& name)
    {
        history.Note(KeyOf(library, name), absent, Units());
        EXPECT_TRUE(library.DeleteItem(PathOfItem(library, name)));
    }
    // It stays in the file until its last handle goes.
    void DeleteWhileOpen(BrowserDatabase& library, const std::string& name)
    {
        BrowserDatabaseItem* item = browser::FindItem(PathOfItem(library, name));
        ASSERT_TRUE(item);
        EXPECT_TRUE(library.DeleteItem(PathOfItem(library, name)));
        Flush(library);
        history.Note(KeyOf(library, name), absent, Units());
        delete item;
    }
    void Move(BrowserDatabase& library, const std::string& from, const std::string& to)
    {
        BrowserDatabaseItem* item = browser::FindItem(PathOfItem(library, from));
        ASSERT_TRUE(item);
        history.Note(KeyOf(library, from), absent, Units());
        history.Note(KeyOf(library, to), ContentOf(*item), Units());
        EXPECT_TRUE(library.MoveItem(PathOfItem(library, from), PathOfItem(library, to)));
        delete item;
    }

    // --- The images ---

    // Everything that a disk may hold: at each step, and within each write.
    std::vector<int64_t> Cuts()
    {
        std::set<int64_t> cuts = { 0 };
        int64_t units = 0;
        for (const vx3::testing::JournalStep& step : testHost.Journal().Steps()) {
            const int64_t more = step.Units();
            for (int64_t inside : { int64_t(1), more / 2, more - 1 })
                if (inside > 0 && inside < more)
                    cuts.insert(units + inside);
            cuts.insert(units += more);
        }
        return { cuts.begin(), cuts.end() };
    }

    // The files of the libraries are loaded in the order of their names.
    void CheckAllCuts(const std::vector<std::string>& files, int least)
    {
        browser::CloseAll(false, false);
        testHost.Journal().End();
        int images = 0;
        for (int64_t cut : Cuts()) {
            testHost.FileSystem().Remove(cutFolder);
            testHost.FileSystem().AddFolder(cutFolder);
            EXPECT_TRUE(testHost.Journal().Replay(cut, testHost.PlainTable(), cutFolder));
            CheckImage(files, cut);
            ++images;
            if (HasFailure())
                break;
        }
        RecordProperty("images", images);
        EXPECT_GT(images, least);
    }

    void CheckImage(const std::vector<std::string>& files, int64_t cut)
    {
        std::vector<std::string> recovered;
        for (const std::string& file : files)
            recovered.push_back(Recover(file));
        const Contents first = ReadAll(recovered, cut, true);
        std::map<std::string, std::string> replaced; // by file, at most one
        for (const std::string& item : history.Items()) {
            const auto found = first.find(item);
            const std::string content = found == first.end() ? absent : found->second;
            const std::set<std::string> allowed = history.Allowed(item, cut);
            if (allowed.count(content) != 0)
                continue;
            EXPECT_TRUE(content == absent || IsWithoutPreview(content, allowed)) << item << " at " << cut << ": " << content;
            const std::string file = item.substr(0, item.find(':'));
            EXPECT_TRUE(replaced.emplace(file, item).second) << item << " and " << replaced[file] << " at " << cut;
        }
        EXPECT_EQ(ReadAll(recovered, cut, false), first) << "a normal flush loses nothing more, at " << cut;
    }

    // An old preview is marked dead when the new one comes, before the record is written.
    static bool IsWithoutPreview(const std::string& content, const std::set<std::string>& allowed)
    {
        return std::any_of(allowed.begin(), allowed.end(), [&](const std::string& one) { return one.starts_with(content + "/"); });
    }

    // What a user does where a library has no file: the whole one of the two beside it.
    std::string Recover(const std::string& name)
    {
        const std::string file = std::string(cutFolder) + "/" + name;
        for (const char* suffix : { "", ".new", ".bak" })
            if (testHost.FileSystem().Exists(file + suffix))
                return file + suffix;
        return file;
    }

    Contents ReadAll(const std::vector<std::string>& files, int64_t cut, bool writes)
    {
        Contents contents;
        std::vector<BrowserDatabase*> libraries;
        for (const std::string& file : files) {
            BrowserDatabase& library = Make(file.c_str());
            libraries.push_back(&library);
            if (!library.Load())
                continue;
            EXPECT_TRUE(writes || !library.IsDamaged()) << file << " at " << cut;
            Read(library, contents);
            if (files.size() > 1)
                library.ClearReadOnly(); // which the later one of two with one name is
            EXPECT_TRUE(!writes || library.Flush(Force::Yes, AllowRewrite::Yes)) << "at " << cut;
        }
        for (BrowserDatabase* library : libraries)
            browser::CloseLibrary(library);
        return contents;
    }

    // A record whose chunk was cut stays empty, and has no path.
    void Read(BrowserDatabase& library, Contents& contents)
    {
        ForEachItem(library, [&](BrowserDatabaseItem& item) {
            const std::string path = Utf8(item.GetPath());
            if (path.empty())
                return;
            const std::string key = KeyOfFile(library) + path.substr(path.find(".libvx/") + strlen(".libvx/"));
            EXPECT_TRUE(history.Knows(key)) << path;
            EXPECT_TRUE(contents.emplace(key, ContentOf(item)).second) << "twice: " << path;
        });
    }
    static std::string KeyOfFile(BrowserDatabase& library)
    {
        const std::string key = KeyOf(library);
        return key.substr(0, key.find(".libvx") + strlen(".libvx")) + ":";
    }

    LibraryHistory history;
};

TEST_F(CrashTest, ANewLibrary)
{
    BrowserDatabase& library = MakeNamed();
    Flush(library);
    for (int i = 0; i < 20; ++i)
        Store(library, "item " + std::to_string(i), 1 + i % 3);
    CheckAllCuts({ "a.libvx" }, 700);
}

TEST_F(CrashTest, Churn)
{
    BrowserDatabase& library = MakeNamed();
    for (int i = 0; i < 8; ++i)
        Store(library, "item " + std::to_string(i), 1, Stored::WithRest);
    Flush(library);
    for (int round = 0; round < 6; ++round) {
        const std::string number = std::to_string(round);
        Store(library, "item " + number, 2 + round);
        Move(library, "item " + number, "moved " + number);
        Flush(library);
        Store(library, "item 6", 2 + round);
        Delete(library, "moved " + number);
        Flush(library);
        ASSERT_TRUE(library.HoldFile());
        Store(library, "more " + number, 1);
        Store(library, "item 7", 2 + round, Stored::WithRest);
        Flush(library);
        library.ReleaseFile();
        DeleteWhileOpen(library, "more " + number);
        Store(library, "again " + number, 1);
    }
    EXPECT_TRUE(library.SetCategory(TextOf("wood")));
    Flush(library);
    CheckAllCuts({ "a.libvx" }, 1800);
}

TEST_F(CrashTest, TheRoadsToARewrite)
{
    BrowserDatabase& library = MakeNamed();
    for (int i = 0; i < 8; ++i)
        Store(library, "item " + std::to_string(i), 1, Stored::WithRest);
    Flush(library);
    for (int round = 0; round < 5; ++round) {
        Delete(library, "item " + std::to_string(round));
        Store(library, "item 7", 2 + round, Stored::WithRest);
        Compact(library);
    }
    Store(library, "item 6", 60);
    for (int round = 0; !library.NeedsRewrite() && round < 2; ++round) {
        Delete(library, "item " + std::to_string(6 + round));
        Flush(library);
    }
    Flush(library, AllowRewrite::Yes);
    EXPECT_TRUE(library.FreezeReadOnly(true));
    CheckAllCuts({ "a.libvx" }, 700);
}

// Both are made under one name, so that the second one gets another when they meet.
TEST_F(CrashTest, TwoLibrariesWithOneName)
{
    for (const char* file : { "b.libvx", "a.libvx" }) {
        BrowserDatabase& library = MakeNamed(file);
        for (int i = 0; i < 5; ++i)
            Store(library, "item " + std::to_string(i), 1 + (*file == 'b'), Stored::WithRest);
        Flush(library);
        browser::CloseLibrary(&library);
    }
    BrowserDatabase& first = Open("/lib/a.libvx");
    BrowserDatabase& second = Open("/lib/b.libvx");
    EXPECT_EQ(Utf8(second.GetLibraryName()), "preset://a.1.libvx");
    second.ClearReadOnly();
    Flush(second);
    for (int round = 0; round < 3; ++round) {
        const std::string item = "item " + std::to_string(round);
        Store(first, item, 3 + round, Stored::WithRest);
        Store(second, item, 4 + round);
        Flush(first);
        Move(second, item, "moved");
        Delete(first, item);
        Flush(second);
        Flush(first);
        Delete(second, "moved");
        Compact(round % 2 == 0 ? second : first);
    }
    CheckAllCuts({ "a.libvx", "b.libvx" }, 800);
}

} // namespace
