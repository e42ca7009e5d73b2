// Where a window has been.

#include "support/modulefixture.h"

#include "ui/browserhistory.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;

namespace {

using Direction = BrowserHistory::Direction;

class History : public ModuleTest
{
protected:
    // All entries from the first to the last, the current one in brackets.
    static std::string Describe(const BrowserHistory& history)
    {
        std::string text;
        for (int32_t steps = history.CountRows(Direction::Back); steps >= -history.CountRows(Direction::Forward); steps--) {
            String url;
            if (history.Get(steps, url))
                text += steps ? Utf8(url) + " " : "[" + Utf8(url) + "] ";
        }
        return text;
    }

    // '<' and '>' are a step; any other letter is a URL of its own, '-' the empty one.
    static void Play(BrowserHistory& history, const std::string& moves)
    {
        for (char move : moves)
            if (move == '<')
                history.Back(1);
            else if (move == '>')
                history.Forward(1);
            else
                EXPECT_TRUE(history.Push(move == '-' ? String() : TextOf(std::string(1, move))));
    }
};

TEST_F(History, WalksLikeThis)
{
    const struct {
        const char* what;
        const char* moves;
        const char* end;
    } rows[] = {
        { "nothing yet", "<>", "" },
        { "a place", "a", "[a] " },
        { "the same place is no step", "aabb", "a [b] " },
        { "not beyond the ends", "ab<<<>>>>", "a [b] " },
        { "back and arriving there", "abc<b", "a [b] c " },
        { "elsewhere drops what was ahead", "abc<<d", "a [d] " },
        { "what was dropped is not the next place", "abc<<dcb", "a d c [b] " },
        { "a dropped place is pushed anew", "abcd<<<xc", "a x [c] " },
        { "the next place keeps what is ahead", "abcd<<<b", "a [b] c d " },
        { "a letter is another place in capitals", "ab<B", "a [B] " },
        { "a place that is gone is an entry and drops what was ahead", "abc<<-", "a [] " },
        { "it can be the first", "-a", " [a] " },
        { "and is no step from itself", "a--", "a [] " },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        BrowserHistory history;
        Play(history, row.moves);
        EXPECT_EQ(Describe(history), row.end);
    }
}

TEST_F(History, StepsAndChoicesOutOfRangeChangeNothing)
{
    constexpr int32_t most = 0x7FFFFFFF;
    BrowserHistory history;
    Play(history, "abcde<<");
    for (int32_t steps : { -1, 3, most, -most - 1 }) {
        EXPECT_FALSE(history.Back(steps)) << steps;
        EXPECT_FALSE(history.Forward(steps)) << steps;
    }
    for (int32_t choice : { 0, -1, BrowserHistory::menuBase - 1, BrowserHistory::menuBase + 3, most }) {
        EXPECT_FALSE(history.GoToChoice(Direction::Back, choice)) << choice;
        EXPECT_FALSE(history.GoToChoice(Direction::Forward, choice)) << choice;
    }
    String url;
    for (int32_t steps : { 3, -3, most, -most - 1 })
        EXPECT_FALSE(history.Get(steps, url)) << steps;
    EXPECT_EQ(Describe(history), "a b [c] d e ");
}

TEST_F(History, MenusCountStepsAwayFromTheCurrentPlace)
{
    BrowserHistory history;
    Play(history, "abcd<<");
    EXPECT_TRUE(history.CanGoBack());
    EXPECT_TRUE(history.CanGoForward());
    auto row = [&](Direction direction, int32_t number) {
        String url;
        return history.GetRow(direction, number, url) ? Utf8(url) : "none";
    };
    EXPECT_EQ(row(Direction::Back, 0), "none");
    EXPECT_EQ(row(Direction::Back, 1), "a");
    EXPECT_EQ(row(Direction::Back, 2), "none");
    EXPECT_EQ(row(Direction::Forward, 1), "c");
    EXPECT_EQ(row(Direction::Forward, 2), "d");
    EXPECT_TRUE(history.GoToChoice(Direction::Forward, BrowserHistory::menuBase + 2));
    EXPECT_FALSE(history.CanGoForward());
    EXPECT_TRUE(history.GoToChoice(Direction::Back, BrowserHistory::menuBase));
    EXPECT_EQ(Describe(history), "a b c [d] ");
    EXPECT_TRUE(history.GoToChoice(Direction::Back, BrowserHistory::menuBase + 3));
    EXPECT_FALSE(history.CanGoBack());
}

TEST_F(History, IsNeverTrimmed)
{
    constexpr int32_t count = 2000;
    BrowserHistory history;
    for (int32_t i = 0; i < count; i++)
        ASSERT_TRUE(history.Push(TextOf(std::to_string(i))));
    String url;
    EXPECT_TRUE(history.Get(count - 1, url));
    EXPECT_EQ(Utf8(url), "0");
}

TEST_F(History, WithoutMemoryAPushChangesNothing)
{
    const struct {
        const char* moves;
        const char* url;
        const char* before;
        const char* after;
    } rows[] = {
        { "", "a", "", "[a] " },
        { "ab", "b", "a [b] ", "a [b] " },
        { "abc<", "d", "a [b] c ", "a b [d] " },
        { "abc<", "c", "a [b] c ", "a b [c] " },
    };
    for (const auto& row : rows) {
        int64_t failures = 0;
        for (bool pushed = false; !pushed; failures += !pushed) {
            BrowserHistory history;
            Play(history, row.moves);
            const String url = TextOf(row.url);
            testHost.Faults().Fail(FailClass::Memory, failures + 1);
            pushed = history.Push(url);
            EXPECT_EQ(pushed, testHost.Faults().FailuresOf(FailClass::Memory) == 0);
            testHost.Faults().Clear();
            EXPECT_EQ(Describe(history), pushed ? row.after : row.before);
        }
        EXPECT_GT(failures, 0);
    }
}

} // namespace
