// From one run of the studio to the next, with the real module.
#include <gtest/gtest.h>

#include <filesystem>

#include <QApplication>
#include <QDockWidget>

#include "core/values.h"
#include "desktop/qtwindow.h"
#include "desktop/studiotexts.h"
#include "desktop/studiowindow.h"

namespace {

using namespace vx3::desktop;

class StudioRestoreTest : public ::testing::Test
{
protected:
    StudioRestoreTest()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vx3studioXXXXXX").string();
        top = mkdtemp(pattern.data());
        std::filesystem::create_directories(top + "/first");
        std::filesystem::create_directories(top + "/second");
        options.module = BROWSER_MODULE;
        options.profile = top + "/profile";
        options.language = "us";
    }
    ~StudioRestoreTest() override
    {
        EndRun();
        std::filesystem::remove_all(top);
    }

    void StartRun(const std::string& place)
    {
        SetLanguage(options.language);
        session = std::make_unique<StudioSession>(options);
        const Failure unopened = session->Open(options);
        ASSERT_FALSE(unopened) << unopened.sentence;
        window = std::make_unique<StudioWindow>(*session);
        window->Restore();
        const Failure failure = window->OpenWindows(place);
        ASSERT_FALSE(failure) << failure.sentence;
        window->show();
        LetGo();
    }
    void EndRun()
    {
        window.reset();
        session.reset();
        LetGo();
    }
    static void LetGo()
    {
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Each window on a line: whether it is docked, its size and, if it stands for itself, its place.
    std::string Describe()
    {
        std::string lines;
        for (Dialog* dialog : session->GetDesk().Windows()) {
            const QWidget& frame = *WindowOf(*dialog)->Frame();
            const bool isDocked = !frame.isWindow();
            lines += isDocked ? "docked" : "at " + std::to_string(frame.pos().x()) + " " + std::to_string(frame.pos().y());
            lines += " size " + std::to_string(dialog->size.width) + "x" + std::to_string(dialog->size.height) + "\n";
        }
        return lines;
    }
    std::string State()
    {
        vx3::core::Text text;
        session->Browser().tools->describeWindow(-1, "state", text.Get());
        return text.Utf8();
    }

    std::string top;
    StudioOptions options;
    std::unique_ptr<StudioSession> session;
    std::unique_ptr<StudioWindow> window;
};

TEST_F(StudioRestoreTest, WindowsComeBackWithSizePlaceAndDock)
{
    StartRun(top + "/first");
    ASSERT_FALSE(session->OpenPlace(top + "/first"));
    ASSERT_FALSE(session->OpenPlace(top + "/second"));
    LetGo();
    window->resize(910, 620);
    for (size_t number : { 1u, 2u }) {
        WindowFrame& frame = *WindowOf(*session->GetDesk().Windows()[number])->Frame();
        frame.resize(500 + 20 * static_cast<int>(number), 400);
        frame.move(60 * static_cast<int>(number), 80);
    }
    LetGo();
    const std::string before = Describe();
    EXPECT_EQ(before.find("docked size "), 0u);
    EXPECT_NE(before.find("at 60 80 size 520x381\nat 120 80 size 540x381\n"), std::string::npos) << before;
    ASSERT_TRUE(window->close());
    EndRun();
    StartRun({});
    EXPECT_EQ(Describe(), before);
}

TEST_F(StudioRestoreTest, APlaceIsShownInTheWindowThatComesBack)
{
    StartRun(top + "/first");
    window->resize(910, 620);
    LetGo();
    const std::string before = Describe();
    ASSERT_TRUE(window->close());
    EndRun();
    StartRun(top + "/second");
    EXPECT_EQ(Describe(), before);
    EXPECT_NE(State().find("/second"), std::string::npos) << State();
    EXPECT_EQ(static_cast<int>(window->OpenWindows(top + "/none").exit), static_cast<int>(Exit::NotFound));
}

TEST_F(StudioRestoreTest, WithNothingToBringBackOneWindowOpens)
{
    StartRun({});
    EXPECT_EQ(session->GetDesk().Windows().size(), 1u);
    for (vx3::gui::Dialog* dialog : session->GetDesk().Windows())
        session->GetDesk().AskAndClose(*dialog);
    ASSERT_TRUE(window->close());
    EndRun();
    StartRun({});
    EXPECT_EQ(session->GetDesk().Windows().size(), 1u);
}

} // namespace
