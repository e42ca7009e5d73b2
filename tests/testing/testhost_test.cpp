// The life of a module under the checks.
#include <gtest/gtest.h>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

const VX3Host* hostOfLinkedModule = nullptr;
int32_t failingAction = 0; // answers 0

int32_t LinkedModule(int32_t action, void* arg1, void*, void*)
{
    if (action == VX3_ACTION_LOAD)
        hostOfLinkedModule = static_cast<const VX3Host*>(arg1);
    if (action == VX3_ACTION_START)
        hostOfLinkedModule->registry->withdraw(1); // allowed here
    return action == failingAction ? 0 : VX3_RESULT_OK;
}

} // namespace

TEST(TestHost, LeadsALinkedModuleThroughTwoLives)
{
    TestHost host({ .calling = Calling::InModules });
    failingAction = 0;
    for (int life = 0; life < 2; ++life) {
        TestModule module(host.Checked());
        module.Use(LinkedModule);
        ASSERT_TRUE(module.Start()) << module.Error();
        hostOfLinkedModule->run->clock();
        module.End();
        EXPECT_EQ(host.ExpectClean(), "");
        hostOfLinkedModule->run->clock();
        EXPECT_EQ(host.ExpectClean(), "run.clock: called after the end\n");
    }
}

TEST(TestHost, EndsAModuleThatRefusedToStart)
{
    TestHost host({ .calling = Calling::InModules });
    for (const int32_t action : { VX3_ACTION_LOAD, VX3_ACTION_START }) {
        failingAction = action;
        TestModule module(host.Checked());
        module.Use(LinkedModule);
        EXPECT_FALSE(module.Start());
        EXPECT_NE(module.Error(), "");
        module.End();
        EXPECT_EQ(host.ExpectClean(), "");
    }
    failingAction = 0;
}

TEST(TestHost, NamesWhatAnUnloadedModuleLeftBehind)
{
    TestHost host({ .calling = Calling::InModules });
    TestModule module(host.Checked());
    ASSERT_TRUE(module.Load(LEAKING_MODULE)) << module.Error();
    EXPECT_TRUE(MappingExists("leakingmodule.so"));
    ASSERT_TRUE(module.Start()) << module.Error();
    void* left = nullptr;
    ASSERT_EQ(module.Send(424242, &left), VX3_RESULT_OK);
    module.End();
    module.Unload();
    EXPECT_FALSE(MappingExists("leakingmodule.so"));
    // The name of the source file lay in the module, which is gone by now.
    EXPECT_EQ(host.ExpectClean(), "leakingmodule.cpp:77: 1 of kind memory block not given back, 48 bytes\n");
    host.PlainTable()->memory->free(left);
}

TEST(TestHost, KeepsConsoleLinesAndTurnsTheClock)
{
    TestHost host({ .files = Files::InMemory });
    const core::Text line("one line");
    host.Table()->console->line(line.Get());
    EXPECT_EQ(host.CollectConsole(), std::vector<std::string>({ "one line" }));
    EXPECT_TRUE(host.CollectConsole().empty());

    const uint32_t before = host.Table()->run->clock();
    host.Clock().SetDate({ 2021, 2, 28, 23, 59, 59 });
    host.Clock().Advance(1500);
    EXPECT_EQ(host.Table()->run->clock() - before, 1500u);
    VX3FileDate date = {};
    host.Table()->run->currentDate(&date);
    EXPECT_EQ(date.month, 3);
    EXPECT_EQ(date.day, 1);
    EXPECT_EQ(date.second, 0);
}

} // namespace vx3::testing
