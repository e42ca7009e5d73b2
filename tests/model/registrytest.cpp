// The order of plugins, and who is asked by URL and by bytes.

#include "support/modulefixture.h"

#include <fstream>

#include "model/pluginregistry.h"

using namespace browser;
using namespace vx3::tests;

namespace {

// Claims an extension by URL and a first byte by header.
class ProbePlugin final : public BrowserPluginInterface
{
public:
    ProbePlugin(int32_t newId, const char* newExtension, char newByte)
        : id(newId)
        , extension(newExtension)
        , byte(newByte)
    {
    }
    int32_t GetTypeId(String*) override { return id; }
    bool Identify(BrowserURL& url, IdentifyHeader header) override
    {
        longest = std::max(longest, header.length);
        if (header.bytes)
            return header.length > 0 && *static_cast<const char*>(header.bytes) == byte;
        String found;
        url.GetExtension(found);
        return Utf8(found) == extension;
    }
    void GetTypeName(String& out, ContentRef, BrowserURL*, TypeDetail) override { out = TextOf(extension); }
    Preview* GetTypeIcon(BrowserURL&, int32_t) override { return nullptr; }
    bool GetTypeNames(TypeDetail, Array<String>&) override { return true; }

    const int32_t id;
    const std::string extension;
    const char byte;
    int32_t longest = 0;
};

class Registry : public ModuleTest
{
protected:
    Registry()
    {
        EXPECT_TRUE(CreatePluginRegistry());
        EXPECT_TRUE(RegisterPlugin(&image, MatchFiles::Yes));
        EXPECT_TRUE(RegisterPlugin(&silent, MatchFiles::No));
        EXPECT_TRUE(RegisterPlugin(&sound, MatchFiles::Yes));
    }
    ~Registry() override { FreePluginRegistry(); }

    BrowserURL UrlOfFile(const std::string& name, const std::string& bytes)
    {
        const std::string path = testHost.Folder() + "/" + name;
        std::ofstream(path) << bytes;
        return BrowserURL(PathOf(path));
    }
    static BrowserPluginInterface* Find(BrowserURL url, PluginTest test)
    {
        BrowserPluginInterface* found = nullptr;
        const bool any = FindPluginForUrl(url, test, &found);
        EXPECT_EQ(any, found != nullptr);
        return found;
    }

    ProbePlugin image{ 1, "tif", 'I' }, silent{ 2, "wav", 'S' }, sound{ 3, "wav", 'S' }, late{ 4, "tif", 'L' };
};

TEST_F(Registry, TheExtensionPicksAndTheBytesDecide)
{
    EXPECT_EQ(Find(UrlOfFile("a.tif", "Image"), PluginTest::Deep), &image);
    EXPECT_EQ(Find(UrlOfFile("b.tif", "Sound"), PluginTest::Quick), &image);
    EXPECT_EQ(Find(UrlOfFile("b.tif", "Sound"), PluginTest::Deep), &sound) << "a wrong extension does not matter in a deep test";
    EXPECT_EQ(Find(UrlOfFile("c.tif", "text"), PluginTest::Deep), nullptr);
    EXPECT_EQ(Find(UrlOfFile("d.tif", ""), PluginTest::Deep), nullptr) << "an empty file has no bytes to decide by";
    EXPECT_EQ(Find(BrowserURL("preset://x/a.tif"), PluginTest::Quick), &image);
    EXPECT_EQ(Find(BrowserURL("preset://x/a.tif"), PluginTest::Deep), nullptr);
    EXPECT_EQ(Find(BrowserURL(PathOf("/no/such/file.tif")), PluginTest::Deep), nullptr);
    EXPECT_EQ(Find(UrlOfFile("e.wav", std::string(2000, 'I')), PluginTest::Deep), &image);
    EXPECT_EQ(sound.longest, IDENTIFY_HEADER_BYTES);
}

TEST_F(Registry, KeepsItsOrderThroughChanges)
{
    ASSERT_TRUE(RegisterPlugin(&late, MatchFiles::Yes));
    EXPECT_EQ(Find(BrowserURL("preset://x/a.tif"), PluginTest::Quick), &image) << "a later plugin stands behind";
    EXPECT_EQ(GetPluginByIndex(GetPluginCount()), nullptr);
    EXPECT_EQ(GetPluginByIndex(-1), nullptr);
    EXPECT_EQ(FindPluginById(3), &sound);
    EXPECT_EQ(FindPluginById(99), nullptr);
    UnregisterPlugin(&image);
    EXPECT_EQ(GetPluginByIndex(0), &silent);
    EXPECT_EQ(Find(BrowserURL("preset://x/a.tif"), PluginTest::Quick), &late);
    EXPECT_FALSE(RegisterPlugin(nullptr, MatchFiles::Yes));
    EXPECT_FALSE(RegisterPlugin(&late, MatchFiles::Yes)) << "twice";
}

} // namespace
