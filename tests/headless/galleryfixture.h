// The gallery on windows without a screen, round the checked table of a test host. Each
// test ends without a call from a wrong thread and with nothing left behind.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "headless/headlesshost.h"
#include "support/gallery.h"
#include "testing/testhost.h"

namespace vx3::tests {

class GalleryTest : public ::testing::Test
{
protected:
    GalleryTest()
        : table(gui.Over(testHost.Table()))
    {
        gallery.emplace(table);
    }
    ~GalleryTest() override
    {
        gallery.reset();
        EXPECT_EQ(gui.GetDesk().ThreadViolations(), 0u);
        EXPECT_EQ(testHost.ExpectClean(), "");
    }

    gui::ScriptProgram Program()
    {
        gui::ScriptProgram program;
        program.open = [this](const std::string&) { return gallery->Open(); };
        program.command = [this](int32_t deed) { return gallery->Do(deed); };
        program.dump = [this](const std::string& what) { return gallery->Dump(what); };
        program.folder = testHost.Folder();
        return program;
    }

    // What the script prints, then what did not go as it says.
    std::string Play(const std::string& script)
    {
        std::string output;
        const std::string failure = gui.RunScript(script, Program(), [&output](const std::string& line) { output += line + "\n"; });
        return failure.empty() ? output : output + "FAILED: " + failure + "\n";
    }

    vx3::testing::TestHost testHost;
    headless::HeadlessGui gui;
    const VX3Host* table;
    std::optional<Gallery> gallery;
};

} // namespace vx3::tests
