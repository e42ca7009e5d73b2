// A folder pane in a window of its own on a FakeGui. Its nodes are made here, with pictures
// if a test wants them; names sort as they are written, folders in front.
#pragma once

#include <optional>

#include "fakegui.h"
#include "support/nodefixture.h"

#include "services/preferences.h"
#include "services/resources.h"
#include "ui/foldercontentdialog.h"
#include "ui/folderposition.h"

namespace vx3::tests {

// Counts what it was asked to open.
class PanePlugin final : public browser::BrowserPluginInterface
{
public:
    explicit PanePlugin(int32_t ownType)
        : type(ownType)
    {
    }
    int32_t GetTypeId(browser::String*) override { return type; }
    void GetTypeName(browser::String& out, browser::ContentRef, browser::BrowserURL*, browser::TypeDetail) override { out = typeName; }
    browser::Preview* GetTypeIcon(browser::BrowserURL&, int32_t) override { return nullptr; }
    bool GetTypeNames(browser::TypeDetail, browser::Array<browser::String>&) override { return true; }
    bool OpenItem(browser::ContentRef node, browser::BrowserURL*, uint32_t request) override
    {
        opened += " " + Utf8(node->GetNameRef()) + (request ? "!" : "");
        if (onOpen)
            onOpen();
        return true;
    }

    int32_t type;
    browser::String typeName;
    std::string opened;
    std::function<void()> onOpen; // it may show a box
};

class PaneNode final : public browser::BrowserContentNode
{
public:
    PaneNode(const std::string& ownName, const std::string& ownUrl, uint32_t ownFlags)
        : BrowserContentNode(browser::NodeClass::Category, ownFlags)
        , name(TextOf(ownName))
        , url(TextOf(ownUrl))
    {
    }
    browser::NodeType GetNodeType() const override { return browser::NodeType::Category; }
    browser::BrowserPluginInterface* GetPlugin(uint32_t request) override
    {
        pluginRequest = request;
        return plugin;
    }
    void GetName(browser::String& out) override { out = name; }
    const browser::String& GetNameRef() override { return name; }
    bool GetUrl(browser::BrowserURL& out, uint32_t request) override
    {
        out.SetText(request == browser::URL_LINK_TARGET ? linkTarget : url);
        return true;
    }
    browser::Preview* GetPreview(uint32_t request, int32_t size) override
    {
        asked += std::to_string(request) + " " + std::to_string(size) + ";";
        return picture ? browser::Make<browser::Preview>()(picture.Get(), drawFlags) : nullptr;
    }

    browser::String name, url, linkTarget;
    browser::BrowserPluginInterface* plugin = nullptr;
    uint32_t pluginRequest = 1;
    browser::HostBitmap picture;
    uint32_t drawFlags = 0;
    std::string asked;
};

// What the pane wants of its window, in a row.
class PaneTestWindow final : public browser::GeDialog, public browser::PaneWindow
{
public:
    explicit PaneTestWindow(browser::FolderContentDialog& ownPane)
        : pane(ownPane)
    {
        pane.Init(this, browser::ViewMode::Icons);
    }
    ~PaneTestWindow() override { FreeHandle(); }

    void ShowNode(browser::ContentRef node, browser::ContentRef select) override
    {
        did += " show " + Utf8(node->GetNameRef()) + (select ? "/" + Utf8(select->GetNameRef()) : "");
    }
    void OpenInNewWindow(browser::ContentRef node) override { did += " new " + Utf8(node->GetNameRef()); }
    bool GoBack() override { return !(did += " back").empty(); }
    bool GoForward() override { return !(did += " forward").empty(); }
    void SelectLater(browser::ContentRef child) override { did += " later " + Utf8(child->GetNameRef()); }
    void UpdateSelectionPanes(bool) override { did += " update"; }
    bool ActivateGadget(int32_t id) override
    {
        did += " activate " + std::to_string(id);
        return hasTree;
    }
    bool IsSingleClick() const override { return singleClick; }
    void ToggleSingleClick() override { singleClick = !singleClick; }
    browser::BackgroundWork* GetWork() override { return work; }
    void BeginHandling() override { handling++; }
    void EndHandling() override { handling--; }
    std::string Did() { return std::exchange(did, {}); }

    bool singleClick = false;
    bool hasTree = true;
    int handling = 0;
    browser::BackgroundWork* work = nullptr;

protected:
    bool CreateLayout() override { return AttachSubDialog(pane, 10061); }

private:
    browser::FolderContentDialog& pane;
    std::string did;
};

class PaneTest : public NodeTest
{
protected:
    explicit PaneTest(vx3::testing::TestHostOptions options = InMemory())
        : NodeTest(std::move(options))
    {
        table = *testHost.Table();
        table.gui = gui.Services();
        threads = *table.thread;
        threads.sleep = [](int32_t milliseconds) { slept += milliseconds; };
        table.thread = &threads;
        slept = 0;
        browser::host = &table;
        browser::SetPreferenceDefaults();
        EXPECT_TRUE(browser::LoadResources(PathOf(MODULE_SOURCE "/browser.so")));
        folder = AddFolder("f");
    }
    ~PaneTest() override
    {
        EXPECT_EQ(window ? window->handling : 0, 0);
        window.reset();
        pane.reset();
        folder = browser::ContentRef();
        browser::ForgetFolderPositions();
        browser::FreeResources();
        browser::host = testHost.Table();
    }

    // A folder at the top of the tree, and what is in one.
    static browser::ContentRef AddFolder(const std::string& name)
    {
        browser::ContentRef node(browser::Make<PaneNode>()(name, "test:/" + name, browser::Attribute::folder));
        node->InsertLast(browser::contentTree.tree);
        return node;
    }
    static PaneNode& Add(browser::BrowserContentNode& parent, const std::string& name, uint32_t flags = 0)
    {
        browser::BrowserURL url;
        (void)parent.GetUrl(url, 0);
        auto* node = browser::Make<PaneNode>()(name, Utf8(url.GetText()) + "/" + name, flags);
        EXPECT_TRUE(node->AttachTo(parent));
        return *node;
    }
    PaneNode& Add(const std::string& name, uint32_t flags = 0) { return Add(*folder, name, flags); }
    // "a" to the n-th letter.
    void AddLetters(int32_t count)
    {
        for (int32_t i = 0; i < count; i++)
            Add(std::string(1, static_cast<char>('a' + i)));
    }

    void Open(browser::ContentRef shown)
    {
        if (!pane)
            pane.emplace();
        if (!window)
            window.emplace(*pane);
        pane->SetNode(std::move(shown), false, {}, browser::ViewMode::Unchanged);
        EXPECT_TRUE(window->Open({}));
        (void)window->Did();
        (void)gui.Calls();
    }
    void Open() { Open(folder); }
    void Show(const browser::ContentRef& shown, const browser::ContentRef& select = {})
    {
        pane->SetNode(shown, false, select, browser::ViewMode::Unchanged);
        gui.Deliver();
    }

    browser::NodeRef At(int32_t index) { return pane->GetList().GetNode(index); }
    void Select(std::initializer_list<int32_t> places)
    {
        pane->GetList().ClearSelection();
        for (int32_t place : places)
            pane->GetList().SetSelected(place, true);
    }
    // "a [b] c": all entries, the selected ones in brackets.
    std::string Entries()
    {
        const browser::ContentViewEntryList::Reader entries(pane->GetList());
        std::string text;
        for (const browser::ContentViewEntry& entry : entries->All()) {
            const std::string name = entry.node ? Utf8(browser::ContentOf(entry.node)->GetNameRef()) : ".";
            text += (text.empty() ? "" : " ") + (entry.IsSelected() ? "[" + name + "]" : name);
        }
        return text;
    }

    FakeGui gui;
    browser::ContentRef folder;
    std::optional<browser::FolderContentDialog> pane;
    std::optional<PaneTestWindow> window;

    static inline int32_t slept = 0; // milliseconds

private:
    VX3Host table;
    VX3ThreadServices threads;
};

} // namespace vx3::tests
