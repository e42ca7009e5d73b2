// The main window of the studio, with the real module on a profile of its own.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>

#include "core/registry.h"
#include "core/values.h"
#include "desktop/qtwindow.h"
#include "desktop/studioconsole.h"
#include "desktop/studiopreferences.h"
#include "desktop/studiosession.h"
#include "desktop/studiotexts.h"
#include "desktop/studiowindow.h"

namespace {

using namespace vx3::desktop;

constexpr int32_t folderUp = 10043;

// One run of the program after the other on the same profile.
class StudioWindowTest : public ::testing::Test
{
protected:
    StudioWindowTest()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vx3studioXXXXXX").string();
        top = mkdtemp(pattern.data());
        std::filesystem::create_directories(top + "/content/models");
        options.module = BROWSER_MODULE;
        options.profile = top + "/profile";
        options.language = "us";
        Start();
    }
    ~StudioWindowTest() override
    {
        End();
        std::filesystem::remove_all(top);
    }

    void Start()
    {
        SetLanguage(options.language);
        session = std::make_unique<StudioSession>(options);
        const Failure failure = session->Open(options);
        ASSERT_FALSE(failure) << failure.sentence;
        window = std::make_unique<StudioWindow>(*session);
        window->Restore();
        ASSERT_FALSE(session->OpenPlace(top + "/content"));
        window->show();
        LetGo();
    }
    void End()
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

    std::vector<Dialog*> Windows() { return session->GetDesk().Windows(); }
    QWidget& FrameOf(Dialog& dialog) { return *WindowOf(dialog)->Frame(); }
    QDockWidget* DockOf(Dialog& dialog) { return dynamic_cast<QDockWidget*>(FrameOf(dialog).parentWidget()); }
    // A row of the main menu by its place, as it is when the menu is open.
    QAction* Row(const QString& menu, const QString& text)
    {
        for (QAction* entry : window->menuBar()->actions()) {
            if (entry->text().remove(QLatin1Char('&')) != menu)
                continue;
            QMenu* opened = entry->menu<QMenu*>();
            Q_EMIT opened->aboutToShow();
            return RowOf(*opened, text);
        }
        return nullptr;
    }
    static QAction* RowOf(QMenu& menu, const QString& text)
    {
        for (QAction* row : menu.actions()) {
            if (row->text().remove(QLatin1Char('&')) == text)
                return row;
            if (QAction* found = row->menu<QMenu*>() ? RowOf(*row->menu<QMenu*>(), text) : nullptr)
                return found;
        }
        return nullptr;
    }
    QWidget* Hint() { return window->centralWidget(); }

    std::string top;
    StudioOptions options;
    std::unique_ptr<StudioSession> session;
    std::unique_ptr<StudioWindow> window;
};

TEST_F(StudioWindowTest, TheFirstWindowIsDockedAndTheNextStandsForItself)
{
    ASSERT_EQ(Windows().size(), 1u);
    EXPECT_TRUE(DockOf(*Windows()[0]));
    EXPECT_TRUE(Hint()->isHidden());
    Row(QStringLiteral("File"), QStringLiteral("New Content Browser"))->trigger();
    LetGo();
    ASSERT_EQ(Windows().size(), 2u);
    EXPECT_TRUE(FrameOf(*Windows()[1]).isWindow());
    EXPECT_TRUE(FrameOf(*Windows()[1]).isVisible());
}

TEST_F(StudioWindowTest, AWindowIsTakenOutOfItsDockAndPutBackWithAllInIt)
{
    Dialog& dialog = *Windows()[0];
    const QSize docked = FrameOf(dialog).size();
    Row(QStringLiteral("Window"), QStringLiteral("Docked"))->trigger();
    LetGo();
    EXPECT_TRUE(FrameOf(dialog).isWindow());
    EXPECT_TRUE(FrameOf(dialog).isVisible());
    EXPECT_EQ(FrameOf(dialog).size(), docked);
    EXPECT_FALSE(Hint()->isHidden());
    FrameOf(dialog).resize(500, 400);
    LetGo();
    EXPECT_EQ(dialog.size.width, 500) << "the module's window goes with its frame";
    Row(QStringLiteral("Window"), QStringLiteral("Docked"))->trigger();
    LetGo();
    ASSERT_TRUE(DockOf(dialog));
    EXPECT_EQ(dialog.size.width, FrameOf(dialog).width());
    EXPECT_GT(dialog.size.width, 500);
    EXPECT_TRUE(Hint()->isHidden());
}

TEST_F(StudioWindowTest, ADockThatIsClosedLeavesAButtonForTheNext)
{
    DockOf(*Windows()[0])->close();
    LetGo();
    EXPECT_TRUE(Windows().empty());
    EXPECT_FALSE(Hint()->isHidden());
    QWidget* focus = window->focusWidget();
    EXPECT_TRUE(!focus || QApplication::allWidgets().contains(focus)) << "what has gone has no focus";
    Hint()->findChild<QPushButton*>()->click();
    LetGo();
    ASSERT_EQ(Windows().size(), 1u);
    EXPECT_TRUE(DockOf(*Windows()[0]));
}

TEST_F(StudioWindowTest, ClosingItClosesAllWindowsAndTheNextRunLooksTheSame)
{
    Row(QStringLiteral("Window"), QStringLiteral("Console"))->trigger();
    window->resize(900, 610);
    LetGo();
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(Windows().empty());
    End();
    Start();
    EXPECT_EQ(window->size(), QSize(900, 610));
    EXPECT_TRUE(window->findChild<StudioConsole*>()->isVisible());
    EXPECT_TRUE(DockOf(*Windows()[0]));
    Row(QStringLiteral("Window"), QStringLiteral("Docked"))->trigger();
    window->close();
    End();
    Start();
    EXPECT_TRUE(FrameOf(*Windows()[0]).isWindow()) << "as it was when the last run ended";
}

TEST_F(StudioWindowTest, CommandsHaveTheNamesAndStatesOfTheMoment)
{
    const QString module = QStringLiteral("Content Browser");
    QAction* up = Row(module, QStringLiteral("Up One Level"));
    ASSERT_TRUE(up);
    EXPECT_TRUE(up->isEnabled());
    EXPECT_FALSE(Row(module, QStringLiteral("Back"))->isEnabled());
    up->trigger();
    LetGo();
    EXPECT_TRUE(Row(module, QStringLiteral("Back"))->isEnabled());
    QAction* images = Row(module, QStringLiteral("Show Images"));
    EXPECT_TRUE(images->isChecked());
    images->trigger();
    EXPECT_FALSE(Row(module, QStringLiteral("Show Images"))->isChecked());
    DockOf(*Windows()[0])->close();
    LetGo();
    EXPECT_FALSE(Row(module, QStringLiteral("Up One Level"))->isEnabled()) << "there is no window that it could go up in";
}

TEST_F(StudioWindowTest, TheEditMenuServesTheModuleAndTheFieldWithTheFocus)
{
    QAction* all = Row(QStringLiteral("Edit"), QStringLiteral("Select All"));
    ASSERT_TRUE(all);
    EXPECT_EQ(all->shortcut(), QKeySequence(QKeySequence::SelectAll));
    QLineEdit field(QStringLiteral("text"), window.get());
    field.show();
    field.setFocus();
    LetGo();
    field.deselect();
    all->trigger();
    EXPECT_EQ(field.selectedText(), QStringLiteral("text"));
}

TEST_F(StudioWindowTest, PreferencesShowWhatTheModuleHasAndHandOverWhatIsChanged)
{
    const auto read = [this](int32_t key) {
        vx3::core::Text value;
        session->Browser().tools->getPreference(key, value.Get());
        return value.Utf8();
    };
    Row(QStringLiteral("Edit"), QStringLiteral("Preferences…"))->trigger();
    LetGo();
    auto* preferences = window->findChild<StudioPreferences*>();
    ASSERT_TRUE(preferences);
    auto* seconds = preferences->findChild<QSpinBox*>();
    ASSERT_TRUE(seconds);
    const int before = seconds->value();
    const std::string all = [&] {
        std::string values;
        for (int32_t key = 0; key < 64; ++key)
            values += read(key) + ",";
        return values;
    }();
    seconds->setValue(before + 7);
    EXPECT_NE(all.find(std::to_string(before)), std::string::npos);
    std::string changed;
    for (int32_t key = 0; key < 64; ++key)
        changed += read(key) + ",";
    EXPECT_NE(changed.find(std::to_string(before + 7)), std::string::npos);
    for (QCheckBox* box : preferences->findChildren<QCheckBox*>())
        box->click();
    preferences->close();
    LetGo();
    EXPECT_FALSE(window->findChild<StudioPreferences*>());
    EXPECT_FALSE(StudioPreferences::HasPage(folderUp));
}

TEST_F(StudioWindowTest, LinesOfAnyThreadComeToTheConsoleInTheirOrder)
{
    std::thread writer([this] {
        for (int line = 0; line < 300; ++line)
            session->Console().Add("line " + std::to_string(line));
    });
    writer.join();
    LetGo();
    const QString text = window->findChild<StudioConsole*>()->findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_EQ(text.count(QStringLiteral("line ")), 300);
    EXPECT_LT(text.indexOf(QStringLiteral("line 41\n")), text.indexOf(QStringLiteral("line 42\n")));
}

TEST_F(StudioWindowTest, TextsAreThereInBothLanguages)
{
    for (int word = 0; word <= static_cast<int>(Word::Close); ++word) {
        SetLanguage("us");
        const QString english = Say(static_cast<Word>(word));
        SetLanguage("de");
        const QString german = Say(static_cast<Word>(word));
        EXPECT_FALSE(english.isEmpty()) << word;
        EXPECT_FALSE(german.isEmpty()) << word;
        EXPECT_EQ(english.count(QLatin1Char('%')), german.count(QLatin1Char('%'))) << word;
    }
}

} // namespace
