// The gallery on windows of Qt, round the checked table of a test host. Each test ends
// without a call from a wrong thread and with nothing left behind.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "desktop/qtdriver.h"
#include "desktop/qttoolkit.h"
#include "support/gallery.h"
#include "testing/testhost.h"

namespace vx3::tests {

class QtTest : public ::testing::Test
{
protected:
    QtTest()
        : desk(toolkit)
        , driver(desk, toolkit)
        , table(*testHost.Table())
    {
        toolkit.SetDesk(&desk);
        table.gui = gui::Desk::Services();
        gallery.emplace(&table);
    }
    ~QtTest() override
    {
        gallery.reset();
        EXPECT_EQ(desk.ThreadViolations(), 0u);
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
        const std::string failure = driver.RunScript(script, Program(), [&output](const std::string& line) { output += line + "\n"; });
        return failure.empty() ? output : output + "FAILED: " + failure + "\n";
    }

    vx3::testing::TestHost testHost;
    desktop::QtToolkit toolkit;
    gui::Desk desk;
    desktop::QtDriver driver;
    VX3Host table;
    std::optional<Gallery> gallery;
};

} // namespace vx3::tests
