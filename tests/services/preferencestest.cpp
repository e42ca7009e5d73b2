// Settings: what is read back of what was stored, and what other threads see of it.

#include "support/modulefixture.h"

#include "services/preferences.h"
#include "services/preferencesend.h"

#include <cmath>
#include <filesystem>
#include <set>

using namespace browser;
using namespace vx3::tests;
using namespace vx3::testing;

namespace {

class Preferences : public ModuleTest
{
protected:
    explicit Preferences(TestHostOptions options = {})
        : ModuleTest(std::move(options))
    {
        SetPreferenceDefaults();
        ReadPreferences();
    }
    ~Preferences() override { EndPreferences(); }

    VX3Container* Stored() { return testHost.PlainTable()->registry->preferences(browserPreferencesId); }
    void Store(Preference key, int32_t number) { host->container->setInt32(Stored(), int32_t(key), number); }
    void Store(Preference key, const char* text) { host->container->setText(Stored(), int32_t(key), String(text).Value()); }
};

class HostWithoutPreferences : public Preferences
{
protected:
    HostWithoutPreferences()
        : Preferences({ .adjust = [](vx3::core::HostSettings& settings) { settings.configFolder.clear(); } })
    {
    }
};

TEST_F(Preferences, StoredNumbersReadInsideTheirBounds)
{
    const struct {
        Preference key;
        int32_t stored;
        int32_t read;
    } rows[] = {
        { Preference::PreviewWidth, 64, 128 },
        { Preference::PreviewWidth, 2000, 1024 },
        { Preference::PreviewHeight, 127, 128 },
        { Preference::PreviewHeight, 1024, 1024 },
        { Preference::PreviewQuality, 0, 1 },
        { Preference::PreviewQuality, 101, 100 },
        { Preference::FoldersFirst, 7, 1 },
        { Preference::SortKey, INT32_MIN, 0 },
        { Preference::WindowOption28, INT32_MIN, INT32_MIN },
        { Preference::BackgroundTimeLimit, -1, 1 },
    };
    for (const auto& row : rows) {
        Store(row.key, row.stored);
        EXPECT_EQ(GetPreferenceNumber(row.key), row.read) << RowOf(row.key).name << " " << row.stored;
    }
    for (double stored : { -0.5, 1.5, double(NAN) }) {
        host->container->setFloat(Stored(), int32_t(Preference::Zoom), stored);
        EXPECT_EQ(GetPreferenceFloat(Preference::Zoom), stored > 1 ? 1.0 : 0.0) << stored;
    }
    Store(Preference::PreviewWidth, "wide"); // of another type
    EXPECT_EQ(GetPreferenceNumber(Preference::PreviewWidth), 256);
}

TEST_F(Preferences, NothingStoredGivesTheDefaults)
{
    const std::pair<Preference, int32_t> numbers[] = {
        { Preference::WindowWidth, 800 }, { Preference::WindowHeight, 750 },       { Preference::FolderViewMode, 2 },
        { Preference::HitsViewMode, 1 },  { Preference::BackgroundTimeLimit, 30 }, { Preference::FoundOrder, 0 },
        { Preference::PreviewAlways, 0 }, { Preference::WindowOption30, 1 },
    };
    for (auto [key, fallback] : numbers)
        EXPECT_EQ(GetPreferenceNumber(key), fallback) << RowOf(key).name;
    EXPECT_EQ(GetPreferenceFloat(Preference::HitsZoom), 0.25);
    EXPECT_EQ(GetPreferenceFloat(Preference::FirstSplitterBefore), 60);
    EXPECT_EQ(GetPreferenceFloat(Preference::SecondSplitterBehind), 60);
    EXPECT_TRUE(GetPreferenceText(Preference::LastPlace).IsEmpty());
    EXPECT_EQ(host->container->count(Stored()), 0); // reading stores nothing
}

TEST_F(Preferences, MirrorsFollowSettersAndTheNextStart)
{
    const struct {
        Preference key;
        int32_t (*mirror)();
        int32_t other;
    } rows[] = {
        { Preference::BackgroundEnabled, [] { return int32_t(BackgroundEnabled()); }, 0 },
        { Preference::PreviewFromFile, [] { return int32_t(PreviewFromFile()); }, 0 },
        { Preference::PreviewAlways, [] { return int32_t(PreviewAlways()); }, 1 },
        { Preference::FoldersFirst, [] { return int32_t(FoldersFirst()); }, 0 },
        { Preference::BackgroundTimeLimit, BackgroundTimeLimit, 77 },
        { Preference::PreviewWidth, PreviewWidth, 300 },
        { Preference::PreviewHeight, PreviewHeight, 400 },
        { Preference::PreviewQuality, PreviewQuality, 12 },
    };
    for (const auto& row : rows) {
        const auto fallback = int32_t(RowOf(row.key).fallback);
        EXPECT_EQ(row.mirror(), fallback) << RowOf(row.key).name;
        EXPECT_TRUE(SetPreferenceNumber(row.key, row.other));
        EXPECT_EQ(row.mirror(), row.other) << RowOf(row.key).name;
        SetPreferenceDefaults();
        EXPECT_EQ(row.mirror(), fallback) << RowOf(row.key).name;
        ReadPreferences();
        EXPECT_EQ(row.mirror(), row.other) << RowOf(row.key).name;
    }
    EXPECT_TRUE(SetPreferenceNumber(Preference::PreviewWidth, 5));
    EXPECT_EQ(PreviewWidth(), 128);
}

TEST_F(Preferences, NoStartWaitsForTheNetwork)
{
    const std::pair<const char*, const char*> rows[] = {
        { "network:/", "file:/" },    { "network://server/share", "file:/" },     { "file:///network:/", "file:///network:/" },
        { "Network:/", "Network:/" }, { "preset://a.libvx", "preset://a.libvx" }, { "network:", "network:" },
    };
    for (Preference key : { Preference::StartUrl, Preference::LastPlace })
        for (auto [stored, read] : rows) {
            Store(key, stored);
            ReadPreferences();
            EXPECT_EQ(Utf8(GetPreferenceText(key)), read);
        }
    Store(Preference::HomeUrl, "network:/");
    ReadPreferences();
    EXPECT_EQ(Utf8(GetPreferenceText(Preference::HomeUrl)), "network:/");
}

TEST_F(Preferences, TextsForTools)
{
    const struct {
        int32_t key;
        const char* text;
        bool isTaken;
        const char* readBack;
    } rows[] = {
        { 6, "300", true, "300" },          { 6, "127", false, "300" },      { 6, "1025", false, "300" },
        { 6, "1024", true, "1024" },        { 6, "", false, "1024" },        { 6, "12x", false, "1024" },
        { 6, "4294967552", false, "1024" }, { 9, "0", true, "0" },           { 9, "2", false, "0" },
        { 2, "0.5", true, "0.5" },          { 2, "nan", false, "0.5" },      { 2, "1.01", false, "0.5" },
        { 22, "12.25", true, "12.25" },     { 1, "file:/", true, "file:/" }, { 1, "", true, "" },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SetPreferenceText(row.key, String(row.text)), row.isTaken) << row.key << " = " << row.text;
        String text;
        EXPECT_TRUE(GetPreferenceText(row.key, text));
        EXPECT_EQ(Utf8(text), row.readBack) << row.key << " = " << row.text;
    }
    for (int32_t key : { 0, -1, 38, 18, INT32_MAX }) { // 18 is a container
        String text;
        EXPECT_FALSE(GetPreferenceText(key, text)) << key;
        EXPECT_FALSE(SetPreferenceText(key, String("1"))) << key;
    }
}

TEST_F(Preferences, EveryRowIsUsableByItsName)
{
    std::set<std::string> names;
    VX3Preference row = {};
    int32_t count = 0;
    for (; PreferenceAt(count, row); count++) {
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        if (row.type == VX3_VALUE_INT32 || row.type == VX3_VALUE_FLOAT) {
            EXPECT_TRUE(IsInBounds(row, row.fallback)) << row.name;
        }
    }
    EXPECT_EQ(count, 37);
    EXPECT_FALSE(PreferenceAt(-1, row));
}

TEST_F(Preferences, ContainersAreCopied)
{
    BaseContainer state, read;
    EXPECT_FALSE(GetPreferenceContainer(Preference::WindowState, read));
    EXPECT_TRUE(state.SetInt32(5, 6));
    EXPECT_TRUE(SetPreferenceContainer(Preference::WindowState, state));
    EXPECT_TRUE(state.SetInt32(5, 7));
    EXPECT_TRUE(GetPreferenceContainer(Preference::WindowState, read));
    EXPECT_EQ(read.GetInt32(5, 0), 6);
}

TEST_F(Preferences, ASetterWithoutMemoryKeepsValueAndMirror)
{
    EXPECT_TRUE(SetPreferenceNumber(Preference::PreviewWidth, 300));
    host->container->remove(Stored(), int32_t(Preference::PreviewWidth)); // so that setting takes memory
    testHost.Faults().Fail(FailClass::Memory, 1, Failing::FromThereOn);
    EXPECT_FALSE(SetPreferenceNumber(Preference::PreviewWidth, 400));
    testHost.Faults().Clear();
    EXPECT_EQ(PreviewWidth(), 300);
}

TEST_F(HostWithoutPreferences, GivesDefaultsAndKeepsNothing)
{
    ASSERT_EQ(Stored(), nullptr);
    EXPECT_EQ(PreviewQuality(), 90);
    EXPECT_FALSE(SetPreferenceNumber(Preference::PreviewQuality, 10));
    EXPECT_FALSE(SetPreferenceFloat(Preference::Zoom, 1));
    EXPECT_FALSE(SetPreferenceText(Preference::StartUrl, String("file:/")));
    EXPECT_FALSE(SetPreferenceContainer(Preference::WindowState, BaseContainer()));
    EXPECT_EQ(PreviewQuality(), 90);
    EXPECT_EQ(GetPreferenceNumber(Preference::PreviewQuality), 90);
    EXPECT_EQ(GetPreferenceFloat(Preference::Zoom), 0.25);
    EXPECT_TRUE(GetPreferenceText(Preference::StartUrl).IsEmpty());
}

TEST(PreferencesAcrossRuns, AreRead)
{
    const std::string config = MakeTemporaryFolder();
    const TestHostOptions options = { .adjust = [&](vx3::core::HostSettings& settings) { settings.configFolder = config; } };
    for (bool isFirst : { true, false }) {
        TestHost run(options);
        host = run.Table();
        SetPreferenceDefaults();
        ReadPreferences();
        EXPECT_EQ(PreviewHeight(), isFirst ? 256 : 512);
        EXPECT_EQ(Utf8(GetPreferenceText(Preference::StartUrl)), isFirst ? "" : "preset:/");
        EXPECT_TRUE(SetPreferenceNumber(Preference::PreviewHeight, 512));
        EXPECT_TRUE(SetPreferenceText(Preference::StartUrl, String("preset:/")));
        EndPreferences();
        EXPECT_TRUE(run.Core().StorePreferences());
        EXPECT_EQ(run.ExpectClean(), "");
        host = nullptr;
    }
    std::filesystem::remove_all(config);
}

} // namespace
