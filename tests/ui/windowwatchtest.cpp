// The folders that windows look at: each watched once, as long as somebody looks, and read
// anew where a host cannot watch.

#include "windowfixture.h"

#include "ui/watchset.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::Failing;

namespace {

class WindowWatch : public WindowTest
{
protected:
    WindowWatch()
    {
        Disk().AddFile("/p/a.txt", "a");
        Disk().AddFile("/p/sub/b.txt", "b");
    }
    void RenameFromOutside(const std::string& from, const std::string& to)
    {
        vx3::core::Path oldPath(from), newPath(to);
        EXPECT_TRUE(testHost.PlainTable()->folder->rename(oldPath.Get(), newPath.Get()));
    }
};

TEST_F(WindowWatch, IsOnePerFolderAsLongAsSomebodyLooks)
{
    BrowserDialog &first = Open("/p"), &second = Open("/p"), &third = Open("/p/sub");
    EXPECT_EQ(Watches(), 2);
    first.GoTo(NodeOf("/p/sub"));
    EXPECT_EQ(Watches(), 2);
    second.GoTo(ContentRef());
    EXPECT_EQ(Watches(), 1) << "the root view is told of by the module itself";
    second.GoTo(NodeOf("/p"));
    second.GoTo(NodeOf("/p"));
    EXPECT_EQ(Watches(), 2) << "going to the same place again watches it no second time";
    Close(first);
    EXPECT_EQ(Watches(), 2);
    Close(third);
    EXPECT_EQ(Watches(), 1);
    Close(second);
    EXPECT_EQ(Watches(), 0);
    (void)Open("/p"); // and one that is open when the module ends is seen to by the end of the test
}

TEST_F(WindowWatch, TellsEachWindowOfItsFolder)
{
    BrowserDialog &first = Open("/p"), &second = Open("/p"), &other = Open("/p/sub");
    Disk().AddFile("/p/c.txt", "c");
    gui.GetToolkit().Turn();
    EXPECT_TRUE(first.HasWork() && second.HasWork());
    EXPECT_FALSE(other.HasWork());
    Tick();
    EXPECT_EQ(Entries(first), "sub a.txt c.txt");
    EXPECT_EQ(Entries(second), "sub a.txt c.txt");
    Disk().Remove("/p/sub/b.txt");
    Tick();
    EXPECT_EQ(Entries(other), "");
}

// What has the name of a folder may be another one by now: it is watched in its place.
TEST_F(WindowWatch, FollowsTheNameWhenAFolderIsReplaced)
{
    BrowserDialog& window = Open("/p/sub");
    for (const char* name : { "one.txt", "two.txt" }) {
        Disk().Remove("/p/sub");
        Disk().AddFile(std::string("/p/sub/") + name, "x");
        Tick();
        EXPECT_EQ(UrlOf(window), "/p/sub");
        EXPECT_EQ(Entries(window), name);
        EXPECT_EQ(Watches(), 1);
        Disk().AddFile("/p/sub/later.txt", "x");
        Tick();
        EXPECT_EQ(Entries(window), std::string("later.txt ") + name);
    }
}

TEST_F(WindowWatch, EndsWithItsFolder)
{
    Disk().AddFile("/p/sub/deep/c.txt", "c");
    BrowserDialog &inside = Open("/p/sub/deep"), &above = Open("/p/sub");
    EXPECT_EQ(Watches(), 2);
    Disk().Remove("/p/sub");
    Tick();
    Tick();
    EXPECT_EQ(UrlOf(inside), "/p");
    EXPECT_EQ(UrlOf(above), "/p");
    EXPECT_EQ(Entries(inside), "a.txt");
    EXPECT_EQ(Watches(), 1);
}

// Nobody tells of a folder further up that was renamed; the user comes back from doing that.
TEST_F(WindowWatch, AWindowThatGetsTheFocusSeesThatItsFolderIsElsewhere)
{
    BrowserDialog& window = Open("/p/sub");
    (void)Open(ContentRef());
    RenameFromOutside("/p", "/r");
    EXPECT_TRUE(window.Raise());
    Tick();
    Tick();
    EXPECT_EQ(UrlOf(window), "/");
    EXPECT_EQ(Entries(window).find("p "), std::string::npos) << Entries(window);
}

TEST_F(WindowWatch, WithoutOneAFolderIsReadAgainByWhoeverGoesThere)
{
    testHost.Faults().Fail(FailClass::Watch, 1, Failing::FromThereOn);
    BrowserDialog& window = Open("/p");
    EXPECT_EQ(Watches(), 0);
    EXPECT_EQ(Entries(window), "sub a.txt");
    Disk().AddFile("/p/c.txt", "c");
    Tick();
    EXPECT_EQ(Entries(window), "sub a.txt") << "nobody can tell";
    window.GoTo(NodeOf("/p/sub"));
    window.GoTo(NodeOf("/p"));
    EXPECT_EQ(Entries(window), "sub a.txt c.txt");

    Disk().AddFile("/p/d.txt", "d");
    EXPECT_EQ(Entries(Open("/p")), "sub a.txt c.txt d.txt") << "also if a window is there already";

    testHost.Faults().Clear();
    (void)Open("/p");
    EXPECT_EQ(Watches(), 1) << "and watches it if that can be done by now";
}

TEST_F(WindowWatch, AFolderThatIsGoneCannotBeWatchedAndLeavesTheTree)
{
    const ContentRef gone = NodeOf("/p/sub");
    Disk().Remove("/p/sub");
    BrowserDialog& window = Open(gone);
    EXPECT_TRUE(gone->IsRemoved());
    Tick();
    EXPECT_EQ(UrlOf(window), "/p");
    EXPECT_EQ(Watches(), 1);
}

TEST_F(WindowWatch, NoNodeAndAStrangerAreNoMatter)
{
    EXPECT_FALSE(WatchNode(ContentRef()));
    UnwatchNode(ContentRef());
    BrowserDialog& window = Open("/p");
    UnwatchNode(NodeOf("/p/sub"));
    const ContentRef file = NodeOf("/p/a.txt");
    EXPECT_TRUE(WatchNode(file)) << "of a file nothing is told";
    EXPECT_EQ(Watches(), 1);
    UnwatchNode(file);
    UnwatchNode(file);
    EXPECT_EQ(Watches(), 1);
    EXPECT_EQ(Entries(window), "sub a.txt");
}

} // namespace
