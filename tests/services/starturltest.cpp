// The start URL survives the preferences, whatever name it holds.

#include "support/modulefixture.h"

#include "host/prefspage.h"
#include "preferencesend.h"
#include "services/preferences.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class StartUrl : public ModuleTest
{
protected:
    StartUrl()
    {
        SetPreferenceDefaults();
        ReadPreferences();
    }
    ~StartUrl() override { EndPreferences(); }
};

TEST_F(StartUrl, HardNamesComeBack)
{
    const std::string names[] = { "/", "/a b#?%:x", "/x/\xFF", "/x/back\\slash", "/x/" + std::string(255, 'n'), "/x/A.png", "/x/a.png" };
    for (const std::string& name : names) {
        BrowserURL given(PathOf(name)), kept;
        ASSERT_TRUE(SetStartUrl(given)) << name;
        ReadPreferences();
        GetStartUrl(kept);
        EXPECT_EQ(NativeOf(kept.GetFileCopy()), name);
        EXPECT_EQ(kept.GetHash(), given.GetHash()) << name;
    }
}

} // namespace
