// The verb script: a user without a screen.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "gui/browserscript.h"
#include "headless/temporaryfolder.h"
#include "progressbar.h"
#include "verbs.h"

namespace vx3::console {

namespace {

bool ReadFile(const std::string& name, std::string& content)
{
    std::ifstream file(name, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    content = bytes.str();
    return file.good() && bytes.good();
}

void PrintLine(const std::string& line)
{
    std::fputs(line.c_str(), stdout);
    if (line.empty() || line.back() != '\n')
        std::fputc('\n', stdout);
}

// The last act of a run that went well.
Failure TakeShot(headless::HeadlessGui& gui, const std::string& file)
{
    const std::vector<gui::Dialog*>& windows = gui.GetToolkit().Windows().BackToFront();
    if (windows.empty())
        return { Exit::NotFound, "no window is open for the picture" };
    if (!gui.GetDriver().Shot(*windows.back(), file))
        return { Exit::SomeFailed, "the picture " + Quoted(file) + " could not be written" };
    return {};
}

// What the run has cost, and whether the module kept to the main thread.
bool SayHowItWent(const gui::Desk& desk)
{
    std::string what;
    const double longest = desk.LongestEvent(&what);
    char text[64];
    std::snprintf(text, sizeof text, "longest event: %.1f ms", longest);
    Say(text + (what.empty() ? std::string() : " (" + what + ")"));
    Say("calls from wrong threads: " + std::to_string(desk.ThreadViolations()));
    return desk.ThreadViolations() == 0;
}

int Play(const std::string& file, const std::string& text, const Command& command, Session& session, const std::string& folder)
{
    headless::HeadlessGui& gui = session.Gui();
    const VX3Browser& browser = session.Browser();
    gui.GetDriver().SetWorking([&browser] { return gui::IsBrowserWorking(browser); });
    gui.SetStop(IsInterrupted);
    std::string failed = gui.RunScript(text, gui::ProgramOf(browser, folder), PrintLine);
    gui.GetDriver().SetWorking({});
    if (!failed.empty())
        Say(Shown(file) + ": " + failed);
    Failure failure;
    if (failed.empty() && command.Has(Option::Shot))
        failure = TakeShot(gui, AbsolutePath(command.Value(Option::Shot)));
    if (failure)
        Say(failure.sentence);
    const bool isClean = SayHowItWent(gui.GetDesk());
    if (IsInterrupted())
        return static_cast<int>(Exit::Cancelled);
    return static_cast<int>(!failed.empty() || !isClean ? Exit::SomeFailed : failure.exit);
}

int RunIn(const std::string& folder, const std::string& text, const Command& command)
{
    Session session;
    if (Failure failure = session.OpenWithWindows(command, folder)) {
        Say(failure.sentence);
        return static_cast<int>(failure.exit);
    }
    return Play(command.arguments[0], text, command, session, folder);
}

} // namespace

int RunScript(Command command)
{
    std::string text;
    if (!ReadFile(command.arguments[0], text)) {
        Say("the script " + Quoted(command.arguments[0]) + " cannot be read");
        return static_cast<int>(Exit::NotFound);
    }
    const headless::TemporaryFolder made("vx3script");
    std::error_code failed;
    const std::string folder = command.Has(Option::Folder) ? AbsolutePath(command.Value(Option::Folder)) : made.Path() + "/folder";
    if (made.Path().empty() || (std::filesystem::create_directories(folder, failed), failed)) {
        Say("the folder " + Quoted(folder) + " cannot be made");
        return static_cast<int>(Exit::Refused);
    }
    command.options.emplace(Option::Profile, made.Path() + "/profile");
    command.options.emplace(Option::Lang, "us");
    return RunIn(folder, text, command);
}

} // namespace vx3::console
