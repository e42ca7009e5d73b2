// vx3: the browser on the command line.
#include <cstdio>

#include "progressbar.h"
#include "verbs.h"

namespace {

using namespace vx3::console;

int Run(const Command& command)
{
    switch (command.verb) {
    case Verb::Lib: return RunLib(command);
    case Verb::Script: return RunScript(command);
    case Verb::Selfcheck: return RunSelfcheck(command);
    case Verb::Completion: return RunCompletion(command);
    case Verb::Help: return RunHelp(command);
    default: break;
    }
    Session session;
    if (Failure failure = session.Open(command)) {
        Say(failure.sentence);
        return static_cast<int>(failure.exit);
    }
    switch (command.verb) {
    case Verb::Roots: return RunRoots(command, session);
    case Verb::Ls: return RunLs(command, session);
    case Verb::Stat: return RunStat(command, session);
    case Verb::Tree: return RunTree(command, session);
    case Verb::Mkdir: return RunMkdir(command, session);
    case Verb::Rename: return RunRename(command, session);
    case Verb::Move: return RunMove(command, session);
    case Verb::Copy: return RunCopy(command, session);
    case Verb::Delete: return RunDelete(command, session);
    case Verb::Plugins: return RunPlugins(command, session);
    case Verb::Icons: return RunIcons(command, session);
    case Verb::Prefs: return RunPrefs(command, session);
    default: return static_cast<int>(Exit::Usage);
    }
}

int RunWords(const std::vector<std::string>& words)
{
    Command command;
    std::string error = ParseCommand(words, command);
    if (!error.empty()) {
        Say(error + "; vx3 " + (command.verb == Verb::None ? "" : RowOf(command.verb).name + std::string(" ")) + "--help tells more");
        return static_cast<int>(Exit::Usage);
    }
    if (command.Has(Option::Version))
        std::puts("vx3 " VX3_VERSION);
    else if (command.Has(Option::Help))
        PrintHelp(command.verb);
    else
        return Run(command);
    return static_cast<int>(Exit::Done);
}

} // namespace

int main(int count, char** arguments)
{
    CatchInterrupts();
    int code = RunWords(std::vector<std::string>(arguments + 1, arguments + count));
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return code;
    Say("the output could not be written");
    return code ? code : static_cast<int>(Exit::SomeFailed);
}
