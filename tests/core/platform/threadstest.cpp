#include <atomic>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pthread.h>

#include "core/corehost.h"
#include "core/services.h"
#include "core/threadposix.h"

namespace vx3::core {

namespace {

struct Body {
    std::atomic<bool> hasRun = false;
    std::atomic<bool> isDestructed = false;
    bool breaks = false;
    bool loops = false;
    VX3Thread* thread = nullptr;
    std::string shownName;
};

Body& BodyOf(void* object)
{
    return *static_cast<Body*>(object);
}

const VX3ThreadTable bodyTable = { [](void* object) { BodyOf(object).isDestructed = true; },
                                   [](void* object) { return VX3Bool(BodyOf(object).breaks); },
                                   [](void* object) {
                                       Body& body = BodyOf(object);
                                       char name[16] = {};
                                       pthread_getname_np(pthread_self(), name, sizeof(name));
                                       body.shownName = name;
                                       while (body.loops && !ThreadServices()->shouldStop(body.thread))
                                           ThreadServices()->sleep(1);
                                       body.hasRun = !ThreadServices()->isMainThread();
                                   },
                                   [](void*) { return "Content Browser: BGThread"; } };

TEST(Threads, OfEveryLifeEndClean)
{
    CoreHost host(HostSettings{});
    const VX3ThreadServices& threads = *ThreadServices();
    EXPECT_TRUE(threads.isMainThread());
    struct Case {
        const char* what;
        bool starts, background, loops, breaks;
    };
    for (const Case& row : { Case{ "never started", false, false, false, false }, Case{ "in the foreground", true, false, false, false },
                             Case{ "in the background", true, true, false, false }, Case{ "ended by free", true, true, true, false },
                             Case{ "stopped by itself", true, true, true, true } }) {
        Body body;
        body.loops = row.loops;
        body.breaks = row.breaks;
        body.thread = threads.create(&body, &bodyTable);
        if (row.starts) {
            EXPECT_TRUE(threads.start(body.thread, row.background, VX3_PRIORITY_BACKGROUND)) << row.what;
            EXPECT_FALSE(threads.start(body.thread, 1, VX3_PRIORITY_NORMAL)) << row.what;
        }
        EXPECT_TRUE(row.background || !row.starts || body.hasRun) << row.what;
        if (row.loops && !row.breaks) {
            EXPECT_TRUE(threads.isRunning(body.thread));
        } else {
            threads.wait(body.thread);
            EXPECT_FALSE(threads.isRunning(body.thread)) << row.what;
        }
        EXPECT_FALSE(body.isDestructed);
        threads.free(body.thread);
        EXPECT_EQ(body.hasRun, row.starts) << row.what;
        EXPECT_TRUE(body.isDestructed);
        EXPECT_EQ(body.shownName, row.starts ? "BGThread" : "");
    }
    EXPECT_EQ(host.CountLiveObjects().threads, 0);
}

TEST(Threads, NamesStayApartWhenTheyAreCut)
{
    std::vector<std::string> shown;
    for (const char* name : { "Content Browser: BGThread", "Content Browser: SearchThread", "Content Browser: ItemProgressThread",
                              "ThreadedPresetLoading", "Progress Thread", "anothernamewithoutanycapital" }) {
        std::string cut = ShortThreadName(name);
        EXPECT_LE(cut.size(), 15u);
        for (const std::string& other : shown)
            EXPECT_NE(cut, other);
        shown.push_back(cut);
    }
}

} // namespace

} // namespace vx3::core
