// A storm on a real tree: threads list, look up, rename, move, create and delete at once.
// At the end nothing hangs, every listing agrees with the disk, and every node is freed.

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "model/urlresolver.h"
#include "support/nodefixture.h"
#include "support/watchdog.h"

using namespace browser;
using namespace vx3::tests;
namespace fs = std::filesystem;

namespace {

constexpr int folders = 6;
constexpr int files = 20;

class ListingStress : public NodeTest
{
protected:
    ListingStress()
        : NodeTest(OnDiskWithLightChecks())
        , root(testHost.Folder() + "/storm")
    {
        for (int folder = 0; folder < folders; folder++)
            for (int file = 0; file < files; file++)
                MakeFile(root + "/f" + std::to_string(folder) + "/" + std::to_string(file) + ".tif");
        top = Top(root);
        top->InsertLast(contentTree.tree);
    }
    ~ListingStress() override { top = DirectoryRef(); }

    static vx3::testing::TestHostOptions OnDiskWithLightChecks()
    {
        vx3::testing::TestHostOptions options;
        options.checks = vx3::testing::Checks::Light;
        return options;
    }
    static void MakeFile(const std::string& path)
    {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << path;
    }

    DirectoryRef AnyChild(BrowserContentNode& folder, std::mt19937& random)
    {
        NodeRef child, found;
        unsigned seen = 0;
        for (folder.GetFirstChild(child); child; child->GetNext(child))
            if (random() % ++seen == 0)
                found = child;
        return DirectoryRef(AsDirectory(ContentOf(found)));
    }

    void DoSomething(std::mt19937& random)
    {
        DirectoryRef folder = AnyChild(*top, random), other = AnyChild(*top, random);
        if (!folder || !other)
            return;
        DirectoryRef node = AnyChild(*folder, random);
        const String name = TextOf(std::to_string(random() % 500) + ".tif");
        switch (random() % 10) {
        case 0: folder->MarkDirty(); break;
        case 1: folder->Populate(); break;
        case 2: (void)folder->CreateFolder(ChangeMode::Do, name, nullptr); break;
        case 3:
            if (node)
                (void)node->Rename(ChangeMode::Do, name);
            break;
        case 4:
            if (node)
                (void)other->MoveInto(node, ChangeMode::Do, {});
            break;
        case 5:
            if (node)
                (void)other->CopyInto(node, ChangeMode::Do, &name, {}, 0);
            break;
        case 6:
            if (node && random() % 4 == 0)
                (void)node->Delete(ChangeMode::Do, {});
            break;
        case 7: LookUp(*folder, name); break;
        default: ReadFields(*folder);
        }
    }

    void LookUp(DirectoryNode& folder, const String& name)
    {
        FilePath path;
        if (!folder.ReadPath(path) || !path.Append(name))
            return;
        BrowserURL url(path);
        ContentRef found;
        FindNodeByUrl(url, FindPlain, ContentRef(top), found);
    }

    static void ReadFields(BrowserContentNode& folder)
    {
        NodeRef child;
        for (folder.GetLastChild(child); child; child->GetPrev(child)) {
            String name;
            FileDate date;
            BrowserURL url;
            ContentOf(child)->GetName(name);
            ContentOf(child)->GetDate(DateKind::Modified, date);
            ContentOf(child)->GetUrl(url, 0);
            (void)url.GetText();
        }
    }

    void ExpectAgreement(BrowserContentNode& folder, const std::string& path)
    {
        folder.MarkDirty();
        std::multiset<std::string> nodes, disk;
        for (const std::string& name : Names(folder))
            nodes.insert(name);
        for (const auto& entry : fs::directory_iterator(path))
            disk.insert(entry.path().filename());
        EXPECT_EQ(nodes, disk) << path;
        NodeRef child;
        for (folder.GetFirstChild(child); child; child->GetNext(child)) {
            DirectoryNode* node = AsDirectory(ContentOf(child));
            EXPECT_EQ(fs::path(NativeOf(node->GetPath())).parent_path(), path);
            if (node->HasFlags(Attribute::folder))
                ExpectAgreement(*node, NativeOf(node->GetPath()));
        }
    }

    const std::string root;
    DirectoryRef top;
};

TEST_F(ListingStress, StormOnARealTree)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    std::atomic<bool> stop = false;
    std::atomic<int64_t> operations = 0;
    std::array<std::thread, 8> workers;
    for (size_t i = 0; i < workers.size(); i++)
        workers[i] = std::thread([&, i] {
            std::mt19937 random(static_cast<unsigned>(i));
            for (; !stop; operations++)
                DoSomething(random);
        });
    std::this_thread::sleep_for(StressSeconds());
    stop = true;
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_GT(operations, 100);
    RecordProperty("operations", std::to_string(operations));
    ExpectAgreement(*top, root);
}

} // namespace
