// Addresses: text, path and hash turn into each other without loss.

#include "support/modulefixture.h"

#include "model/crc32.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class Url : public ModuleTest
{
};

std::string Text(BrowserURL& url)
{
    return Utf8(url.GetText());
}

std::string ParentOf(const std::string& text)
{
    BrowserURL url(TextOf(text)), parent;
    url.GetParent(parent);
    return Text(parent);
}

TEST_F(Url, DropsOneTrailingSlashWhereAnotherStandsInFront)
{
    const std::pair<const char*, const char*> rows[] = {
        { "preset://", "preset:/" }, { "preset:/", "preset:/" }, { "a/b/", "a/b" }, { "a/b//", "a/b/" },
        { "file:/", "file:/" },      { "abc/", "abc/" },         { "/", "/" },      { "", "" },
    };
    for (auto [given, kept] : rows) {
        BrowserURL url(TextOf(given));
        EXPECT_EQ(Text(url), kept) << given;
    }
}

TEST_F(Url, GoesUpByText)
{
    EXPECT_EQ(ParentOf("preset://user.libvx/sub"), "preset://user.libvx");
    EXPECT_EQ(ParentOf("preset://user.libvx"), "preset:/");
    EXPECT_EQ(ParentOf("preset:/"), "");
    EXPECT_EQ(ParentOf("file://localhost/C:"), "file://localhost");
    EXPECT_EQ(ParentOf("file://localhost"), "file:/");
    EXPECT_EQ(ParentOf("file:/"), "");
    EXPECT_EQ(ParentOf("name"), "");
}

// The way up by path and the way up by text meet the same places.
TEST_F(Url, GoesUpByPathAsByText)
{
    for (bool readFirst : { false, true }) {
        BrowserURL url(PathOf("/a/b"));
        std::vector<std::string> chain;
        while (url.HasContent()) {
            if (readFirst)
                (void)url.GetText();
            BrowserURL parent;
            url.GetParent(parent);
            chain.push_back(Text(parent));
            url = parent;
        }
        EXPECT_EQ(chain, (std::vector<std::string>{ "file://localhost/a", "file://localhost", "file:/", "" })) << readFirst;
    }
}

TEST_F(Url, HardNamesSurviveTextPathAndHash)
{
    const std::string longName(255, 'n'), bytes = "/x/\xFF\xC3(", deep = "/" + std::string(1000, 'a') + "/" + std::string(999, 'b');
    const std::string paths[] = { "/",        "/a b#?%:x", bytes, "/x/back\\slash",   "/x/" + longName,
                                  "/x/A.png", "/x/a.png",  deep,  "/\xF0\x9F\x8E\xA8" };
    for (const std::string& native : paths) {
        BrowserURL byPath(PathOf(native));
        BrowserURL byText(byPath.GetText());
        FilePath back;
        ASSERT_TRUE(byText.GetFile(back)) << native;
        EXPECT_EQ(NativeOf(back), native);
        EXPECT_EQ(byText.GetHash(), byPath.GetHash()) << native;
        BrowserURL again(back);
        EXPECT_TRUE(again.Equals(byPath)) << native;
    }
}

TEST_F(Url, TakesAPathOnlyFromFileUrls)
{
    BrowserURL odd("file://localhostfoo/bar"), preset("preset://a/b"), empty{ FilePath() };
    EXPECT_TRUE(odd.HasFile());
    EXPECT_EQ(NativeOf(odd.GetFileCopy()), "/oo/bar");
    EXPECT_FALSE(preset.HasFile());
    preset.SetText(TextOf("file://localhost/tmp"));
    EXPECT_TRUE(preset.HasFile()) << "a failed conversion outlived the text";
    EXPECT_EQ(Text(empty), "");
}

TEST_F(Url, HashFoldsAndEqualsDoesNot)
{
    BrowserURL upper("PRESET:/\xC4"), lower("preset:/\xE4");
    EXPECT_EQ(upper.GetHash(), lower.GetHash());
    EXPECT_FALSE(upper.Equals(lower));
    BrowserURL stored(PathOf("/a"));
    stored.SetHash(7);
    EXPECT_EQ(stored.GetHash(), 7u);
    stored.SetText(TextOf("preset:/"));
    EXPECT_NE(stored.GetHash(), 7u);
}

TEST_F(Url, JoinsNames)
{
    BrowserURL empty, joined;
    empty.Join(TextOf("x"), joined);
    EXPECT_EQ(Text(joined), "x");
    empty.AppendAlways(TextOf("x"));
    EXPECT_EQ(Text(empty), "/x");
    BrowserURL folder(PathOf("/a"));
    folder.Append(TextOf("b.TIF"));
    EXPECT_EQ(Text(folder), "file://localhost/a/b.TIF");
    String extension, name;
    folder.GetExtension(extension);
    folder.GetName(name);
    EXPECT_EQ(Utf8(extension), "tif");
    EXPECT_EQ(Utf8(name), "b.TIF");
    EXPECT_TRUE(folder.HasExtension(TextOf("tif")));
}

TEST_F(Url, AllZeroIsAnEmptyValue)
{
    VX3Url zero = {};
    BrowserURL& url = BrowserURL::Of(&zero);
    BrowserURL parent("x:/y");
    EXPECT_FALSE(url.HasContent());
    EXPECT_FALSE(url.HasFile());
    url.GetParent(parent);
    EXPECT_EQ(Text(parent), "");
    EXPECT_EQ(Text(url), "");
}

// A key that is made without the text is the one of the text.
TEST_F(Url, KeysOfFiles)
{
    for (const char* native : { "/", "/a", "/A/b c.TIF", "/x/\xFF", "/x/back\\slash" }) {
        BrowserURL url(PathOf(native));
        BrowserURL::Key key;
        ASSERT_TRUE(BrowserURL::KeyOfFile(PathOf(native), key));
        EXPECT_EQ(key.hash, url.GetHash()) << native;
        EXPECT_EQ(key.length, static_cast<uint32_t>(url.GetText().Length())) << native;
    }
}

// Without memory a value is the new one or empty, and never an address of another place.
TEST_F(Url, NeverNamesAnotherPlace)
{
    using namespace vx3::testing;
    FilePath path = PathOf("/a/b"), back;
    const String other = TextOf("preset://other");
    int64_t runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, [&](int64_t nth) {
        BrowserURL url(other);
        url.SetFile(path);
        const std::string text = Text(url);
        EXPECT_TRUE(text.empty() || text == "file://localhost/a/b") << nth << ": " << text;
        BrowserURL copy;
        copy = url;
        EXPECT_TRUE(!copy.HasContent() || Text(copy) == text || Text(copy).empty() || text.empty()) << nth << ": " << Text(copy);
        BrowserURL up;
        url.GetParent(up);
        EXPECT_TRUE(Text(up).empty() || Text(up) == "file://localhost/a") << nth << ": " << Text(up);
    });
    EXPECT_GT(runs, 5);
}

// Without memory for a buffer a long text is cut, and the call still answers.
TEST_F(Url, LongTextsAreCutWithoutMemory)
{
    using namespace vx3::testing;
    constexpr int32_t prefix = 16, whole = prefix + 3001, cut = 1024;
    FilePath path = PathOf("/" + std::string(3000, 'x'));
    int64_t cuts = 0;
    int64_t runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, [&](int64_t) {
        BrowserURL url(path);
        int32_t length = url.GetText().Length();
        EXPECT_LE(length, whole);
        cuts += length == cut;
    });
    EXPECT_GT(runs, 3);
    EXPECT_EQ(cuts, 1);
}

} // namespace
