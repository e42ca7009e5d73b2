// Nodes on a file system in memory, with dates that a test sets.
#pragma once

#include "model/contenttree.h"
#include "model/pluginregistry.h"
#include "nodes/categorynode.h"
#include "nodes/directorynode.h"
#include "support/modulefixture.h"

namespace vx3::tests {

inline vx3::testing::TestHostOptions InMemory()
{
    vx3::testing::TestHostOptions options;
    options.files = vx3::testing::Files::InMemory;
    return options;
}

// A date in the year 2026 that counts up with its argument.
constexpr VX3FileDate Day(uint16_t day, uint16_t second = 0)
{
    return { 2026, static_cast<uint16_t>(1 + day / 28), static_cast<uint16_t>(1 + day % 28), 12, 0, second };
}

class NodeTest : public ModuleTest
{
protected:
    explicit NodeTest(vx3::testing::TestHostOptions options = InMemory())
        : ModuleTest(std::move(options))
    {
        browser::contentTree.tree = browser::Make<browser::BrowserContentTree>()();
    }
    ~NodeTest() override
    {
        browser::contentTree.ForgetRoots();
        browser::contentTree.tree->RemoveChildren();
        delete browser::contentTree.tree;
        browser::contentTree.tree = nullptr;
    }

    vx3::testing::MemoryFileSystem& Disk() { return testHost.FileSystem(); }

    // A folder at the top of the tree that was never listed.
    static browser::DirectoryRef Top(const std::string& path)
    {
        browser::DirectoryEntry entry;
        EXPECT_TRUE(browser::MakeAddress(PathOf(path), entry.address));
        entry.flags = browser::Attribute::folder | browser::Attribute::dirty;
        browser::DirectoryRef node(browser::Make<browser::DirectoryNode>()(std::move(entry)));
        node->InsertLast(browser::contentTree.tree);
        return node;
    }

    static std::vector<std::string> Names(browser::BrowserContentNode& folder)
    {
        std::vector<std::string> names;
        browser::NodeRef child;
        for (folder.GetFirstChild(child); child; child->GetNext(child)) {
            browser::String name;
            browser::ContentOf(child)->GetName(name);
            names.push_back(Utf8(name));
        }
        return names;
    }

    static browser::DirectoryRef Child(browser::BrowserContentNode& folder, const std::string& name)
    {
        browser::NodeRef child;
        for (folder.GetFirstChild(child); child; child->GetNext(child))
            if (browser::DirectoryNode* node = browser::AsDirectory(browser::ContentOf(child)))
                if (node->HasName(TextOf(name)))
                    return browser::DirectoryRef(node);
        return {};
    }
};

using Strings = std::vector<std::string>;

} // namespace vx3::tests
