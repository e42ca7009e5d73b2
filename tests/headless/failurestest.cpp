// What a script can get wrong, and what a user cannot do: it is told, with the line, and the
// rest is left. Nothing stays open, nothing is left behind.
#include "headless/galleryfixture.h"

namespace {

using vx3::tests::Gallery;
using vx3::tests::GalleryTest;

struct FailureCase {
    const char* name;
    const char* script; // behind "open"
    const char* failure;
};

const FailureCase cases[] = {
    { "a menu without an answer", "set 10 1\nrclick 42 20 20\nsay never", "line 3: no answer is queued for:\n5 Plain" },
    { "a box without an answer", "push 73", "line 2: no answer is queued for:\nquestion: Paint it blue?" },
    { "a row that cannot be chosen", "set 10 1\nanswer 7\nrclick 42 20 20", "line 4: the menu has no row to choose for '7'" },
    { "a row that is not there", "set 10 1\nanswer Nothing\nrclick 42 20 20", "line 4: the menu has no row to choose for 'Nothing'" },
    { "an answer that is none", "answer maybe\npush 73", "line 3: 'maybe' is neither yes nor no" },
    { "a file that is not there", "answer nothing.png\npush 74", "line 3: '" },
    { "an answer that nobody asks for", "answer yes", "line 2: an answer is left that nobody asked for" },
    { "a modal window at the end", "push 70", "line 2: the script has ended while a modal window is open" },
    { "a rubber band at the end", "set 10 1\npress 42 170 150", "line 3: the script has ended while a rubber band is going on" },
    { "a drag at the end", "set 10 1\npress 42 20 20\nmove 43 5 5", "line 4: the script has ended while a drag is going on" },
    { "a failure inside a modal window", "push 70\npush 99", "line 3: the window has no gadget 99" },
    { "a gadget on another page", "click 42 20 20", "line 2: gadget 42 is not to be seen" },
    { "a point that is scrolled away", "set 10 1\nclick 42 20 590", "line 3: the point 20 590 of gadget 42 is not to be seen" },
    { "a point beside the gadget", "click 21 9999 5", "line 2: the point 9999 5 of gadget 21 is not to be seen" },
    { "a button that is disabled", "push 32", "line 2: gadget 32 is disabled" },
    { "a value out of the range", "set 23 11", "line 2: gadget 23 cannot be set to 11" },
    { "a value that is a separator", "set 27 0", "line 2: gadget 27 cannot be set to 0" },
    { "a value of a progress bar", "set 30 1", "line 2: gadget 30 cannot be set to 1" },
    { "a text for a field that is read only", "text 31 x", "line 2: gadget 31 does not take the text \"x\"" },
    { "a date that is none", "text 24 2026-13-01", "line 2: gadget 24 does not take the text \"2026-13-01\"" },
    { "a row that the menu bar has not", "menu 4", "line 2: the menu bar has no row 4 to choose" },
    { "a window behind a modal one", "push 70\nwindow 1\npush 71", "line 4: a modal window holds up the window" },
    { "a key for a window behind a modal one", "push 70\nwindow 1\nkey x", "line 4: a modal window holds up the window" },
};

class FailuresTest : public GalleryTest
{
};

TEST_F(FailuresTest, AreToldWithTheirLine)
{
    gallery.reset();
    for (const FailureCase& row : cases) {
        // A life of its own for each, since a failure ends the script in the middle of something.
        gallery.emplace(table);
        const std::string printed = Play(std::string("open\n") + row.script);
        EXPECT_NE(printed.find("FAILED: " + std::string(row.failure)), printed.npos) << row.name << "\n" << printed;
        EXPECT_EQ(printed.find("never"), printed.npos) << row.name;
        gallery.reset();
        EXPECT_TRUE(gui.GetDesk().Windows().empty()) << row.name;
    }
}

TEST_F(FailuresTest, AScriptThatCannotBeReadDoesNothing)
{
    EXPECT_EQ(Play("open\nfly 1\n"), "FAILED: line 2: 'fly' is no verb\n");
    EXPECT_EQ(gallery->Dump("list"), "");
}

TEST_F(FailuresTest, AnInterruptEndsTheScriptBetweenLines)
{
    int lines = 0;
    gui.SetStop([&lines] { return ++lines > 2; });
    EXPECT_EQ(Play("open\nsay first\nsay second\n"), "first\nFAILED: line 2: interrupted\n");
}

// What a user cannot do is what `refused` expects; other failures of its line are none of that.
TEST_F(FailuresTest, WhatAUserCannotDoIsRefused)
{
    EXPECT_EQ(Play("open\nrefused push 32\nrefused set 23 11\nrefused text 31 x\nrefused menu 4\nrefused push 99\nsay on\n"), "on\n");
    EXPECT_EQ(Play("refused set 23 5\n"), "FAILED: line 1: this was not refused\n");
    const std::string unanswered = Play("refused push 73\nsay never\n");
    EXPECT_NE(unanswered.find("FAILED: line 1: "), unanswered.npos) << "the box came, and nobody answered";
}

// A module that never rests: settling gives up after a while instead of waiting for ever.
TEST_F(FailuresTest, SettlingAsksWhetherSomethingWorks)
{
    int asked = 0;
    gui.GetDriver().SetWorking([&asked] { return ++asked < 20; });
    EXPECT_EQ(Play("open\nsettle\n"), "");
    EXPECT_GE(asked, 20);
}

} // namespace
