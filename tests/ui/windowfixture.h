// The whole module on windows without a screen: its classes are linked in, the table is a
// checking and failing host's, the files are in memory. A test opens windows, plays the
// user and the host, and ends with nothing left behind.
#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "core/hoststate.h"
#include "core/registry.h"
#include "gui/gadget.h"
#include "headless/headlesshost.h"
#include "support/nodefixture.h"

#include "host/moduleentry.h"
#include "model/urlresolver.h"
#include "services/preferences.h"
#include "ui/browserdialog.h"
#include "ui/browsergadgets.h"
#include "ui/windowregistry.h"
#include "vx3/entry.h"

namespace vx3::tests {

inline vx3::testing::TestHostOptions WithWindows(vx3::testing::Checks checks = vx3::testing::Checks::Full)
{
    vx3::testing::TestHostOptions options = InMemory();
    options.calling = vx3::testing::Calling::InModules;
    options.checks = checks;
    options.adjust = [](core::HostSettings& settings) { settings.runMode = headless::runModeWithWindows; };
    return options;
}

// A place at the top of the tree whose children a test puts there: at once, or found by
// the next one who lists it.
class TestPlace final : public browser::BrowserContentNode
{
public:
    TestPlace(const std::string& ownName, const std::string& ownUrl, uint32_t ownFlags)
        : BrowserContentNode(browser::NodeClass::Category, ownFlags)
        , name(TextOf(ownName))
        , url(TextOf(ownUrl))
    {
        live++;
    }
    ~TestPlace() override { live--; }

    browser::NodeType GetNodeType() const override { return browser::NodeType::Category; }
    void GetName(browser::String& out) override { out = name; }
    const browser::String& GetNameRef() override { return name; }
    bool GetUrl(browser::BrowserURL& out, uint32_t) override
    {
        out.SetText(url);
        return true;
    }
    int64_t Populate() override
    {
        listed++;
        if (unlisted.empty())
            return 1;
        for (browser::ContentRef& child : std::exchange(unlisted, {}))
            EXPECT_TRUE(child->AttachTo(*this));
        return 1;
    }

    std::vector<browser::ContentRef> unlisted; // only where the main thread alone lists
    std::atomic<int> listed = 0;
    static inline std::atomic<int> live = 0;

private:
    browser::String name, url;
};

class WindowTest : public ::testing::Test
{
protected:
    static constexpr int tick = 250; // milliseconds

    explicit WindowTest(vx3::testing::TestHostOptions options = WithWindows())
        : testHost(std::move(options))
        , table(gui.Over(testHost.Table()))
    {
        Start();
    }
    ~WindowTest() override
    {
        End();
        EXPECT_TRUE(gui.GetToolkit().User().Failures().empty()) << gui.GetToolkit().User().Failures().front();
        EXPECT_EQ(gui.GetDesk().ThreadViolations(), 0u);
        EXPECT_EQ(TestPlace::live, 0);
        EXPECT_EQ(testHost.ExpectClean(), "");
    }

    // The life of the module. What is open at its end is closed by it.
    void Start()
    {
        testHost.Checked().OpenWindow();
        core::Path path(MODULE_SOURCE "/browser.so");
        EXPECT_EQ(Enter(VX3_ACTION_LOAD, const_cast<VX3Host*>(table), nullptr, path.Get()), VX3_RESULT_OK);
        VX3ResourceRequest request = { 1 };
        EXPECT_EQ(Send(VX3_MESSAGE_RESOURCES, &request), VX3_RESULT_OK);
        EXPECT_EQ(Enter(VX3_ACTION_START), VX3_RESULT_OK);
    }
    void End()
    {
        Send(VX3_MESSAGE_ENDING);
        EXPECT_TRUE(gui.GetDesk().Windows().empty());
        EXPECT_EQ(Watches(), 0);
        Enter(VX3_ACTION_END);
        gui.GetToolkit().Turn();
        testHost.Checked().CloseWindow();
        core::TakeOut(this);
        core::CurrentHost()->preferences.Park();
    }
    int32_t Send(intptr_t message, void* data = nullptr) { return Enter(VX3_ACTION_MESSAGE, reinterpret_cast<void*>(message), data); }

    // --- Nodes ---

    vx3::testing::MemoryFileSystem& Disk() { return testHost.FileSystem(); }
    static browser::ContentRef NodeOf(const std::string& path)
    {
        browser::BrowserURL url(PathOf(path));
        browser::ContentRef node;
        browser::FindNodeByUrl(url, browser::FindPlain, {}, node);
        return node;
    }
    // "test:/name", in the root view.
    static browser::Ref<TestPlace> AddPlace(const std::string& name)
    {
        browser::Ref<TestPlace> place(browser::Make<TestPlace>()(name, "test:/" + name, browser::Attribute::folder));
        place->InsertLast(browser::contentTree.tree);
        return place;
    }
    static browser::ContentRef NewChild(TestPlace& parent, const std::string& name, uint32_t flags = 0)
    {
        browser::BrowserURL url;
        (void)parent.GetUrl(url, 0);
        return browser::ContentRef(browser::Make<TestPlace>()(name, Utf8(url.GetText()) + "/" + name, flags));
    }
    static browser::ContentRef AddChild(TestPlace& parent, const std::string& name, uint32_t flags = 0)
    {
        browser::ContentRef child = NewChild(parent, name, flags);
        EXPECT_TRUE(child->AttachTo(parent));
        return child;
    }

    // --- Windows ---

    // The one that was opened has the focus.
    browser::BrowserDialog& Open(const browser::ContentRef& node)
    {
        if (!browser::OpenBrowserWindow(node))
            throw std::logic_error("no window opened");
        gui.GetToolkit().Turn();
        return *browser::ActiveDialog();
    }
    browser::BrowserDialog& Open(const std::string& path) { return Open(NodeOf(path)); }
    gui::Dialog& Shown(const browser::BrowserDialog& window)
    {
        for (gui::Dialog* shown : gui.GetDesk().Windows())
            if (shown->handle == window.Handle())
                return *shown;
        throw std::logic_error("the window is closed");
    }
    void Close(browser::BrowserDialog& window)
    {
        EXPECT_TRUE(gui.GetDesk().AskAndClose(Shown(window)));
        gui.GetToolkit().Turn();
    }
    // A button, a row of the menu or a key of the host.
    bool Command(browser::BrowserDialog& window, int32_t id)
    {
        const gui::Dialog& shown = Shown(window);
        const bool isTaken = shown.table->command(shown.object, id, browser::BaseContainer().Value());
        gui.GetToolkit().Turn();
        return isTaken;
    }
    void Tick() { gui.GetToolkit().Advance(tick); }
    int64_t Watches() { return testHost.Core().CountLiveObjects().watches; }
    size_t CountOpen() { return gui.GetDesk().Windows().size(); }

    // --- What a window shows ---

    // "a [b] c": all entries, the selected ones in brackets.
    static std::string Entries(browser::BrowserDialog& window)
    {
        const browser::ContentViewEntryList::Reader list(window.Pane().GetList());
        std::string text;
        for (const browser::ContentViewEntry& entry : list->All()) {
            const std::string name = Utf8(browser::ContentOf(entry.node)->GetNameRef());
            text += (text.empty() ? "" : " ") + (entry.IsSelected() ? "[" + name + "]" : name);
        }
        return text;
    }
    // Where it is: a path, another URL, or "roots" for the root view.
    static std::string UrlOf(browser::BrowserDialog& window)
    {
        browser::BrowserURL url;
        if (!window.GetNode())
            return "roots";
        EXPECT_TRUE(window.GetNode()->GetUrl(url, 0));
        return Short(Utf8(url.GetText()));
    }
    // "/p [/p/a] /p/b": where it was, is in brackets, and may go forward to; "-" has no URL.
    static std::string HistoryOf(browser::BrowserDialog& window)
    {
        browser::String told;
        EXPECT_TRUE(window.Describe("history", told));
        std::string text;
        std::istringstream lines(Utf8(told));
        for (std::string line; std::getline(lines, line);) {
            const std::string url = line.size() > 2 ? Short(line.substr(2)) : "-";
            text += (text.empty() ? "" : " ") + (line[0] == '*' ? "[" + url + "]" : url);
        }
        return text;
    }
    static std::string Short(const std::string& url)
    {
        constexpr std::string_view machine = "file://localhost";
        if (!url.starts_with(machine))
            return url;
        return url == machine ? "/" : url.substr(machine.size());
    }
    static std::string Setting(browser::Preference key) { return Short(Utf8(browser::GetPreferenceText(key))); }
    static void SetSetting(browser::Preference key, const std::string& path)
    {
        browser::BrowserURL url(PathOf(path));
        EXPECT_TRUE(browser::SetPreferenceText(key, url.GetText()));
    }

    vx3::testing::TestHost testHost;
    headless::HeadlessGui gui;
    const VX3Host* table;

private:
    int32_t Enter(int32_t action, void* arg1 = nullptr, void* arg2 = nullptr, void* arg3 = nullptr)
    {
        const core::Registrant before = core::SetRegistrant(this);
        testHost.Checked().EnterAction(action);
        const int32_t result = vx3_main(action, arg1, arg2, arg3);
        testHost.Checked().LeaveAction();
        core::SetRegistrant(before);
        return result;
    }
};

} // namespace vx3::tests
