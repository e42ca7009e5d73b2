// A grid is drawn while another thread renames what stands in it: every caption is a name
// that the entry has, or has had, and no half of one.

#include <atomic>
#include <set>
#include <sstream>
#include <thread>

#include "panefixture.h"
#include "support/watchdog.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr int files = 12;
constexpr VX3Rectangle everything = { 0, 0, 269, 999 };

vx3::testing::TestHostOptions LightChecks()
{
    vx3::testing::TestHostOptions options = InMemory();
    options.checks = vx3::testing::Checks::Light;
    return options;
}

class PaintStress : public PaneTest
{
protected:
    PaintStress()
        : PaneTest(LightChecks())
    {
        Disk().AddFolder("/p");
        for (int i = 0; i < files; i++)
            Disk().AddFile("/p/" + NameOf(i, 0), "", Day(1));
        shown = Top("/p");
        for (int i = 0; i < files; i++)
            nodes.push_back(Child(*shown, NameOf(i, 0)));
    }
    ~PaintStress() override
    {
        nodes.clear();
        shown = DirectoryRef();
    }

    // One letter again and again, as a small one or as many large ones.
    static std::string NameOf(int file, int round)
    {
        const bool isShort = round % 2 == 0;
        return std::string(isShort ? 5 : 45 + static_cast<size_t>(round % 9), static_cast<char>((isShort ? 'a' : 'A') + file));
    }

    void ExpectWholeNames(const std::string& drawn)
    {
        std::istringstream lines(drawn);
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("text colours", 0) == 0 || line.rfind("text ", 0) != 0)
                continue;
            const std::string caption = line.substr(5, line.rfind(" at ") - 5);
            const char letter = caption[0];
            const std::string wanted = std::islower(letter) ? std::string(5, letter) : std::string(6, letter) + "..";
            ASSERT_EQ(caption, wanted);
            captions++;
            seen.insert(letter);
        }
    }

    DirectoryRef shown;
    std::vector<DirectoryRef> nodes;
    int64_t captions = 0;
    std::set<char> seen;
};

TEST_F(PaintStress, NamesThatChangeAreDrawnWhole)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    Open(shown);
    std::atomic<bool> stop = false;
    std::atomic<int64_t> renames = 0;
    std::thread renamer([&] {
        for (int round = 1; !stop; round++)
            for (int i = 0; i < files; i++)
                renames += nodes[static_cast<size_t>(i)]->Rename(ChangeMode::Do, TextOf(NameOf(i, round))) == Error::none;
    });
    const auto end = std::chrono::steady_clock::now() + StressSeconds();
    for (int frame = 0; std::chrono::steady_clock::now() < end && !HasFatalFailure(); frame++) {
        ExpectWholeNames(gui.Draw(everything));
        if (frame % 16 == 0)
            pane->Refresh();
    }
    stop = true;
    renamer.join();
    EXPECT_GT(renames, 100);
    EXPECT_GT(captions, 1000);
    EXPECT_EQ(seen.size(), size_t{ 2 * files }) << "both names of every file";
    RecordProperty("captions", std::to_string(captions));
    RecordProperty("renames", std::to_string(renames));
}

} // namespace
