// The verbs. Each answers the exit code of the program. Main thread only.
#pragma once

#include "options.h"
#include "session.h"

namespace vx3::console {

int RunRoots(const Command& command, Session& session);
int RunLs(const Command& command, Session& session);
int RunStat(const Command& command, Session& session);
int RunTree(const Command& command, Session& session);

int RunMkdir(const Command& command, Session& session);
int RunRename(const Command& command, Session& session);
int RunMove(const Command& command, Session& session);
int RunCopy(const Command& command, Session& session);
int RunDelete(const Command& command, Session& session);

int RunPlugins(const Command& command, Session& session);
int RunIcons(const Command& command, Session& session);
int RunPrefs(const Command& command, Session& session);

int RunLib(const Command& command);
// The verbs behind it: these need no session,
int RunLibInfo(const Command& command);
int RunLibLs(const Command& command);
int RunLibCheck(const Command& command);
int RunLibDump(const Command& command);
int RunLibRecover(const Command& command);
// and these open one of their own.
int RunLibCreate(const Command& command);
int RunLibPut(const Command& command);
int RunLibGet(const Command& command);
int RunLibRm(const Command& command);
int RunLibMv(const Command& command);
int RunLibName(const Command& command);
int RunLibPreviewPut(const Command& command);
int RunLibPreviewGet(const Command& command);
int RunLibPreviewLs(const Command& command);
int RunLibFreeze(const Command& command);
int RunLibCompact(const Command& command);

// Draws all icons into a PNG file.
Failure SaveIconSheet(const Session& session, const std::string& file);

int RunScript(Command command);           // opens a session of its own, with windows
int RunSelfcheck(const Command& command); // opens sessions of its own
int RunCompletion(const Command& command);
int RunHelp(const Command& command);
void PrintHelp(Verb verb); // Verb::None: of the whole program
std::string ManualPage();

} // namespace vx3::console
