// The page of the preference window, driven as a host drives it.

#include "support/modulefixture.h"

#include "core/registry.h"
#include "host/prefspage.h"
#include "services/preferences.h"
#include "services/preferencesend.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class PrefsPage : public ModuleTest
{
protected:
    PrefsPage()
    {
        SetPreferenceDefaults();
        ReadPreferences();
        testHost.Checked().EnterAction(VX3_ACTION_START);
        EXPECT_TRUE(RegisterPrefsPage());
        testHost.Checked().LeaveAction();
        page = vx3::core::RegisteredPages().back();
    }
    ~PrefsPage() override
    {
        vx3::core::TakeOutEverything();
        EndPreferences();
    }

    bool Set(int32_t element, int32_t number)
    {
        BaseContainer values;
        return values.SetInt32(element, number) && page.table->setValue(page.object, element, values.Value());
    }
    bool Set(int32_t element, const char* text)
    {
        BaseContainer values;
        return values.SetText(element, String(text)) && page.table->setValue(page.object, element, values.Value());
    }
    int32_t Shown(int32_t element)
    {
        BaseContainer values;
        EXPECT_TRUE(page.table->getValue(page.object, element, values.Value())) << element;
        return values.GetInt32(element, -1);
    }

    vx3::core::RegisteredPage page;
};

TEST_F(PrefsPage, IsRegistered)
{
    EXPECT_EQ(page.id, 465001634);
    EXPECT_EQ(page.description, "Prefsbrowser");
    EXPECT_EQ(page.sort, 10000070);
}

TEST_F(PrefsPage, ElementsReachTheirSettings)
{
    const struct {
        int32_t element;
        int32_t key;
        int32_t shown; // by default
        int32_t other;
        int32_t refused;
    } rows[] = {
        { 1002, 8, 1, 0, 2 }, { 1003, 10, 1, 0, -1 },      { 1004, 32, 0, 1, 2 },      { 1005, 13, 30, 60, 0 },
        { 1009, 9, 1, 0, 2 }, { 1011, 6, 256, 512, 1025 }, { 1012, 7, 256, 128, 127 }, { 1008, 11, 0, 1, 3 },
    };
    for (const auto& row : rows) {
        const auto key = static_cast<Preference>(row.key);
        EXPECT_EQ(Shown(row.element), row.shown) << row.element;
        EXPECT_TRUE(Set(row.element, row.other)) << row.element;
        EXPECT_EQ(GetPreferenceNumber(key), row.other) << row.element;
        EXPECT_FALSE(Set(row.element, row.refused)) << row.element;
        EXPECT_FALSE(Set(row.element, "1")) << row.element;
        EXPECT_EQ(Shown(row.element), row.other) << row.element;
    }
    EXPECT_FALSE(FoldersFirst()); // mirrors hear of it at once
}

TEST_F(PrefsPage, QualityHasThreeSteps)
{
    const std::pair<int32_t, int32_t> rows[] = { { 1, 0 }, { 70, 0 }, { 71, 1 }, { 90, 1 }, { 91, 2 }, { 100, 2 } };
    for (auto [quality, step] : rows) {
        EXPECT_TRUE(SetPreferenceNumber(Preference::PreviewQuality, quality));
        EXPECT_EQ(Shown(1007), step) << quality;
        EXPECT_TRUE(Set(1007, step)); // as a page does that is closed without a change
        EXPECT_EQ(PreviewQuality(), quality);
    }
    for (int32_t step : { 0, 1, 2 }) {
        EXPECT_TRUE(Set(1007, step));
        EXPECT_EQ(Shown(1007), step);
    }
    EXPECT_FALSE(Set(1007, 3));
    EXPECT_FALSE(Set(1007, -1));
}

TEST_F(PrefsPage, StartUrlIsStoredInItsCanonicalForm)
{
    EXPECT_TRUE(Set(1000, "file:///folder/"));
    BrowserURL url;
    GetStartUrl(url);
    EXPECT_EQ(Utf8(url.GetText()), "file:///folder");
    BaseContainer values;
    EXPECT_TRUE(page.table->getValue(page.object, 1000, values.Value()));
    EXPECT_EQ(Utf8(values.GetText(1000)), "file:///folder");
    EXPECT_FALSE(Set(1000, 1));
}

TEST_F(PrefsPage, OtherElementsAreNotItsOwn)
{
    BaseContainer values;
    for (int32_t element : { 999, 1001, 1006, 1010, 1013, 0, -1 }) {
        EXPECT_FALSE(page.table->getValue(page.object, element, values.Value())) << element;
        EXPECT_FALSE(Set(element, 1)) << element;
    }
}

} // namespace
