// A list over a folder in memory, written as text: names in order, a selected one in
// brackets, an entry without a node as a point.
#pragma once

#include "core/message.h"
#include "services/preferences.h"
#include "support/nodefixture.h"

#include "ui/contententrylist.h"

namespace vx3::tests {

class ListTest : public NodeTest
{
protected:
    explicit ListTest(vx3::testing::TestHostOptions options = InMemory())
        : NodeTest(std::move(options))
    {
        browser::SetPreferenceDefaults();
        vx3::core::SetMessageListener([this](const vx3::core::CoreMessage& message) {
            EXPECT_EQ(message.id, VX3_MESSAGE_BROWSER);
            EXPECT_EQ(message.first, browser::CoreMessage::selectionChanged);
            EXPECT_EQ(message.data, nullptr);
            messages++;
        });
    }
    ~ListTest() override
    {
        vx3::core::SetMessageListener({});
        top = browser::DirectoryRef();
    }

    // A folder of files; a name with a slash at the end is a folder's.
    void MakeFolder(const std::string& path, const Strings& names)
    {
        for (const std::string& name : names)
            if (name.back() == '/')
                Disk().AddFolder(path + "/" + name.substr(0, name.size() - 1));
            else
                Disk().AddFile(path + "/" + name, name, Day(1));
        top = Top(path);
    }
    void Relist()
    {
        top->MarkDirty();
        top->Populate();
    }

    static browser::NodeRef FirstOf(browser::BrowserContentNode& folder)
    {
        browser::NodeRef first;
        folder.GetFirstChild(first);
        return first;
    }
    void Synchronize(const browser::EntryFilter& filter = {}) { list.Synchronize(FirstOf(*top), sortKey, filter); }

    static std::string NameOf(const browser::ContentViewEntry& entry)
    {
        browser::String name;
        if (!entry.node)
            return ".";
        browser::ContentOf(entry.node)->GetName(name);
        return Utf8(name);
    }
    std::string Text()
    {
        std::string text;
        const browser::ContentViewEntryList::Reader entries(list);
        for (const browser::ContentViewEntry& entry : entries->All()) {
            const std::string name = NameOf(entry);
            text += (text.empty() ? "" : " ") + (entry.IsSelected() ? "[" + name + "]" : name);
        }
        return text;
    }
    void Select(const std::string& name, bool selected = true) { EXPECT_TRUE(list.SetNodeSelected(Child(*top, name), selected)) << name; }

    // Since the last time.
    int Messages()
    {
        vx3::core::DeliverQueuedMessages();
        return std::exchange(messages, 0);
    }

    browser::DirectoryRef top;
    browser::ContentViewEntryList list;
    browser::SortMode sortKey = browser::SortMode::Name;

private:
    int messages = 0;
};

// Files whose names begin with one of the letters that are set: bit 0 is `a`.
inline constexpr browser::EntryFilter ByFirstLetter(uint32_t letters)
{
    return { [](uint32_t wanted, browser::BrowserContentNode& node) {
                browser::String name;
                node.GetName(name);
                return (wanted >> (name.View()[0] - u'a') & 1) != 0;
            },
             letters };
}

} // namespace vx3::tests
