#include "scene.h"

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include "core/values.h"
#include "model/contenttree.h"
#include "names.h"
#include "vx3/entry.h"

extern "C" int32_t vx3_main(int32_t action, void* arg1, void* arg2, void* arg3);

namespace vx3::bench {

using browser::ContentRef;
using browser::NodeRef;

namespace {

[[noreturn]] void Give(const char* reason)
{
    std::fprintf(stderr, "vx3-bench: %s\n", reason);
    std::exit(1);
}

std::string MakeProfile()
{
    std::string folder = std::filesystem::temp_directory_path() / "vx3-bench-XXXXXX";
    if (!mkdtemp(folder.data()))
        Give("no temporary folder could be made");
    return folder;
}

core::HostSettings Settings(const std::string& profile, bool hasWindows)
{
    constexpr int32_t withWindows = 0;
    core::HostSettings settings = core::SettingsBelow(profile);
    settings.syncFiles = false; // a disk's wait is no work of ours
    if (hasWindows)
        settings.runMode = withWindows;
    return settings;
}

// The binary whose resources the module reads; its code is linked into this program.
core::Path ModuleBinary()
{
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    return core::Path((program.parent_path().parent_path() / "modules/browser/browser.so").string());
}

int32_t Send(intptr_t message, void* data = nullptr)
{
    return vx3_main(VX3_ACTION_MESSAGE, reinterpret_cast<void*>(message), data, nullptr);
}

browser::DirectoryEntry EntryAt(const browser::FilePath& path, uint32_t flags)
{
    browser::DirectoryEntry entry;
    if (!browser::MakeAddress(path, entry.address))
        Give("an address could not be made");
    entry.flags = flags;
    return entry;
}

browser::DirectoryEntry FolderEntry(const std::string& path, uint32_t flags)
{
    core::Path native(path);
    return EntryAt(browser::FilePath::Of(native.Get()), flags);
}

ContentRef Attach(browser::DirectoryEntry&& entry)
{
    ContentRef node(browser::Make<browser::DirectoryNode>()(std::move(entry)));
    if (!node || !browser::contentTree.Computer() || !node->AttachTo(*browser::contentTree.Computer()))
        Give("a node could not be made");
    return node;
}

browser::DirectoryEntry ChildEntry(const browser::FilePath& folder, const std::u16string& name, uint64_t& random)
{
    constexpr uint64_t largestFile = 50'000'000;
    core::Text text{ std::u16string_view(name) };
    browser::FilePath path;
    (void)path.SetJoined(folder, browser::String::Of(text.Get()));
    browser::DirectoryEntry entry = EntryAt(path, 0);
    entry.size = static_cast<int64_t>(NextRandom(&random) % largestFile);
    return entry;
}

} // namespace

Scene::Scene(const VX3GuiServices* gui)
    : coreHost(Settings(profile.path, gui != nullptr))
    , table(*coreHost.Table())
{
    table.gui = gui;
    core::Path binary = ModuleBinary();
    VX3ResourceRequest request = { 1 };
    if (vx3_main(VX3_ACTION_LOAD, &table, nullptr, binary.Get()) != VX3_RESULT_OK)
        Give("the module does not load");
    Send(VX3_MESSAGE_RESOURCES, &request);
    if (vx3_main(VX3_ACTION_START, nullptr, nullptr, nullptr) != VX3_RESULT_OK)
        Give("the module does not start");
    Send(VX3_MESSAGE_ALL_LOADED);
}

TemporaryFolder::TemporaryFolder()
    : path(MakeProfile())
{
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

Scene::~Scene()
{
    Send(VX3_MESSAGE_ENDING);
    vx3_main(VX3_ACTION_END, nullptr, nullptr, nullptr);
}

ContentRef Scene::AddFolder(const std::string& path)
{
    return Attach(FolderEntry(path, browser::Attribute::folder | browser::Attribute::dirty));
}

ContentRef Scene::AddMadeFolder(size_t childCount)
{
    ContentRef folder = Attach(FolderEntry("/projects/library/of " + std::to_string(childCount), browser::Attribute::folder));
    browser::FilePath path = static_cast<browser::DirectoryNode&>(*folder).GetPath();
    uint64_t random = 5;
    browser::Array<NodeRef> children;
    for (const std::u16string& name : MakeNames(childCount)) {
        NodeRef child(browser::Make<browser::DirectoryNode>()(ChildEntry(path, name, random)));
        if (!child || !children.Append(std::move(child)))
            Give("a node could not be made");
    }
    if (!folder->InsertAllLast(children.begin(), children.Count()))
        Give("nodes could not be attached");
    return folder;
}

NodeRef FirstChildOf(const ContentRef& folder)
{
    NodeRef child;
    folder->GetFirstChild(child);
    return child;
}

size_t CountChildren(const ContentRef& folder)
{
    size_t count = 0;
    NodeRef next;
    for (NodeRef child = FirstChildOf(folder); child; child = std::move(next)) {
        child->GetNext(next);
        count++;
    }
    return count;
}

} // namespace vx3::bench
