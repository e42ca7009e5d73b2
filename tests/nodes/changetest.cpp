// Rename, new folder, move, copy, delete: the right code, and nothing lost.

#include "support/nodefixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

struct Counted {
    int32_t elements = 0;
    int64_t bytes = 0;
    int32_t cancelAt = INT32_MAX;
};

int32_t Count(void* user, int32_t, int32_t count, int64_t size, int32_t)
{
    auto* counted = static_cast<Counted*>(user);
    counted->elements += count;
    counted->bytes += size;
    return counted->elements >= counted->cancelAt ? -1 : 0;
}

class Change : public NodeTest
{
protected:
    Change()
    {
        Disk().AddFile("/p/a/one.tif", "1", Day(1));
        Disk().AddFile("/p/a/in/two.tif", "22", Day(1));
        Disk().AddFile("/p/b/three.tif", "333", Day(1));
        Disk().AddFile("/p/b/one.tif", "other", Day(1));
        top = Top("/p");
        a = Child(*top, "a");
        b = Child(*top, "b");
        before = Disk().Listing("/p");
    }
    ~Change() override { top = a = b = DirectoryRef(); }

    static std::string UrlOf(DirectoryNode& node)
    {
        BrowserURL url;
        node.GetUrl(url, 0);
        return Utf8(url.GetText());
    }

    // Every node of a whole listing is a place on the disk below its folder's.
    void ExpectOnDisk(DirectoryNode& folder)
    {
        folder.MarkDirty();
        const std::string path = NativeOf(folder.GetPath());
        NodeRef child;
        for (folder.GetFirstChild(child); child; child->GetNext(child)) {
            DirectoryNode& node = *AsDirectory(ContentOf(child));
            const std::string own = NativeOf(node.GetPath());
            EXPECT_EQ(own.substr(0, own.rfind('/')), path);
            EXPECT_TRUE(Disk().Exists(own)) << own;
            BrowserURL url(node.GetPath());
            EXPECT_EQ(node.IndexHash(), url.GetHash()) << own;
            if (node.CanHoldChildren())
                ExpectOnDisk(node);
        }
    }

    DirectoryRef top, a, b;
    std::string before;
};

TEST_F(Change, ARenameTakesAllBelowWithIt)
{
    DirectoryRef in = Child(*a, "in"), two = Child(*in, "two.tif");
    EXPECT_EQ(a->Rename(ChangeMode::Ask, TextOf("ab")), Error::none);
    EXPECT_EQ(Disk().Listing("/p"), before);
    ASSERT_EQ(a->Rename(ChangeMode::Do, TextOf("ab")), Error::none);
    EXPECT_EQ(UrlOf(*two), "file://localhost/p/ab/in/two.tif");
    BrowserURL fresh(PathOf("/p/ab/in/two.tif"));
    EXPECT_EQ(two->IndexHash(), fresh.GetHash());
    EXPECT_EQ(Disk().BytesOf("/p/ab/in/two.tif"), "22");
    top->Populate();
    EXPECT_EQ(Child(*top, "ab").Get(), a.Get()) << "the next listing knows the node";
    EXPECT_EQ(Names(*a), (Strings{ "one.tif", "in" }));
}

// A dirty folder is listed after its children have their new addresses, not before.
TEST_F(Change, ADirtyFolderKeepsItsChildren)
{
    DirectoryRef in = Child(*a, "in"), two = Child(*in, "two.tif");
    a->MarkDirty();
    in->MarkDirty();
    ASSERT_EQ(a->Rename(ChangeMode::Do, TextOf("renamed")), Error::none);
    EXPECT_EQ(Child(*a, "in").Get(), in.Get());
    EXPECT_EQ(Child(*in, "two.tif").Get(), two.Get());
    a->MarkDirty();
    in->MarkDirty();
    ASSERT_EQ(b->MoveInto(a, ChangeMode::Do, {}), Error::none);
    EXPECT_EQ(Child(*in, "two.tif").Get(), two.Get());
    EXPECT_EQ(UrlOf(*two), "file://localhost/p/b/renamed/in/two.tif");
}

// Whatever call fails, a node stands where the disk says, or has left the tree.
TEST_F(Change, AFailureLeavesNoNodeAtAWrongPlace)
{
    using namespace vx3::testing;
    const auto disk = Disk().Keep();
    for (FailClass kind : { FailClass::Memory, FailClass::Rename, FailClass::CreateFolder, FailClass::Copy, FailClass::Remove })
        for (Failing failing : { Failing::Once, Failing::FromThereOn }) {
            int64_t failures = 1, runs = 0;
            for (; failures; runs++) {
                Disk().Restore(disk);
                DirectoryRef folder = Top("/p"), from = Child(*folder, "a"), into = Child(*folder, "b");
                (void)Names(*Child(*from, "in"));
                const String name = TextOf("ab"), made = TextOf("made");
                ContentRef fresh;
                testHost.Faults().Fail(kind, runs + 1, failing);
                (void)from->Rename(ChangeMode::Do, name);
                (void)into->MoveInto(from, ChangeMode::Do, {});
                (void)into->CreateFolder(ChangeMode::Do, made, &fresh);
                (void)folder->CopyInto(from, ChangeMode::Do, &made, {}, 0);
                (void)into->Delete(ChangeMode::Do, {});
                failures = testHost.Faults().FailuresOf(kind);
                testHost.Faults().Clear();
                ExpectOnDisk(*folder);
                fresh = ContentRef();
                folder->Remove();
            }
            EXPECT_GT(runs, kind == FailClass::Memory ? 50 : 1);
        }
}

TEST_F(Change, NamesThatLeaveTheFolderAreRefused)
{
    for (const char* name : { "", ".", "..", "../x", "x/y", "/" }) {
        EXPECT_EQ(a->Rename(ChangeMode::Do, TextOf(name)), Error::rename) << name;
        EXPECT_EQ(a->CreateFolder(ChangeMode::Do, TextOf(name), nullptr), Error::newFolder) << name;
        String newName = TextOf(name);
        if (*name) {
            EXPECT_EQ(b->CopyInto(a, ChangeMode::Do, &newName, {}, 0), Error::copy) << name;
        }
    }
    EXPECT_EQ(a->Rename(ChangeMode::Do, TextOf("b")), Error::rename) << "the name is taken";
    EXPECT_EQ(UrlOf(*a), "file://localhost/p/a");
    EXPECT_EQ(Disk().Listing("/p"), before);
}

TEST_F(Change, NewFolders)
{
    ContentRef made;
    (void)Names(*a);
    EXPECT_EQ(a->CreateFolder(ChangeMode::Ask, TextOf("new"), &made), Error::none);
    EXPECT_FALSE(Disk().Exists("/p/a/new"));
    ASSERT_EQ(a->CreateFolder(ChangeMode::Do, TextOf("new"), &made), Error::none);
    EXPECT_TRUE(Disk().Exists("/p/a/new"));
    a->Populate();
    EXPECT_EQ(Child(*a, "new").Get(), made.Get());
    ContentRef clash;
    EXPECT_EQ(a->CreateFolder(ChangeMode::Do, TextOf("in"), &clash), Error::newFolder);
    EXPECT_FALSE(clash);
    EXPECT_EQ(Names(*a), (Strings{ "one.tif", "in", "new" }));
    EXPECT_EQ(Child(*a, "one.tif")->CreateFolder(ChangeMode::Ask, TextOf("x"), nullptr), Error::newFolder);
}

TEST_F(Change, AMoveKeepsTheNode)
{
    DirectoryRef in = Child(*a, "in"), two = Child(*in, "two.tif");
    Counted counted;
    EXPECT_EQ(b->MoveInto(in, ChangeMode::Ask, {}), Error::none);
    EXPECT_EQ(b->MoveInto(in, ChangeMode::Walk, { Count, &counted }), Error::none);
    EXPECT_EQ(counted.elements, 2);
    EXPECT_EQ(counted.bytes, 2);
    ASSERT_EQ(b->MoveInto(in, ChangeMode::Do, {}), Error::none);
    EXPECT_EQ(UrlOf(*two), "file://localhost/p/b/in/two.tif");
    for (DirectoryRef* folder : { &a, &b })
        (*folder)->Populate();
    EXPECT_EQ(Child(*b, "in").Get(), in.Get());
    EXPECT_EQ(Names(*a), Strings{ "one.tif" });
}

// Neither folder is read again for each of many files.
TEST_F(Change, ManyMovesListNothing)
{
    DirectoryRef file = Child(*a, "one.tif"), three = Child(*b, "three.tif");
    (void)Names(*top);
    const int64_t walks = Disk().CountOf(vx3::testing::Asked::Walk);
    for (int i = 0; i < 10; i++) {
        DirectoryRef target = i % 2 ? b : a;
        ASSERT_EQ(target->MoveInto(three, ChangeMode::Do, {}), Error::none);
        EXPECT_EQ(Child(*target, "three.tif").Get(), three.Get());
    }
    EXPECT_EQ(Disk().CountOf(vx3::testing::Asked::Walk), walks);
}

TEST_F(Change, AFailedMoveChangesNothing)
{
    DirectoryRef one = Child(*a, "one.tif");
    EXPECT_EQ(b->MoveInto(one, ChangeMode::Do, {}), Error::moveFailed) << "the target exists";
    EXPECT_EQ(Child(*a, "one.tif").Get(), one.Get());
    EXPECT_EQ(Child(*a, "in")->MoveInto(a, ChangeMode::Do, {}), Error::moveFailed) << "into itself";
    EXPECT_EQ(Child(*top, "a").Get(), a.Get());
    EXPECT_EQ(a->MoveInto(a, ChangeMode::Do, {}), Error::moveFailed);
    EXPECT_EQ(Child(*a, "in")->MoveInto(a, ChangeMode::Ask, {}), Error::move);
    ContentRef category(Make<CategoryNode>()(TextOf("x"), TextOf("x:/"), Icon::Folder));
    EXPECT_EQ(a->MoveInto(category, ChangeMode::Do, {}), Error::wrongType);
    Disk().SetReadOnly("/p/b");
    Disk().SetDates("/p", Day(1), Day(27));
    top->Populate();
    EXPECT_EQ(b->MoveInto(one, ChangeMode::Ask, {}), Error::move);
    EXPECT_EQ(b->CopyInto(one, ChangeMode::Ask, nullptr, {}, 0), Error::copy);
    EXPECT_EQ(b->Delete(ChangeMode::Ask, {}), Error::deletion);
    EXPECT_EQ(Disk().Listing("/p"), before);
}

TEST_F(Change, CopiesAreWholeOrNotThere)
{
    Counted counted;
    EXPECT_EQ(b->CopyInto(a, ChangeMode::Walk, nullptr, { Count, &counted }, 0), Error::none);
    EXPECT_EQ(counted.elements, 4);
    EXPECT_EQ(counted.bytes, 3);
    for (int32_t at = 1; at <= 4; at++) {
        Counted cancelled;
        cancelled.cancelAt = at;
        EXPECT_EQ(b->CopyInto(a, ChangeMode::Do, nullptr, { Count, &cancelled }, 0), Error::cancelled) << at;
        EXPECT_EQ(Disk().Listing("/p"), before) << at;
    }
    ASSERT_EQ(b->CopyInto(a, ChangeMode::Do, nullptr, {}, 0), Error::none);
    EXPECT_EQ(Disk().BytesOf("/p/b/a/in/two.tif"), "22");
    EXPECT_EQ(Names(*b), (Strings{ "three.tif", "one.tif", "a" })) << "an own operation marks the folder";
    EXPECT_EQ(b->CopyInto(a, ChangeMode::Do, nullptr, {}, 0), Error::copy) << "the target exists";
    String other = TextOf("copy of a");
    EXPECT_EQ(b->CopyInto(a, ChangeMode::Do, &other, {}, 0), Error::none);
    Disk().SetFreeBytes(0);
    String third = TextOf("third");
    EXPECT_EQ(b->CopyInto(a, ChangeMode::Do, &third, {}, 0), Error::copy) << "the disk is full";
    EXPECT_FALSE(Disk().Exists("/p/b/third"));
    EXPECT_EQ(Child(*a, "in")->CopyInto(a, ChangeMode::Do, nullptr, {}, 0), Error::copy) << "into itself";
}

TEST_F(Change, ADeletedNodeLeavesTheTree)
{
    DirectoryRef in = Child(*a, "in"), two = Child(*in, "two.tif");
    Counted cancelling;
    cancelling.cancelAt = 1;
    EXPECT_EQ(a->Delete(ChangeMode::Walk, { Count, &cancelling }), Error::cancelled);
    EXPECT_EQ(Disk().Listing("/p"), before);
    EXPECT_EQ(a->Delete(ChangeMode::Ask, {}), Error::none);
    ASSERT_EQ(a->Delete(ChangeMode::Do, {}), Error::none);
    EXPECT_FALSE(Disk().Exists("/p/a"));
    EXPECT_TRUE(two->IsRemoved());
    EXPECT_EQ(Names(*top), Strings{ "b" });
    EXPECT_EQ(a->Delete(ChangeMode::Do, {}), Error::deletion);
    EXPECT_EQ(b->CopyInto(a, ChangeMode::Do, nullptr, {}, 0), Error::copy);
}

TEST_F(Change, ACategoryTakesNothingThatItCannotKeep)
{
    ContentRef favourites(Make<CategoryNode>()(TextOf("Favourites"), TextOf("favorite:/"), Icon::Favorites)), made;
    EXPECT_EQ(favourites->CreateFolder(ChangeMode::Ask, TextOf("x"), &made), Error::newFolder);
    EXPECT_EQ(favourites->CopyInto(a, ChangeMode::Ask, nullptr, {}, 0), Error::copy);
    EXPECT_EQ(favourites->MoveInto(a, ChangeMode::Do, {}), Error::move);
    EXPECT_EQ(favourites->GetAttributes(nullptr), 0x40000001u);
    FileDate date = {};
    EXPECT_TRUE(favourites->GetDate(DateKind::Created, date));
    EXPECT_NE(date.year, 0);
    ContentRef plain(Make<CategoryNode>()(TextOf("x"), TextOf("x:/"), FilePath()));
    plain->GetDate(DateKind::Created, date);
    EXPECT_EQ(date.year, 0) << "no date until something below it changes";
}

} // namespace
