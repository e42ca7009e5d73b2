// One application for all tests of this program, on a screen that nobody sees.
#include <gtest/gtest.h>

#include "desktop/qtapplication.h"
#include "desktop/qtlook.h"

int main(int count, char** arguments)
{
    if (!std::getenv("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&count, arguments);
    vx3::desktop::Application application(count, arguments);
    vx3::desktop::SetLook(vx3::desktop::Brightness::Light);
    return RUN_ALL_TESTS();
}
