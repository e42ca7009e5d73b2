// What other threads tell a window, and what it makes of it at its next tick.

#include "windowfixture.h"

#include <functional>

#include "model/contenttree.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class WindowTimer : public WindowTest
{
protected:
    WindowTimer()
        : place(AddPlace("f"))
    {
        for (const char* name : { "a", "b", "c" })
            (void)AddChild(*place, name);
    }
    ~WindowTimer() override { place->Remove(); }

    static NodeRef ChildAt(TestPlace& parent, int32_t index)
    {
        NodeRef child;
        for (parent.GetFirstChild(child); child && index > 0; index--)
            child->GetNext(child);
        return child;
    }
    ContentRef Child(int32_t index) { return ToContent(ChildAt(*place, index)); }
    // How often the place is listed in a tick.
    int ListedInATick()
    {
        place->listed = 0;
        Tick();
        return place->listed;
    }

    Ref<TestPlace> place;
};

// --- Events ---

struct EventCase {
    const char* name;
    std::function<void(BrowserDialog& window, TestPlace& shown, std::function<ContentRef(int32_t)> child)> post;
    const char* entries; // after the next tick; "b" stood selected
};

TEST_F(WindowTimer, EventsSelectAndDeselectAtTheNextTick)
{
    const Ref<TestPlace> other = AddPlace("other");
    const ContentRef stranger = AddChild(*other, "stranger");
    const EventCase cases[] = {
        { "nothing", [](auto&, auto&, auto) {}, "a [b] c" },
        { "select", [](auto& window, auto& shown, auto child) { window.NodeChangedWithChild(child(2), &shown); }, "a [b] [c]" },
        { "deselect", [](auto& window, auto& shown, auto child) { window.ChildLeft(child(1), &shown); }, "a b c" },
        { "clear", [&](auto& window, auto&, auto) { window.NodeChanged(place); }, "a b c" },
        { "in their order",
          [&](auto& window, auto& shown, auto child) {
              window.NodeChangedWithChild(child(0), &shown);
              window.NodeChanged(place);
              window.NodeChangedWithChild(child(1), &shown);
              window.NodeChangedWithChild(child(2), &shown);
              window.ChildLeft(child(1), &shown);
          },
          "a b [c]" },
        { "another node changed", [&](auto& window, auto&, auto child) { window.NodeChanged(child(0)), window.NodeChanged(other); },
          "a [b] c" },
        { "no node changed", [](auto& window, auto&, auto) { window.NodeChanged(ContentRef()); }, "a [b] c" },
        { "a child of another parent",
          [&](auto& window, auto&, auto child) {
              window.NodeChangedWithChild(child(0), other.Get());
              window.NodeChangedWithChild(stranger, other.Get());
              window.ChildLeft(child(1), other.Get());
          },
          "a [b] c" },
        { "a child without a parent", [](auto& window, auto&, auto child) { window.NodeChangedWithChild(child(0), nullptr); }, "a [b] c" },
        { "no child",
          [](auto& window, auto& shown, auto) {
              window.NodeChangedWithChild(ContentRef(), &shown);
              window.ChildLeft(ContentRef(), &shown);
          },
          "a [b] c" },
        { "one that is not there, and one that is",
          [&](auto& window, auto& shown, auto child) {
              window.NodeChangedWithChild(stranger, &shown);
              window.ChildLeft(stranger, &shown);
              window.NodeChangedWithChild(child(0), &shown);
          },
          "[a] [b] c" },
    };
    BrowserDialog& window = Open(place);
    for (const EventCase& row : cases) {
        window.Pane().GetList().ClearSelection();
        window.Pane().GetList().SetSelected(1, true);
        row.post(window, *place, [this](int32_t index) { return Child(index); });
        EXPECT_EQ(Entries(window), "a [b] c") << row.name << ", before the tick";
        Tick();
        EXPECT_EQ(Entries(window), row.entries) << row.name;
        EXPECT_FALSE(window.HasWork()) << row.name;
    }
    other->Remove();
}

// A child may be told of before anybody has listed its folder.
TEST_F(WindowTimer, ChildrenThatAreNotThereYetAreListed)
{
    BrowserDialog& window = Open(place);
    for (const char* name : { "d", "e" }) {
        place->unlisted.push_back(NewChild(*place, name));
        window.NodeChangedWithChild(place->unlisted.back(), place.Get());
    }
    Tick();
    EXPECT_EQ(Entries(window), "a b c [d] [e]");
}

TEST_F(WindowTimer, HoweverManyAreNotThereTheFolderIsListedOnceForAll)
{
    const Ref<TestPlace> other = AddPlace("other");
    BrowserDialog& window = Open(place);
    int listed[2] = {};
    for (int missing : { 1, 40 }) {
        for (int i = 0; i < missing; i++)
            window.NodeChangedWithChild(NewChild(*other, "missing"), place.Get());
        listed[missing > 1] = ListedInATick();
    }
    EXPECT_GT(listed[0], 0);
    EXPECT_EQ(listed[1], listed[0]);
    EXPECT_EQ(Entries(window), "a b c");
    other->Remove();
}

TEST_F(WindowTimer, WhatWasPostedForAPlaceIsForNoOther)
{
    const Ref<TestPlace> other = AddPlace("other");
    (void)AddChild(*other, "x");
    (void)AddChild(*other, "y");
    BrowserDialog& window = Open(place);
    window.NodeChanged(place);
    window.NodeChangedWithChild(Child(0), place.Get());
    window.GoTo(other);
    window.Pane().GetList().SetSelected(1, true);
    Tick();
    EXPECT_EQ(Entries(window), "x [y]");
    other->Remove();
}

// Kept: more than the ring holds is dropped without a word. The next refresh shows it all.
TEST_F(WindowTimer, SixHundredEventsInATickSelectWhatTheRingHolds)
{
    constexpr int posted = 600;
    BrowserDialog& window = Open(place);
    for (int i = 0; i < posted; i++) {
        place->unlisted.push_back(NewChild(*place, "n" + std::to_string(1000 + i)));
        window.NodeChangedWithChild(place->unlisted.back(), place.Get());
    }
    Tick();
    const SelectionState state = window.Pane().GetList().GetState();
    EXPECT_EQ(state.count, posted + 3);
    EXPECT_EQ(state.selectedCount, static_cast<int32_t>(EventRing::capacity));
    EXPECT_EQ(state.first, 3);
    EXPECT_EQ(state.last, 2 + static_cast<int32_t>(EventRing::capacity)) << "the first ones that came";
    window.NodeChanged(place);
    Tick();
    EXPECT_EQ(window.Pane().GetList().GetState().selectedCount, 0) << "and there is room again";
}

TEST_F(WindowTimer, AClosedWindowTakesNoEvents)
{
    BrowserDialog& window = Open(place);
    ContentRef late = NewChild(*place, "late");
    const int live = TestPlace::live;
    window.NodeChangedWithChild(late, place.Get()); // waits when it closes
    Close(window);
    EXPECT_FALSE(window.IsOpen());
    window.NodeChanged(place);
    window.NodeChangedWithChild(late, place.Get());
    window.NodeChangedWithChild(late, nullptr);
    window.ChildLeft(late, nullptr);
    NotifyChanged(place);
    EXPECT_FALSE(window.HasWork());
    late = ContentRef();
    EXPECT_EQ(TestPlace::live, live - 1) << "nobody keeps it";
    window.GoTo(place);
    EXPECT_EQ(window.GetNode(), ContentRef());
}

// --- Announcements ---

TEST_F(WindowTimer, HearsOfWhatItShowsAndOfNothingElse)
{
    const ContentRef child = AddChild(*place, "d", Attribute::folder);
    const ContentRef inner = AddChild(static_cast<TestPlace&>(*child), "inner");
    const Ref<TestPlace> other = AddPlace("other");
    const ContentRef nephew = AddChild(*other, "nephew");
    const ContentRef unlinked = NewChild(*other, "unlinked");
    struct Row {
        const char* name;
        ContentRef changed;
        bool byFolder, byChild, byRoots; // heard by a window on the place, on its child "d", on the root view
    };
    const Row rows[] = {
        { "the place", place, true, false, true },           { "its child", child, true, true, false },
        { "inside the child", inner, false, true, false },   { "another place", other, false, false, true },
        { "in another place", nephew, false, false, false },
    };
    BrowserDialog *windows[3] = { &Open(place), &Open(child), &Open(ContentRef()) }, &closed = Open(place);
    Close(closed);
    Tick();
    for (const Row& row : rows) {
        NotifyChanged(row.changed);
        EXPECT_EQ(windows[0]->HasWork(), row.byFolder) << row.name;
        EXPECT_EQ(windows[1]->HasWork(), row.byChild) << row.name;
        EXPECT_EQ(windows[2]->HasWork(), row.byRoots) << row.name;
        EXPECT_FALSE(closed.HasWork()) << row.name;
        Tick();
        for (BrowserDialog* window : windows)
            EXPECT_FALSE(window->HasWork()) << row.name;
    }
    NotifyChanged(ContentRef());
    for (BrowserDialog* window : windows)
        EXPECT_FALSE(window->HasWork());
    NotifyChanged(unlinked); // no longer anywhere: at most a refresh too many
    Tick();
    other->Remove();
}

TEST_F(WindowTimer, ShowsWhatCameWhenItIsTold)
{
    BrowserDialog& window = Open(place);
    window.Pane().GetList().SetSelected(1, true);
    (void)AddChild(*place, "aa");
    Tick();
    EXPECT_EQ(Entries(window), "a [b] c") << "nobody told of it";
    NotifyChanged(place);
    EXPECT_EQ(Entries(window), "a [b] c") << "and a list is changed by the timer alone";
    Tick();
    EXPECT_EQ(Entries(window), "a aa [b] c");
}

// --- The order of a tick ---

TEST_F(WindowTimer, RefreshesOnceHoweverMuchHappened)
{
    BrowserDialog& window = Open(place);
    EXPECT_EQ(ListedInATick(), 0);
    for (int i = 0; i < 5; i++)
        NotifyChanged(place);
    const int refresh = ListedInATick();
    EXPECT_GT(refresh, 0);
    EXPECT_EQ(ListedInATick(), 0);
    window.NodeChangedWithChild(Child(0), place.Get()); // wants the pane alone
    EXPECT_EQ(ListedInATick(), refresh);
    EXPECT_EQ(ListedInATick(), 0);
    window.NodeChangedWithChild(Child(1), place.Get());
    NotifyChanged(place);
    EXPECT_EQ(ListedInATick(), refresh) << "all of it is refreshed, and the pane not again";
    EXPECT_EQ(ListedInATick(), 0);
}

// A tick that refreshes everything does nothing else; the next one leaves the node that is gone.
TEST_F(WindowTimer, LeavesANodeThatWasRemovedForTheNearest)
{
    Disk().AddFile("/p/q/sub/a.txt", "a");
    BrowserDialog& window = Open("/p/q/sub");
    const ContentRef removed = window.GetNode();
    NotifyChanged(removed);
    removed->Remove();
    Tick();
    EXPECT_EQ(window.GetNode(), removed);
    EXPECT_EQ(Entries(window), "");
    NodeOf("/p/q")->Remove();
    Tick();
    EXPECT_EQ(UrlOf(window), "/p");
    EXPECT_EQ(HistoryOf(window), "/p/q/sub [/p]");
    place->Remove();
}

TEST_F(WindowTimer, EndsAtTheComputerIfNothingIsLeftOfAPlace)
{
    BrowserDialog& window = Open(place);
    window.NodeChangedWithChild(Child(0), place.Get()); // does not outlive its folder
    place->Remove();
    Tick();
    EXPECT_EQ(UrlOf(window), "file:/");
    Tick(); // the volumes have come
    EXPECT_FALSE(window.HasWork());
}

TEST_F(WindowTimer, AClosedWindowHasNoTimer)
{
    BrowserDialog& window = Open(place);
    NotifyChanged(place);
    Close(window);
    EXPECT_EQ(ListedInATick(), 0);
}

} // namespace
