// Tests that use classes of the module directly, without its entry: the module's table
// is a TestHost's, and each test ends with nothing left behind.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/values.h"
#include "model/browserurl.h"
#include "services/host.h"
#include "testing/testhost.h"

namespace vx3::tests {

class ModuleTest : public ::testing::Test
{
protected:
    explicit ModuleTest(vx3::testing::TestHostOptions options = {})
        : testHost(std::move(options))
    {
        browser::host = testHost.Table();
    }
    ~ModuleTest() override
    {
        EXPECT_EQ(testHost.ExpectClean(), "");
        browser::host = nullptr;
    }

    vx3::testing::TestHost testHost;
};

inline std::string Utf8(const browser::String& text)
{
    return vx3::core::ToUtf8(*text.Value());
}

inline browser::String TextOf(std::string_view utf8)
{
    vx3::core::Text text(utf8);
    return browser::String(browser::String::Of(text.Get()));
}

inline browser::FilePath PathOf(std::string_view nativeBytes)
{
    vx3::core::Path path(nativeBytes);
    return browser::FilePath(browser::FilePath::Of(path.Get()));
}

inline std::string NativeOf(const browser::FilePath& path)
{
    return vx3::core::NativeBytes(*path.Value());
}

} // namespace vx3::tests
