// What is read of a library file, whole or not.
#include "libraryfixture.h"

namespace {

using namespace vx3::tests;
using browser::BrowserDatabase;

constexpr const char* name = "preset://a.libvx";

class LibraryLoad : public LibraryTest
{
protected:
    // "items nextId damaged end info rewrite", and what stands under the ids 1 to 3.
    std::string Load(const std::string& bytes)
    {
        Put(bytes);
        BrowserDatabase& library = Make();
        EXPECT_TRUE(library.Load());
        const browser::LibraryState& state = library.State();
        std::string text = std::to_string(state.itemCount) + " next " + std::to_string(state.nextItemId) + (state.damaged ? " damaged" : "")
            + (state.rewriteWanted ? " rewrite" : "") + " end " + std::to_string(state.endOffset);
        for (int32_t id = 1; id <= 3; ++id)
            if (const browser::ItemRecord* record = library.State().items.Find(id))
                text += " " + std::to_string(id) + "=" + Utf8(record->GetPath());
        browser::CloseLibrary(&library);
        return text;
    }
    static FileBytes Start()
    {
        FileBytes bytes;
        bytes.Head().Chunk("difm", 0, InfoImage(name));
        return bytes;
    }
};

std::string At(size_t offset)
{
    return " end " + std::to_string(offset);
}

TEST_F(LibraryLoad, ReadsItemsAndSkipsWhatTheyName)
{
    FileBytes file = Start();
    file.Chunk("bina", 1, std::string(3000, 'x')).Chunk("ditm", 1, ItemImage("preset://a.libvx/one")).Chunk("xyzw", 9, "unknown");
    file.Chunk("ivld", 2, "dead").Chunk("ditm", 3, ItemImage("preset://a.libvx/three"));
    const size_t end = file.bytes.size();
    EXPECT_EQ(Load(file.End().bytes), "2 next 4" + At(end) + " 1=preset://a.libvx/one 3=preset://a.libvx/three");
}

TEST_F(LibraryLoad, FindsItsWayThroughOldForms)
{
    FileBytes old;
    const std::string one = ItemImage("preset://a.libvx/one", 1), three = ItemImage("preset://a.libvx/three", 3);
    FileBytes records;
    records.Number(one.size(), 4).Raw(one).Number(three.size(), 4).Raw(three);
    old.Head().Chunk("difm", 0, InfoImage(name, 3)).Chunk("dbas", 0, records.bytes).Chunk("ditm", 0, ItemImage("preset://a.libvx/two", 2));
    old.Chunk("ditm", 0, ItemImage("none", 0));
    const size_t end = old.bytes.size();
    const std::string loaded = Load(old.End().bytes);
    EXPECT_EQ(loaded, "3 next 4" + At(end) + " 1=preset://a.libvx/one 2=preset://a.libvx/two 3=preset://a.libvx/three");

    FileBytes dead;
    records.bytes.clear();
    records.Number(static_cast<uint32_t>(-4), 4).Raw("dead").Number(one.size(), 4).Raw(one);
    dead.Head().Chunk("difm", 0, InfoImage(name, 3)).Chunk("dbas", 0, records.bytes);
    const std::string cut = Load(dead.bytes);
    EXPECT_NE(cut.find("damaged"), std::string::npos) << "the run goes on to the end of the file";
    EXPECT_NE(cut.find(" 1=preset://a.libvx/one"), std::string::npos);
    EXPECT_NE(Load(dead.End().bytes).find("damaged"), std::string::npos) << "a dead record makes the run too long";

    FileBytes homeless;
    homeless.Head();
    records.bytes.clear();
    const std::string preset = ItemImage("preset:/x", 1), user = ItemImage("user:/x", 2);
    records.Number(preset.size(), 4).Raw(preset).Number(user.size(), 4).Raw(user);
    homeless.Chunk("difm", 0, InfoImage("", 3)).Chunk("dbas", 0, records.bytes).End();
    EXPECT_NE(Load(homeless.bytes).find("1 next 3"), std::string::npos);
}

TEST_F(LibraryLoad, TellsDamageFromAnOpenEnd)
{
    FileBytes whole = Start();
    const size_t behindInfo = whole.bytes.size();
    whole.Chunk("ditm", 1, ItemImage("preset://a.libvx/one"));
    const size_t behindOne = whole.bytes.size();
    const std::string one = " 1=preset://a.libvx/one";
    EXPECT_EQ(Load(whole.bytes), "1 next 2" + At(behindOne) + one) << "no closing chunk";
    EXPECT_EQ(Load(FileBytes().Head().End().bytes), "0 next 1 damaged rewrite" + At(16)) << "a new file has no info yet";
    EXPECT_EQ(Load(""), "0 next 1 damaged rewrite" + At(0));
    EXPECT_EQ(Load("xyz"), "0 next 1 damaged rewrite" + At(0));
    EXPECT_EQ(Load("A text, and a rather long one at that."), "0 next 1 damaged rewrite" + At(0));

    FileBytes twice = whole;
    twice.Chunk("difm", 0, InfoImage("preset://b.libvx")).Chunk("ditm", 2, ItemImage("preset://b.libvx/two")).End();
    EXPECT_NE(Load(twice.bytes).find("damaged"), std::string::npos);

    FileBytes late = Start();
    late.Raw(whole.bytes.substr(behindInfo)).Chunk("bina", 2, "never referenced");
    const size_t end = late.bytes.size();
    EXPECT_EQ(Load(late.bytes + "dit"), "1 next 2" + At(end) + one);
    FileBytes empty = whole;
    EXPECT_EQ(Load(empty.Header("ditm", 7, 0).bytes), "2 next 8 damaged rewrite" + At(behindOne) + one);
}

TEST_F(LibraryLoad, BelievesNoLength)
{
    const struct {
        const char* tag;
        int32_t id;
        uint64_t length;
        bool isWhole;
    } rows[] = {
        { "bina", 1, 0x80000000, false },
        { "bina", 1, 0x7FFFFFFF, false },
        { "bina", 1, 100, false },
        { "ivld", 1, ~uint64_t(0) - 15, false },
        { "ivld", 1, uint64_t(1) << 63, false },
        { "ditm", 5, uint64_t(1) << 31, false },
        { "difm", 0, ~uint64_t(0), false },
        { "cati", 0, uint64_t(1) << 40, false },
        { "dbas", 0, uint64_t(1) << 62, false },
        { "\0\0\0\0", 0, 0, false },
        { "bina", 1, 6, true },
        { "wxyz", -1, 6, true },
    };
    FileBytes start = Start();
    start.Chunk("ditm", 1, ItemImage("preset://a.libvx/one"));
    for (const auto& row : rows) {
        FileBytes file = start;
        file.Header(row.tag, row.id, row.length).Raw("abcdef").End();
        const std::string loaded = Load(file.bytes);
        EXPECT_EQ(loaded.find("damaged") == std::string::npos, row.isWhole) << row.tag << " " << row.length << ": " << loaded;
        EXPECT_NE(loaded.find("1=preset://a.libvx/one"), std::string::npos) << row.tag << " " << row.length;
    }
    FileBytes head;
    head.Header("dbfh", 0, ~uint64_t(0) - 15).Raw(start.bytes.substr(16));
    EXPECT_EQ(Load(head.bytes), "0 next 1 damaged rewrite" + At(16)) << "nothing is made over the file";
    head.bytes.clear();
    head.Header("dbfh", 0, 6).Raw("abcdef").Raw(start.bytes.substr(16)).End();
    EXPECT_EQ(Load(head.bytes), "1 next 2" + At(start.bytes.size() + 6) + " 1=preset://a.libvx/one");
}

TEST_F(LibraryLoad, AnyPrefixAndAnyFlippedBitLeavesWhatStandsBeforeIt)
{
    FileBytes file = Start();
    file.Chunk("cati", 0, CategoryImage("wood")).Chunk("ditm", 1, ItemImage("preset://a.libvx/one"));
    const size_t behindOne = file.bytes.size();
    file.Chunk("bina", 2, "some data").Chunk("ditm", 2, ItemImage("preset://a.libvx/two")).End();
    int runs = 0;
    for (size_t length = 0; length < file.bytes.size(); ++length, ++runs) {
        const std::string loaded = Load(file.bytes.substr(0, length));
        EXPECT_EQ(loaded.find("1=preset://a.libvx/one") != std::string::npos, length >= behindOne) << length;
    }
    for (size_t bit = behindOne * 8; bit < file.bytes.size() * 8; ++bit, ++runs) {
        std::string flipped = file.bytes;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        EXPECT_NE(Load(flipped).find("1=preset://a.libvx/one"), std::string::npos) << bit;
    }
    for (size_t bit = 0; bit < behindOne * 8; ++bit, ++runs) {
        std::string flipped = file.bytes;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        Load(flipped);
    }
    EXPECT_GT(runs, 2800);
}

} // namespace
