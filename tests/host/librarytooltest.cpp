// Library files through the published table, where no command line comes to: calls that fail,
// and outcomes of what two do at once.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "core/values.h"
#include "testing/testhost.h"
#include "vx3/browser.h"

using namespace vx3::testing;
using vx3::core::Path;
using vx3::core::Text;

namespace {

using Items = std::map<std::string, std::string>; // data by path

const std::string oldData(5000, 'o');
const std::string newData(70000, 'n');
const Items oldItems = { { "oak", oldData }, { "elm", oldData }, { "yew", oldData } };
const Items changedItems = { { "oak", newData }, { "ash", newData }, { "fir", oldData }, { "yew", oldData } };

// A flush that ends behind the marking of the old names leaves none: items have whole addresses then.
std::string PathInside(const std::string& path)
{
    const std::string address = "preset://shelf.libvx/";
    return path.compare(0, address.size(), address) == 0 ? path.substr(address.size()) : path;
}

class LibraryToolTest : public ::testing::Test
{
protected:
    LibraryToolTest()
        : host({ .calling = Calling::InModules })
        , module(host.Checked())
        , file(host.Folder() + "/shelf.libvx")
    {
        EXPECT_TRUE(module.Load(BROWSER_MODULE)) << module.Error();
        EXPECT_TRUE(module.Start());
        const auto* browser =
            static_cast<const VX3Browser*>(host.PlainTable()->registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof(VX3Browser)));
        tools = browser->tools->libraries;
    }
    ~LibraryToolTest() override
    {
        module.End();
        module.Unload();
        EXPECT_EQ(host.ExpectClean(), "");
    }

    VX3Library* Open(int32_t access, int32_t expected = VX3_LIBRARY_OK)
    {
        VX3Library* library = nullptr;
        Path path(file);
        EXPECT_EQ(tools->open(path.Get(), access, &library), expected);
        return library;
    }
    int32_t Put(VX3Library* library, const std::string& path, const std::string& data)
    {
        Text text(path);
        return tools->putData(library, text.Get(), VX3_LIBRARY_KEEP_TYPE, data.data(), static_cast<int64_t>(data.size()));
    }
    // A library with three items.
    void MakeFile()
    {
        std::filesystem::remove(file);
        std::filesystem::remove(file + ".bak");
        VX3Library* library = nullptr;
        Path path(file);
        Text name("Shelf");
        ASSERT_EQ(tools->create(path.Get(), name.Get(), &library), VX3_LIBRARY_OK);
        ASSERT_EQ(Put(library, "oak", oldData), VX3_LIBRARY_OK);
        ASSERT_EQ(Put(library, "elm", oldData), VX3_LIBRARY_OK);
        ASSERT_EQ(Put(library, "yew", oldData), VX3_LIBRARY_OK);
        ASSERT_EQ(tools->close(library), VX3_LIBRARY_OK);
    }
    // Everything that is in the file; "?" for data that cannot be read.
    Items ReadFile()
    {
        Items items;
        VX3Library* library = Open(VX3_LIBRARY_READ);
        if (!library)
            return items;
        int32_t place = 0;
        for (VX3LibraryItem item = {}; tools->nextItem(library, &place, &item) == VX3_LIBRARY_OK;) {
            void* bytes = nullptr;
            int64_t length = 0;
            const bool isRead = tools->getData(library, &item.path, &bytes, &length) == VX3_LIBRARY_OK;
            items[PathInside(vx3::core::ToUtf8(item.path))] =
                isRead ? std::string(static_cast<char*>(bytes), static_cast<size_t>(length)) : "?";
            host.Table()->memory->free(bytes);
            host.Table()->text->destruct(&item.path);
        }
        EXPECT_EQ(tools->close(library), VX3_LIBRARY_OK);
        return items;
    }

    TestHost host;
    TestModule module;
    const std::string file;
    const VX3LibraryToolFunctions* tools = nullptr;
};

// One session that changes all there is. Answers what failed first.
int32_t ChangeAll(const VX3LibraryToolFunctions& tools, const std::string& file, bool& isOpened)
{
    VX3Library* library = nullptr;
    Path path(file);
    Text oak("oak"), elm("elm"), ash("ash"), fir("fir"), name("Regal");
    int32_t outcome = tools.open(path.Get(), VX3_LIBRARY_CHANGE, &library);
    isOpened = outcome == VX3_LIBRARY_OK;
    if (!isOpened)
        return outcome;
    const int32_t outcomes[] = { tools.putData(library, oak.Get(), 5, newData.data(), static_cast<int64_t>(newData.size())),
                                 tools.putData(library, ash.Get(), 5, newData.data(), static_cast<int64_t>(newData.size())),
                                 tools.moveItem(library, elm.Get(), fir.Get()), tools.setName(library, name.Get()), tools.close(library) };
    for (int32_t each : outcomes)
        outcome = outcome == VX3_LIBRARY_OK ? each : outcome;
    return outcome;
}

std::string NamesOf(const Items& items)
{
    std::string names;
    for (const auto& [path, data] : items)
        names += ", " + path + " with " + std::to_string(data.size());
    return names;
}

// Of a session that failed: what it did not touch is whole, and of what it changed nothing is
// half old, half new. What was being replaced when the last try failed may be
// missing, or be there without its path.
void ExpectNothingMixed(const Items& items, const std::string& where)
{
    EXPECT_TRUE(items.count("yew") && items.at("yew") == oldData) << where << NamesOf(items);
    for (const auto& [path, data] : items)
        EXPECT_TRUE(path.empty() || data == oldData || (data == newData && changedItems.count(path)))
            << where << ": " << path << NamesOf(items);
}

TEST_F(LibraryToolTest, AFailingCallIsToldAndLosesNothing)
{
    struct Row {
        FailClass kind;
        Failing failing;
        std::vector<int32_t> outcomes; // that may be told
    };
    const Row rows[] = {
        { FailClass::Memory, Failing::FromThereOn, { VX3_LIBRARY_NO_MEMORY } },
        { FailClass::Memory,
          Failing::Once,
          { VX3_LIBRARY_NO_MEMORY, VX3_LIBRARY_UNREADABLE, VX3_LIBRARY_NOT_FOUND, VX3_LIBRARY_NOT_WRITTEN, VX3_LIBRARY_BAD_PATH } },
        // Values are stored through files in memory, so these may look like a lack of it.
        { FailClass::Open, Failing::FromThereOn, { VX3_LIBRARY_UNREADABLE, VX3_LIBRARY_IN_USE, VX3_LIBRARY_NO_MEMORY } },
        { FailClass::Read, Failing::FromThereOn, { VX3_LIBRARY_UNREADABLE, VX3_LIBRARY_NOT_WRITTEN, VX3_LIBRARY_NO_MEMORY } },
        { FailClass::Write, Failing::FromThereOn, { VX3_LIBRARY_NOT_WRITTEN, VX3_LIBRARY_NO_MEMORY } },
    };
    for (const Row& row : rows) {
        int64_t failures = 0;
        bool isOver = false;
        for (int64_t nth = 1; !isOver; nth++) {
            MakeFile();
            host.Faults().Fail(row.kind, nth, row.failing);
            bool isOpened = false;
            const int32_t outcome = ChangeAll(*tools, file, isOpened);
            isOver = host.Faults().FailuresOf(row.kind) == 0;
            host.Faults().Clear();
            failures += outcome != VX3_LIBRARY_OK;
            const std::string where = "class " + std::to_string(static_cast<int>(row.kind)) + ", call " + std::to_string(nth) + ", outcome "
                + std::to_string(outcome);
            const bool isExpected = std::find(row.outcomes.begin(), row.outcomes.end(), outcome) != row.outcomes.end();
            EXPECT_TRUE(outcome == VX3_LIBRARY_OK || isExpected) << where;
            const Items items = ReadFile();
            if (outcome == VX3_LIBRARY_OK)
                EXPECT_EQ(items, changedItems) << where;
            else if (!isOpened)
                EXPECT_EQ(items, oldItems) << where;
            else
                ExpectNothingMixed(items, where);
            if (HasFailure())
                return;
        }
        EXPECT_GT(failures, row.kind == FailClass::Memory ? 50 : 1);
    }
}

TEST_F(LibraryToolTest, OneFileIsOpenForChangesOnce)
{
    MakeFile();
    VX3Library* first = Open(VX3_LIBRARY_CHANGE);
    EXPECT_EQ(Open(VX3_LIBRARY_CHANGE, VX3_LIBRARY_IN_USE), nullptr);
    EXPECT_EQ(Put(first, "ash", newData), VX3_LIBRARY_OK);
    VX3Library* reader = Open(VX3_LIBRARY_READ);
    EXPECT_EQ(Put(reader, "ash", newData), VX3_LIBRARY_READ_ONLY);
    EXPECT_EQ(tools->close(reader), VX3_LIBRARY_OK);
    EXPECT_EQ(tools->close(first), VX3_LIBRARY_OK);
    EXPECT_EQ(ReadFile().size(), 4u);
}

TEST_F(LibraryToolTest, ALibraryWithTheAddressOfAnotherIsReadAndNotChanged)
{
    MakeFile();
    const std::string copy = host.Folder() + "/copy.libvx";
    std::filesystem::copy_file(file, copy);
    VX3Library* first = Open(VX3_LIBRARY_CHANGE);
    VX3Library* second = nullptr;
    Path path(copy);
    EXPECT_EQ(tools->open(path.Get(), VX3_LIBRARY_CHANGE, &second), VX3_LIBRARY_NAME_TAKEN);
    ASSERT_EQ(tools->open(path.Get(), VX3_LIBRARY_READ, &second), VX3_LIBRARY_OK);
    Text oak("oak");
    EXPECT_EQ(tools->removeItem(first, oak.Get()), VX3_LIBRARY_OK);
    EXPECT_EQ(tools->countItems(first), 2);
    VX3LibraryItem item = {};
    EXPECT_EQ(tools->findItem(first, oak.Get(), &item), VX3_LIBRARY_NOT_FOUND);
    EXPECT_EQ(tools->findItem(second, oak.Get(), &item), VX3_LIBRARY_OK);
    EXPECT_EQ(item.dataSize, static_cast<int64_t>(oldData.size()));
    host.Table()->text->destruct(&item.path);
    EXPECT_EQ(tools->close(second), VX3_LIBRARY_OK);
    EXPECT_EQ(tools->close(first), VX3_LIBRARY_OK);
    EXPECT_EQ(ReadFile().size(), 2u);
}

TEST_F(LibraryToolTest, AFileThatSomebodyElseHasWrittenIsLeftToThem)
{
    MakeFile();
    VX3Library* library = Open(VX3_LIBRARY_CHANGE);
    std::ofstream(file, std::ios::app) << "more";
    EXPECT_EQ(Put(library, "ash", newData), VX3_LIBRARY_CHANGED);
    EXPECT_EQ(tools->freeze(library), VX3_LIBRARY_CHANGED);
    const auto size = std::filesystem::file_size(file);
    EXPECT_EQ(tools->close(library), VX3_LIBRARY_OK);
    EXPECT_EQ(std::filesystem::file_size(file), size);
    EXPECT_EQ(host.CollectConsole().size(), 2u) << "a line each time";
}

TEST_F(LibraryToolTest, NumbersThatNothingCanHave)
{
    MakeFile();
    VX3Library* library = Open(VX3_LIBRARY_CHANGE);
    Text oak("oak");
    VX3LibraryItem item = {};
    VX3LibraryPreview preview = {};
    int32_t place = -1;
    EXPECT_EQ(tools->nextItem(library, &place, &item), VX3_LIBRARY_NOT_FOUND);
    EXPECT_EQ(tools->putData(library, oak.Get(), 0, "x", int64_t(1) << 31), VX3_LIBRARY_TOO_LARGE);
    EXPECT_EQ(tools->putData(library, oak.Get(), 0, "x", -1), VX3_LIBRARY_TOO_LARGE);
    EXPECT_EQ(tools->putPreview(library, oak.Get(), -1, 0, "x", 1), VX3_LIBRARY_BAD_PATH);
    EXPECT_EQ(tools->putPreview(library, oak.Get(), 0, 0, "x", 1), VX3_LIBRARY_NO_PICTURE);
    EXPECT_EQ(tools->previewAt(library, oak.Get(), -1, &preview), VX3_LIBRARY_NOT_FOUND);
    EXPECT_EQ(tools->close(library), VX3_LIBRARY_OK);
    EXPECT_EQ(tools->close(nullptr), VX3_LIBRARY_OK);
    EXPECT_EQ(ReadFile(), oldItems);
}

} // namespace
