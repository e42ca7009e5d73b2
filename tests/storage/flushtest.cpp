// What is written of a library, and when; how it is written anew.
#include "libraryfixture.h"

namespace {

using namespace vx3::tests;
using browser::AllowRewrite;
using browser::BrowserDatabase;
using browser::Force;
using browser::IgnoreReadOnly;
using browser::ItemRecord;
using browser::ItemState;

class LibraryFlush : public LibraryTest
{
protected:
    BrowserDatabase& MakeNamed(const char* path = usualFile)
    {
        BrowserDatabase& library = Make(path);
        EXPECT_TRUE(library.CreateEmptyFile());
        EXPECT_TRUE(library.SetLibraryName(TextOf("preset://a.libvx")));
        return library;
    }
    // A payload of an item, as its handle would store it.
    static void AddData(BrowserDatabase& library, ItemRecord& record, const std::string& bytes)
    {
        ASSERT_TRUE(library.HoldFile());
        browser::LibraryState& state = library.State();
        ASSERT_TRUE(state.file.SeekTo(static_cast<int64_t>(state.endOffset)));
        ASSERT_TRUE(
            WriteChunkWithPayload(state.file, browser::ChunkTag::Data, record.id, bytes.data(), static_cast<int64_t>(bytes.size())));
        browser::BaseContainer* data = record.values.DemandContainer(browser::ItemData);
        ASSERT_TRUE(data->SetInt64(browser::DataOffset, static_cast<int64_t>(state.endOffset)));
        state.endOffset += 16 + bytes.size();
        library.ReleaseFile();
        library.NoteChanged(record);
    }
    std::string DataOf(BrowserDatabase& library, int32_t id)
    {
        const ItemRecord* record = library.State().items.Find(id);
        const browser::BaseContainer* data = record ? record->values.GetContainer(browser::ItemData) : nullptr;
        const int64_t offset = data ? data->GetInt64(browser::DataOffset, 0) : 0;
        browser::BinaryFile reader;
        browser::Block bytes;
        if (offset == 0 || !reader.Open(library.GetFilePath(), browser::OpenMode::Read) || !reader.SeekTo(offset)
            || !ReadChunkPayload(reader, bytes))
            return "none";
        return std::string(reinterpret_cast<const char*>(bytes.Bytes()), static_cast<size_t>(bytes.Size()));
    }
    static void Delete(BrowserDatabase& library, ItemRecord& record)
    {
        record.state = ItemState::Deleted;
        library.NoteChanged(record);
    }
};

TEST_F(LibraryFlush, MarksWhatIsReplacedAndAppendsWhatIsNew)
{
    BrowserDatabase& library = MakeNamed();
    EXPECT_EQ(Tags(Bytes()), "dbfh dbfe");
    ItemRecord& one = Add(library, "preset://a.libvx/one");
    ItemRecord& two = Add(library, "preset://a.libvx/two");
    AddData(library, two, "some data");
    EXPECT_EQ(Tags(Bytes()), "dbfh bina");
    EXPECT_TRUE(library.Flush());
    EXPECT_EQ(Tags(Bytes()), "dbfh bina difm ditm ditm dbfe");
    EXPECT_FALSE(library.IsDirty());
    const std::string before = Bytes();
    EXPECT_TRUE(library.Flush());
    EXPECT_EQ(Bytes(), before) << "nothing to do";

    library.NoteChanged(one);
    EXPECT_TRUE(library.SetCategory(TextOf("wood")));
    EXPECT_TRUE(library.Flush());
    EXPECT_EQ(Tags(Bytes()), "dbfh bina difm ivld ditm cati ditm dbfe");
    Delete(library, two);
    EXPECT_TRUE(library.SetLibraryName(TextOf("preset://b.libvx")));
    EXPECT_TRUE(library.Flush());
    EXPECT_EQ(Tags(Bytes()), "dbfh ivld ivld ivld ivld cati ditm difm dbfe");
    EXPECT_EQ(library.State().items.Find(2), nullptr);

    const std::string whole = Bytes();
    browser::CloseLibrary(&library);
    BrowserDatabase& again = Open();
    EXPECT_EQ(PathOfItem(again, 1), "preset://a.libvx/one");
    EXPECT_FALSE(again.IsDamaged());
    EXPECT_TRUE(again.Flush(Force::Yes));
    EXPECT_EQ(Bytes(), whole) << "what is written twice is the same to the byte";
}

TEST_F(LibraryFlush, ARewriteKeepsWhatLivesAndTheOldFileBeside)
{
    BrowserDatabase& library = MakeNamed();
    ItemRecord& one = Add(library, "preset://a.libvx/one");
    ItemRecord& two = Add(library, "preset://a.libvx/two");
    ItemRecord& three = Add(library, "preset://a.libvx/three");
    AddData(library, one, "first");
    AddData(library, one, "second, and larger");
    AddData(library, two, "of two");
    two.state = ItemState::DeletePending;
    EXPECT_TRUE(library.SetCategory(TextOf("wood")));
    EXPECT_TRUE(library.Flush());
    Delete(library, three);
    const std::string before = Bytes();
    EXPECT_TRUE(library.Compact());
    EXPECT_EQ(Tags(Bytes()), "dbfh difm cati bina bina ditm ditm dbfe");
    EXPECT_EQ(Tags(testHost.FileSystem().BytesOf("/lib/a.libvx.bak")).substr(0, 14), Tags(before).substr(0, 14));
    EXPECT_FALSE(testHost.FileSystem().Exists("/lib/a.libvx.new"));
    EXPECT_EQ(DataOf(library, 1), "second, and larger");
    EXPECT_EQ(DataOf(library, 2), "of two");
    const std::string compact = Bytes();
    EXPECT_TRUE(library.Compact());
    EXPECT_EQ(Bytes(), compact) << "the same library gives the same bytes";
    browser::CloseLibrary(&library);
    BrowserDatabase& again = Open();
    EXPECT_EQ(DataOf(again, 1), "second, and larger");
    EXPECT_FALSE(again.NeedsRewrite() || again.IsDamaged());
}

TEST_F(LibraryFlush, ARewriteLeavesOutWhatCannotBeReadAndWhatIsNamedTwice)
{
    BrowserDatabase& library = MakeNamed();
    ItemRecord& one = Add(library, "preset://a.libvx/one");
    ItemRecord& two = Add(library, "preset://a.libvx/two");
    AddData(library, one, "of one");
    for (int64_t offset : { int64_t(16), int64_t(5), int64_t(1) << 40, int64_t(-3) }) {
        EXPECT_TRUE(two.values.DemandContainer(browser::ItemData)->SetInt64(browser::DataOffset, offset));
        library.NoteChanged(two);
        EXPECT_TRUE(library.Compact()) << offset;
        EXPECT_EQ(DataOf(library, 1), "of one");
        EXPECT_EQ(two.values.GetContainer(browser::ItemData)->GetInt64(browser::DataOffset, -1), 0) << offset;
        EXPECT_EQ(Tags(Bytes()), "dbfh difm bina ditm ditm dbfe") << offset;
    }
}

TEST_F(LibraryFlush, IsDueWhereDeadBytesOutweighAllOthers)
{
    BrowserDatabase& library = MakeNamed();
    ItemRecord& one = Add(library, "preset://a.libvx/one");
    for (int time = 0; time < 6; ++time) {
        library.NoteChanged(one);
        EXPECT_TRUE(library.Flush());
    }
    EXPECT_FALSE(library.NeedsRewrite());
    browser::CloseLibrary(&library);
    BrowserDatabase& again = Open();
    EXPECT_TRUE(again.NeedsRewrite());
    EXPECT_TRUE(again.Flush(Force::Yes, AllowRewrite::Yes));
    EXPECT_EQ(Tags(Bytes()), "dbfh difm ditm dbfe");
}

TEST_F(LibraryFlush, AReadOnlyLibraryIsWrittenOnlyWhenItIsFrozen)
{
    BrowserDatabase& library = MakeNamed();
    Add(library, "preset://a.libvx/one");
    EXPECT_TRUE(library.FreezeReadOnly(true));
    EXPECT_EQ(Tags(Bytes()), "dbfh difm ditm dbfe");
    const std::string frozen = Bytes();
    Add(library, "preset://a.libvx/two");
    EXPECT_TRUE(library.Flush(Force::Yes)) << "refused in silence";
    EXPECT_TRUE(library.Compact());
    EXPECT_EQ(Bytes(), frozen);
    browser::CloseLibrary(&library);
    BrowserDatabase& again = Open();
    EXPECT_TRUE(again.IsReadOnly());
    again.ClearReadOnly();
    EXPECT_TRUE(again.Flush());
    again.MarkProtected();
    again.ClearReadOnly();
    EXPECT_TRUE(again.IsReadOnly());
}

TEST_F(LibraryFlush, OverSomebodyElsesChangeNothingIsWritten)
{
    BrowserDatabase& library = MakeNamed();
    Add(library, "preset://a.libvx/one");
    EXPECT_TRUE(library.Flush());
    const std::string theirs = Bytes() + "more";
    testHost.CollectConsole();
    Put(theirs);
    Add(library, "preset://a.libvx/two");
    EXPECT_FALSE(library.Flush());
    EXPECT_TRUE(library.IsDirty());
    EXPECT_EQ(Bytes(), theirs);
    EXPECT_NE(testHost.CollectConsole().at(0).find("/lib/a.libvx"), std::string::npos);
    testHost.FileSystem().Remove(usualFile);
    EXPECT_FALSE(library.Flush());
    EXPECT_FALSE(testHost.FileSystem().Exists(usualFile));
}

TEST_F(LibraryFlush, OfADamagedFileACopyIsKeptBeforeTheFirstWrite)
{
    FileBytes damaged;
    damaged.Head().Chunk("difm", 0, InfoImage("preset://a.libvx")).Chunk("ditm", 1, ItemImage("preset://a.libvx/one"));
    damaged.Header("bina", 2, 1000).Raw("cut");
    Put(damaged.bytes);
    Put("an older one", "/lib/a.libvx.bak");
    BrowserDatabase& library = Open();
    EXPECT_TRUE(library.IsDamaged() && library.IsDirty());
    EXPECT_TRUE(library.Flush());
    EXPECT_EQ(testHost.FileSystem().BytesOf("/lib/a.libvx.bak"), damaged.bytes);
    EXPECT_EQ(Tags(Bytes()), "dbfh difm ditm dbfe");
    browser::CloseLibrary(&library);

    Put(damaged.bytes);
    testHost.FileSystem().Remove("/lib/a.libvx.bak");
    testHost.FileSystem().SetFreeBytes(10);
    BrowserDatabase& full = Open();
    EXPECT_FALSE(full.Flush()) << "no room for the copy, so nothing is written";
    EXPECT_EQ(Bytes(), damaged.bytes);
}

TEST_F(LibraryFlush, TwoOfOneNameAreToldApart)
{
    FileBytes bytes;
    bytes.Head().Chunk("difm", 0, InfoImage("preset://A.LibVX")).Chunk("ditm", 1, ItemImage("preset://a.libvx/one")).End();
    Put(bytes.bytes);
    Put(bytes.bytes, "/lib/b.libvx");
    Put(bytes.bytes, "/lib/c.libvx");
    BrowserDatabase& first = Open();
    first.MarkReferenceCopy();
    BrowserDatabase& second = Open("/lib/b.libvx");
    BrowserDatabase& third = Open("/lib/c.libvx");
    EXPECT_EQ(Utf8(second.GetLibraryName()), "preset://A.local.LibVX");
    EXPECT_EQ(Utf8(third.GetLibraryName()), "preset://A.2.LibVX");
    EXPECT_EQ(PathOfItem(second, 1), "preset://A.local.LibVX/one");
    EXPECT_TRUE(second.IsReadOnly() && second.IsDirty());
    EXPECT_EQ(Utf8(second.GetDisplayName(false)), "b.local.libvx");
    EXPECT_EQ(browser::FindLibraryForPath(TextOf("preset://a.LOCAL.libvx/x"), false).Get(), &second);
    EXPECT_EQ(browser::FindLibraryForPath(TextOf("preset://a.libvxx/x"), false).Get(), nullptr);
    EXPECT_FALSE(third.MoveLibrary(TextOf("preset://A.LibVX")));
    EXPECT_TRUE(third.MoveLibrary(TextOf("preset://new.libvx")));
    EXPECT_EQ(PathOfItem(third, 1), "preset://new.libvx/one");
    EXPECT_EQ(third.GetSlot(), 4);
    browser::CloseLibrary(&second);
    EXPECT_EQ(Make("/lib/d.libvx").GetSlot(), 3);
}

} // namespace
