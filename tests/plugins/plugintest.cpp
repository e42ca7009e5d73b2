// File types: which plugin answers for a name and for the bytes, and what it says.

#include "support/modulefixture.h"

#include "model/pluginregistry.h"
#include "model/upcalls.h"
#include "plugins/filetypes.h"
#include "plugins/registryorder.h"
#include "services/resources.h"

#include <algorithm>
#include <fstream>
#include <vector>

using namespace browser;
using namespace vx3::tests;
using namespace vx3::testing;

namespace {

constexpr int32_t none = 0;
constexpr int32_t image = 1018021, scene = 1018023, movie = 1018022, sound = 1018114;

const FileType* const typesOfFiles[] = { &imageFiles, &sceneFiles, &movieFiles, &scriptFiles, &soundFiles, &tonicFiles, &layoutFiles };

class FileTypes : public ModuleTest
{
protected:
    FileTypes()
    {
        EXPECT_TRUE(CreatePluginRegistry());
        RegisterAllPlugins();
    }
    ~FileTypes() override
    {
        FreeAllPlugins();
        FreePluginRegistry();
        FreeResources();
    }

    static int32_t Find(BrowserURL& url, PluginTest test)
    {
        BrowserPluginInterface* found = nullptr;
        bool answer = FindPluginForUrl(url, test, &found);
        EXPECT_EQ(answer, found != nullptr);
        return found ? found->GetTypeId(nullptr) : none;
    }
    static int32_t FindQuick(const std::string& urlText)
    {
        BrowserURL url(TextOf(urlText));
        return Find(url, PluginTest::Quick);
    }
    // Both tests of a file with these bytes.
    std::pair<int32_t, int32_t> FindBoth(const std::string& name, std::string_view bytes)
    {
        std::string path = testHost.Folder() + "/" + name;
        std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
        BrowserURL url(PathOf(path));
        int32_t quick = Find(url, PluginTest::Quick);
        return { quick, Find(url, PluginTest::Deep) };
    }
    void LoadTexts() { ASSERT_TRUE(LoadResources(PathOf(MODULE_SOURCE "/browser.so"))); }
};

std::string InUpperCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::toupper(c)); });
    return text;
}

TEST_F(FileTypes, EveryRowIsFoundInEitherCase)
{
    for (const FileType* type : typesOfFiles)
        for (const FileExtension& row : type->extensions) {
            std::string extension = row.extension;
            int32_t expected = extension == "mp2" ? movie : type->typeId; // two types have it, the movies are first
            EXPECT_EQ(FindQuick("preset://lib/name." + extension), expected) << extension;
            EXPECT_EQ(FindQuick("file:///folder/a.b." + InUpperCase(extension)), expected) << extension;
        }
}

TEST_F(FileTypes, TablesAreWhole)
{
    const std::pair<const FileType*, size_t> rows[] = { { &imageFiles, 32 }, { &movieFiles, 35 }, { &soundFiles, 11 },
                                                        { &sceneFiles, 10 }, { &scriptFiles, 1 }, { &tonicFiles, 2 } };
    for (auto [type, count] : rows)
        EXPECT_EQ(type->extensions.size(), count) << type->typeId;
    EXPECT_EQ(std::count_if(movieFiles.extensions.begin(), movieFiles.extensions.end(),
                            [](const FileExtension& row) { return row.extension == std::string("qt"); }),
              2);
}

TEST_F(FileTypes, NamesThatNoTypeKnows)
{
    for (const char* text :
         { "", "tif", "file:/", "file:///a.tif/b", "file:///a.", "file:///a.tif.", "file:///a.ti", "file:///a.tiffs",
           "file:///a.tif\xc3\xa9", "file:///a.tiffffffffffffff", "file:///a.tifffffffffffffff", "file:///a.tiffffffffffffffffff" })
        EXPECT_EQ(FindQuick(text), none) << text;
    EXPECT_EQ(FindQuick(".tif"), image);
    EXPECT_EQ(FindQuick("file:///a.tif/"), image); // the slash behind is dropped
}

// The quick test runs for every file of every listing.
TEST_F(FileTypes, QuickTestTakesNoMemoryAndOpensNothing)
{
    BrowserURL url(TextOf("file:///folder/name.unknown"));
    testHost.Faults().Fail(FailClass::Memory, 1, Failing::FromThereOn);
    testHost.Faults().Fail(FailClass::Open, 1, Failing::FromThereOn);
    EXPECT_FALSE(FindPluginForUrl(url, PluginTest::Quick, nullptr));
    EXPECT_EQ(testHost.Faults().CallsOf(FailClass::Memory), 0);
    EXPECT_EQ(testHost.Faults().CallsOf(FailClass::Open), 0);
    testHost.Faults().Clear();
}

TEST_F(FileTypes, BytesDecideInTheDeepTest)
{
    using namespace std::literals;
    constexpr std::string_view png = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\10\2\0\0\0"sv;
    constexpr std::string_view vrml = "#VRML V2.0 utf8\n"sv;
    const struct {
        const char* name;
        std::string_view bytes;
        int32_t quick;
        int32_t deep;
    } rows[] = {
        { "text.tif", "only words, and no picture", image, none },
        { "empty.png", "", image, none },
        { "picture.png", png, image, image },
        { "picture.mp3", png, sound, image },
        { "picture", png, none, image },
        { "scene.wrl", vrml, scene, scene },
        { "scene.dat", vrml, none, scene },
        { "part.vwvx", vrml, none, none },
        { "PART.ACVX", vrml, none, none },
    };
    for (const auto& row : rows) {
        auto [quick, deep] = FindBoth(row.name, row.bytes);
        EXPECT_EQ(quick, row.quick) << row.name;
        EXPECT_EQ(deep, row.deep) << row.name;
    }
}

TEST_F(FileTypes, FilesThatCannotBeReadHaveNoTypeInTheDeepTest)
{
    BrowserURL missing(PathOf(testHost.Folder() + "/missing.png"));
    EXPECT_EQ(Find(missing, PluginTest::Deep), none);
    BrowserURL nowhere(TextOf("preset://lib/name.png"));
    EXPECT_EQ(Find(nowhere, PluginTest::Deep), none);
}

TEST_F(FileTypes, PluginsStandInTheirOrder)
{
    const struct {
        int32_t id;
        bool matches;
        std::string name;
    } rows[] = {
        { image, true, "Images" },     { scene, true, "3D Scenes" },     { movie, true, "Movies" }, { 1018026, false, "Unknown Files" },
        { 1018027, false, "Folders" }, { 1018762, true, "Scripts" },     { sound, true, "Sounds" }, { 1018115, true, "Tonic Files" },
        { 1018116, true, "Layouts" },  { 1018024, false, "Categories" },
    };
    LoadTexts();
    ASSERT_EQ(GetPluginCount(), int32_t(std::size(rows)));
    for (int32_t i = 0; i < GetPluginCount(); i++) {
        BrowserPluginInterface* plugin = GetPluginByIndex(i);
        String name;
        EXPECT_EQ(plugin->GetTypeId(&name), rows[i].id);
        EXPECT_EQ(Utf8(name), rows[i].name);
        EXPECT_EQ(DoesMatchFiles(plugin), rows[i].matches) << rows[i].name;
        EXPECT_EQ(FindPluginById(rows[i].id), plugin);
    }
    EXPECT_EQ(GetPluginByIndex(GetPluginCount()), nullptr);
    EXPECT_EQ(FindPluginById(1018760), nullptr);
    EXPECT_EQ(knownPlugins.folder, FindPluginById(1018027));
    EXPECT_EQ(knownPlugins.unknownFile, FindPluginById(1018026));
    EXPECT_EQ(knownPlugins.category, FindPluginById(1018024));
}

TEST_F(FileTypes, NamesOfTypes)
{
    LoadTexts();
    const struct {
        const char* url;
        int32_t type;
        std::string general;
        std::string specific;
    } rows[] = {
        { "preset://l/a.JPG", image, "Image", "JPEG Image" },
        { "preset://l/a.b3d", image, "Image", "B3D Image" },
        { "preset://l/a.none", image, "Image", "Image" },
        { "preset://l/a.vrm", scene, "3D Scene", "VRML Scene" },
        { "preset://l/a.m4v", movie, "Movie", "Movie" },
        { "preset://l/a.mp2", sound, "Sound", "MP2 Sound" },
        { "preset://l/a.xyz", 1018026, "Unknown File", "Unknown File" },
        { "preset://l/a.tif", 1018027, "Folder", "Folder" },
    };
    for (const auto& row : rows) {
        BrowserPluginInterface* plugin = FindPluginById(row.type);
        BrowserURL url(TextOf(row.url));
        String general, specific;
        plugin->GetTypeName(general, {}, &url, TypeDetail::General);
        plugin->GetTypeName(specific, {}, &url, TypeDetail::Specific);
        EXPECT_EQ(Utf8(general), row.general) << row.url;
        EXPECT_EQ(Utf8(specific), row.specific) << row.url;
    }
}

// One for each row of the table; every number of every table has a text.
TEST_F(FileTypes, AllNamesOfTypes)
{
    LoadTexts();
    for (int32_t i = 0; i < GetPluginCount(); i++) {
        BrowserPluginInterface* plugin = GetPluginByIndex(i);
        Array<String> general, specific;
        ASSERT_TRUE(plugin->GetTypeNames(TypeDetail::General, general));
        ASSERT_TRUE(plugin->GetTypeNames(TypeDetail::Specific, specific));
        EXPECT_EQ(general.Count(), 1u);
        for (const FileType* type : typesOfFiles)
            if (type->typeId == plugin->GetTypeId(nullptr)) {
                EXPECT_EQ(specific.Count(), type->extensions.size());
            }
        for (const String& name : specific)
            EXPECT_FALSE(name.IsEmpty()) << plugin->GetTypeId(nullptr);
    }
}

TEST_F(FileTypes, EachTypeAsksForItsIcon)
{
    static std::vector<int32_t> asked;
    asked.clear();
    upcalls.makeIcon = [](Icon number, int32_t size) -> Preview* {
        asked.push_back(size == 32 ? int32_t(number) : -1);
        return nullptr;
    };
    BrowserURL url;
    for (int32_t i = 0; i < GetPluginCount(); i++)
        (void)GetPluginByIndex(i)->GetTypeIcon(url, 32);
    upcalls.makeIcon = nullptr;
    EXPECT_EQ(asked, (std::vector<int32_t>{ 10, 9, 11, 8, 3, 18, 24, 25, 26, 3 }));
}

// A plugin without memory is left out; the others keep their order, and nothing leaks.
TEST_F(FileTypes, RegisterWhatMemoryAllows)
{
    const int32_t all = GetPluginCount();
    for (Failing failing : { Failing::Once, Failing::FromThereOn }) {
        int64_t runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, failing, [&](int64_t) {
            FreeAllPlugins();
            EXPECT_EQ(GetPluginCount(), 0);
            EXPECT_EQ(knownPlugins.folder, nullptr);
            RegisterAllPlugins();
            bool failed = testHost.Faults().FailuresOf(FailClass::Memory) > 0;
            EXPECT_EQ(GetPluginCount() < all, failed);
            EXPECT_EQ(knownPlugins.folder, FindPluginById(1018027));
            EXPECT_EQ(knownPlugins.category, FindPluginById(1018024));
        });
        EXPECT_GE(runs, all);
    }
}

} // namespace
