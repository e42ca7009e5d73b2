// A library of an old version keeps all it has while it becomes a new one, write by write.
#include "libraryitems.h"
#include "seedlibraries.h"

namespace {

using namespace vx3::tests;
using browser::AllowRewrite;
using browser::BrowserDatabase;
using browser::Force;

class OldLibrary : public LibraryTest
{
protected:
    static std::map<std::string, std::string> ContentsOf(BrowserDatabase& library)
    {
        std::map<std::string, std::string> contents;
        ForEachItem(library, [&](browser::BrowserDatabaseItem& item) { contents[Utf8(item.GetPath())] = ContentOf(item); });
        return contents;
    }
};

// Its records are written before the file tells another version, so it is brought up to date again
// at the next start, when previews stand in their new place and their chunks have no id yet.
TEST_F(OldLibrary, KeepsDataAndPreviewsOverSeveralStarts)
{
    const std::map<std::string, std::string> wanted = { { "preset://a.libvx/one", "old data of one/an old picture" },
                                                        { "preset://a.libvx/two", std::string(300, 'o') + "/small/large" },
                                                        { "preset://a.libvx/three", "later" } };
    Put(OldSeed());
    for (int start = 1; start <= 4; ++start) {
        BrowserDatabase& library = Open();
        EXPECT_EQ(ContentsOf(library), wanted) << "at start " << start;
        EXPECT_TRUE(library.Flush(Force::Yes, start == 3 ? AllowRewrite::Yes : AllowRewrite::No));
        EXPECT_TRUE(start != 3 || library.Compact());
        browser::CloseLibrary(&library);
    }
}

} // namespace
