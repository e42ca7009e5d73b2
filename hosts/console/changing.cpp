// The verbs that change: mkdir, rename, move, copy, delete.
//
// The program looks for conflicts before it calls a node, so that it can say what is in
// the way; whether a thing may be done is the node's answer.
#include <cstdio>
#include <functional>
#include <poll.h>
#include <unistd.h>

#include "places.h"
#include "progressbar.h"
#include "verbs.h"

namespace vx3::console {

namespace {

using Operation = std::function<uint32_t(int32_t mode, VX3ProgressFunction progress, void* user)>;

// One change of one item.
struct Work {
    std::string verb;    // "copy"
    std::string subject; // as the user named it
    Operation run;
    std::string reason;                   // what is known to be in the way, if the node refuses
    uint32_t knownError = VX3_ERROR_NONE; // what the node will say then; asked without doing, it looks at neither names nor the disk
};

Exit ExitOf(uint32_t code)
{
    switch (code) {
    case VX3_ERROR_NONE: return Exit::Done;
    case VX3_ERROR_CANCELLED: return Exit::Cancelled;
    case VX3_ERROR_NAME_CLASH: return Exit::Conflict;
    default: return Exit::Refused;
    }
}

// What a change that did not come to its end leaves behind.
const char* RemainderOf(const std::string& verb)
{
    if (verb == "delete")
        return "what was not reached is still there";
    return verb == "copy" ? "nothing was left behind" : "nothing was changed";
}

Failure FailureOf(const Work& work, uint32_t code, const std::string& what)
{
    std::string name = work.verb + " " + Quoted(work.subject);
    Exit exit = ExitOf(code);
    if (exit == Exit::Cancelled)
        return { exit, name + ": cancelled; " + RemainderOf(work.verb) + " (" + HexText(code) + ")" };
    std::string reason = work.reason.empty() ? "" : ": " + work.reason;
    return { exit, name + ": " + what + reason + " (" + HexText(code) + ")" };
}

Failure Conflict(const std::string& verb, const std::string& subject, const std::string& target)
{
    return { Exit::Conflict, verb + " " + Quoted(subject) + ": " + Quoted(target) + " exists already" };
}

bool IsOnTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

// Walks what would be touched. An interrupt while counting cancels.
uint32_t Count(const Work& work, Amount& amount)
{
    ProgressBar bar("counting", {}, IsOnTerminal());
    uint32_t code = work.run(VX3_MODE_COUNT, ProgressBar::Report, &bar);
    amount = bar.Counted();
    return code;
}

// Asks, counts where somebody looks, and does it.
void Perform(const Command& command, const Work& work, Outcome& outcome)
{
    if (IsInterrupted())
        return outcome.Fail(FailureOf(work, VX3_ERROR_CANCELLED, ""));
    if (uint32_t code = work.run(VX3_MODE_ASK, nullptr, nullptr))
        return outcome.Fail(FailureOf(work, code, "refused"));
    Amount total;
    bool isDry = command.Has(Option::DryRun);
    if (isDry && work.knownError)
        return outcome.Fail(FailureOf(work, work.knownError, "refused"));
    if (isDry || IsOnTerminal())
        if (uint32_t code = Count(work, total))
            return outcome.Fail(FailureOf(work, code, "could not be counted"));
    if (isDry) {
        std::printf("would %s %s: %s\n", work.verb.c_str(), Quoted(work.subject).c_str(), AmountText(total).c_str());
        return outcome.Done();
    }
    uint32_t code = VX3_ERROR_NONE;
    {
        ProgressBar bar(work.verb + " " + work.subject, total, IsOnTerminal());
        code = work.run(VX3_MODE_DO, ProgressBar::Report, &bar);
    }
    if (code)
        return outcome.Fail(FailureOf(work, code, std::string("failed, ") + RemainderOf(work.verb)));
    outcome.Done();
}

// The node of an argument; a failure is said.
NodeHandle FindOrSay(const Session& session, Place& place, Outcome& outcome)
{
    Failure failure;
    NodeHandle node = FindPlace(session, place, failure);
    if (!node)
        outcome.Fail(failure);
    return node;
}

core::Text NativeName(const std::string& bytes)
{
    core::Text name;
    core::SetNativeName(*name.Get(), bytes);
    return name;
}

bool IsName(const Session& session, const core::Text& name)
{
    return session.Host().path->isNameAllowed(name.Get()) != 0;
}

std::string NameReason(const core::Text& name)
{
    return Quoted(core::NativeNameBytes(*name.Get())) + " cannot be a name";
}

std::string ReadOnlyReason(const VX3Browser& browser, const NodeHandle& node, const char* what)
{
    return AttributesOf(browser, node) & VX3_NODE_READONLY ? std::string(what) + " is read-only" : std::string();
}

// A name is an entry of the folder around it: who may not write that folder can take no name away.
std::string FixedNameReason(const VX3Browser& browser, const NodeHandle& node)
{
    NodeHandle folder = ParentOf(browser, node);
    bool isVolume = (AttributesOf(browser, node) & VX3_NODE_VOLUME) != 0;
    return folder && !isVolume ? ReadOnlyReason(browser, folder, "the folder around it") : std::string();
}

void MakeFolder(const Command& command, const Session& session, const std::string& argument, Outcome& outcome)
{
    const VX3Browser& browser = session.Browser();
    Place place(session, argument);
    if (place.NativePath() == "/")
        return outcome.Fail(Conflict("mkdir", argument, argument));
    Place above = place.Parent(session);
    NodeHandle folder = FindOrSay(session, above, outcome);
    if (!folder)
        return;
    core::Text name = NativeName(place.LastName());
    bool canHold = IsHolder(AttributesOf(browser, folder));
    bool isName = IsName(session, name);
    if (canHold && isName && IsTaken(session, folder, name))
        return outcome.Fail(Conflict("mkdir", argument, argument));
    std::string reason = isName ? ReadOnlyReason(browser, folder, "the folder around it") : NameReason(name);
    if (!canHold)
        reason = Quoted(above.Argument()) + " is not a folder";
    Operation run = [&](int32_t mode, VX3ProgressFunction progress, void* user) {
        if (mode == VX3_MODE_COUNT && progress)
            progress(user, mode, 1, 0, 0);
        return browser.nodes->createFolder(folder.Get(), mode, name.Get(), nullptr);
    };
    Perform(command, { "mkdir", argument, run, reason, reason.empty() ? VX3_ERROR_NONE : VX3_ERROR_NEW_FOLDER }, outcome);
}

// One transfer of an item into a folder; an empty name keeps the item's own.
struct Transfer {
    const char* verb;
    NodeHandle folder;
    std::string folderName;
    std::string newName;
};

std::string TransferReason(const Session& session, Place& source, const NodeHandle& node, const Transfer& transfer)
{
    const VX3Browser& browser = session.Browser();
    Url target = UrlOf(browser, transfer.folder);
    std::string from = source.NativePath();
    std::string to = target.NativePath();
    if (!from.empty() && (to + "/").compare(0, from.size() + 1, from + "/") == 0)
        return "the target lies inside of it";
    std::string reason = ReadOnlyReason(browser, transfer.folder, "the target folder");
    bool isMove = std::string(transfer.verb) == "move";
    if (reason.empty() && isMove && AttributesOf(browser, node) & VX3_NODE_VOLUME)
        return "it is a volume";
    if (reason.empty() && isMove)
        reason = ReadOnlyReason(browser, node, "it");
    if (reason.empty() && isMove)
        reason = FixedNameReason(browser, node);
    bool isFar = isMove && !from.empty() && !to.empty() && !session.Host().folder->sameVolume(core::Path(from).Get(), core::Path(to).Get());
    return reason.empty() && isFar ? "the target is on another volume; copy and delete it instead" : reason;
}

Operation TransferOperation(const Session& session, const NodeHandle& node, const Transfer& transfer, const core::Text& name)
{
    const VX3NodeFunctions* nodes = session.Browser().nodes;
    if (std::string(transfer.verb) == "move")
        return [=, &transfer](int32_t mode, VX3ProgressFunction progress, void* user) {
            return nodes->moveInto(transfer.folder.Get(), node.Pass(), mode, progress, user);
        };
    bool isRenamed = !transfer.newName.empty();
    return [=, &transfer, &name](int32_t mode, VX3ProgressFunction progress, void* user) {
        return nodes->copyInto(transfer.folder.Get(), node.Pass(), mode, isRenamed ? name.Get() : nullptr, progress, user, 0);
    };
}

void TransferOne(const Command& command, const Session& session, const std::string& argument, const Transfer& transfer, Outcome& outcome)
{
    Place source(session, argument);
    NodeHandle node = FindOrSay(session, source, outcome);
    if (!node)
        return;
    core::Text name = transfer.newName.empty() ? NameOf(session.Browser(), node) : NativeName(transfer.newName);
    bool isName = IsName(session, name);
    if (isName && IsTaken(session, transfer.folder, name)) {
        std::string slash = transfer.folderName.back() == '/' ? "" : "/";
        std::string target = transfer.folderName + slash + core::NativeNameBytes(*name.Get());
        return outcome.Fail(Conflict(transfer.verb, argument, target));
    }
    Operation run = TransferOperation(session, node, transfer, name);
    std::string reason = isName ? TransferReason(session, source, node, transfer) : NameReason(name);
    uint32_t known = std::string(transfer.verb) == "move" ? VX3_ERROR_MOVE_FAILED : VX3_ERROR_COPY;
    Perform(command, { transfer.verb, argument, run, reason, reason.empty() ? VX3_ERROR_NONE : known }, outcome);
}

// Finds the folder that the last argument means. Of a copy it may be a new name.
bool FindTarget(const Command& command, const Session& session, Transfer& transfer, Outcome& outcome)
{
    const std::string& argument = command.arguments.back();
    Place target(session, argument);
    Failure failure;
    transfer.folder = FindPlace(session, target, failure);
    transfer.folderName = argument;
    if (transfer.folder && IsHolder(AttributesOf(session.Browser(), transfer.folder)))
        return true;
    if (transfer.folder) {
        outcome.Fail({ Exit::Conflict, std::string(transfer.verb) + ": " + Quoted(argument) + " exists already and is not a folder" });
        return false;
    }
    bool mayBeName = std::string(transfer.verb) == "copy" && command.arguments.size() == 2 && argument.back() != '/';
    if (mayBeName && failure.exit == Exit::NotFound) {
        Place above = target.Parent(session);
        Failure ignored;
        transfer.folder = FindPlace(session, above, ignored);
        transfer.folderName = above.Argument();
        transfer.newName = target.LastName();
    }
    if (transfer.folder && IsHolder(AttributesOf(session.Browser(), transfer.folder)))
        return true;
    outcome.Fail(failure);
    return false;
}

int TransferAll(const Command& command, const Session& session, const char* verb)
{
    Outcome outcome;
    Transfer transfer = { verb, {}, {}, {} };
    if (!FindTarget(command, session, transfer, outcome))
        return outcome.Code();
    for (size_t index = 0; index + 1 < command.arguments.size() && !outcome.IsCancelled(); ++index)
        TransferOne(command, session, command.arguments[index], transfer, outcome);
    return outcome.Code();
}

// Asks on the terminal; anything but a yes is a no.
bool UserAgrees(const Command& command, const Work& work)
{
    Amount amount;
    if (Count(work, amount) != VX3_ERROR_NONE)
        return false;
    const char* where = command.Has(Option::Trash) ? "into the trash" : "for good";
    std::fprintf(stderr, "Delete %s %s (%s shown)? [y/N] ", Quoted(work.subject).c_str(), where, AmountText(amount).c_str());
    std::fflush(stderr);
    // Only the wait ends with an interrupt; a read would go on.
    pollfd input = { STDIN_FILENO, POLLIN, 0 };
    char answer[16] = {};
    return poll(&input, 1, -1) > 0 && std::fgets(answer, sizeof answer, stdin) && (answer[0] == 'y' || answer[0] == 'Y');
}

void DeleteOne(const Command& command, const Session& session, const std::string& argument, Outcome& outcome)
{
    const VX3Browser& browser = session.Browser();
    Place place(session, argument);
    NodeHandle node = FindOrSay(session, place, outcome);
    if (!node)
        return;
    bool isVolume = (AttributesOf(browser, node) & VX3_NODE_VOLUME) != 0;
    Operation run = [&](int32_t mode, VX3ProgressFunction progress, void* user) {
        return browser.nodes->deleteContent(node.Get(), mode, progress, user);
    };
    std::string reason = isVolume ? "it is a volume" : ReadOnlyReason(browser, node, "it");
    if (reason.empty())
        reason = FixedNameReason(browser, node);
    Work work = { "delete", argument, run, reason, reason.empty() ? VX3_ERROR_NONE : VX3_ERROR_DELETE };
    bool needsNoAnswer = command.Has(Option::Yes) || command.Has(Option::DryRun) || run(VX3_MODE_ASK, nullptr, nullptr);
    if (!needsNoAnswer && !UserAgrees(command, work))
        return outcome.Fail({ Exit::Cancelled, "delete " + Quoted(argument) + ": left as it is" });
    Perform(command, work, outcome);
}

} // namespace

int RunMkdir(const Command& command, Session& session)
{
    Outcome outcome;
    for (const std::string& argument : command.arguments)
        if (!outcome.IsCancelled())
            MakeFolder(command, session, argument, outcome);
    return outcome.Code();
}

int RunRename(const Command& command, Session& session)
{
    const VX3Browser& browser = session.Browser();
    const std::string& argument = command.arguments[0];
    Outcome outcome;
    Place place(session, argument);
    NodeHandle node = FindOrSay(session, place, outcome);
    if (!node)
        return outcome.Code();
    core::Text name = NativeName(command.arguments[1]);
    NodeHandle folder = ParentOf(browser, node);
    bool isName = IsName(session, name);
    if (isName && folder && IsTaken(session, folder, name)) {
        outcome.Fail(Conflict("rename", argument, command.arguments[1]));
        return outcome.Code();
    }
    std::string reason = isName ? ReadOnlyReason(browser, node, "it") : NameReason(name);
    if (reason.empty())
        reason = FixedNameReason(browser, node);
    Operation run = [&](int32_t mode, VX3ProgressFunction progress, void* user) {
        if (mode == VX3_MODE_COUNT && progress)
            progress(user, mode, 1, 0, 0);
        return browser.nodes->rename(node.Get(), mode, name.Get());
    };
    Perform(command, { "rename", argument, run, reason, reason.empty() ? VX3_ERROR_NONE : VX3_ERROR_RENAME }, outcome);
    return outcome.Code();
}

int RunMove(const Command& command, Session& session)
{
    return TransferAll(command, session, "move");
}

int RunCopy(const Command& command, Session& session)
{
    return TransferAll(command, session, "copy");
}

int RunDelete(const Command& command, Session& session)
{
    bool canAsk = isatty(STDIN_FILENO) && IsOnTerminal();
    if (!canAsk && !command.Has(Option::Yes) && !command.Has(Option::DryRun)) {
        Say("delete: there is no terminal to ask on; give --yes");
        return static_cast<int>(Exit::Usage);
    }
    Outcome outcome;
    for (const std::string& argument : command.arguments)
        if (!outcome.IsCancelled())
            DeleteOne(command, session, argument, outcome);
    return outcome.Code();
}

} // namespace vx3::console
