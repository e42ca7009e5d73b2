// The verbs that list: roots, ls, stat, tree.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <memory>

#include "entries.h"
#include "places.h"
#include "progressbar.h"
#include "verbs.h"

namespace vx3::console {

namespace {

constexpr int32_t deepestLevel = 512;

struct OrderRow {
    const char* name;
    int32_t order;
};

constexpr OrderRow orderTable[] = {
    { "name", VX3_SORT_NAME }, { "modified", VX3_SORT_MODIFIED }, { "created", VX3_SORT_CREATED },
    { "size", VX3_SORT_SIZE }, { "type", VX3_SORT_TYPE },         { "none", VX3_SORT_NONE },
};

int32_t OrderOf(const Command& command)
{
    std::string name = command.Value(Option::Sort, orderTable[0].name);
    for (const OrderRow& row : orderTable)
        if (name == row.name)
            return row.order;
    return VX3_SORT_NAME;
}

Failure Interrupted()
{
    return { Exit::Cancelled, "cancelled" };
}

// Where entries go: the document of --json, or lines for people.
class EntryOutput
{
public:
    explicit EntryOutput(const Command& command)
    {
        if (command.Has(Option::Json))
            json = std::make_unique<JsonWriter>(stdout);
    }

    bool IsJson() const { return json != nullptr; }
    void Write(const Entry& entry) { WriteEntry(*json, entry); }
    void Table(const std::vector<Entry>& entries)
    {
        if (!json)
            return PrintTable(entries);
        for (const Entry& entry : entries)
            Write(entry);
    }
    // A line between two places, for people.
    void Separate()
    {
        if (!json && wasWritten)
            std::putchar('\n');
        wasWritten = true;
    }

private:
    std::unique_ptr<JsonWriter> json;
    bool wasWritten = false;
};

std::vector<std::string> PlacesOf(const Command& command)
{
    return command.arguments.empty() ? std::vector<std::string>{ "." } : command.arguments;
}

void ListPlace(const Command& command, const Session& session, const std::string& argument, EntryOutput& output, Outcome& outcome)
{
    const VX3Browser& browser = session.Browser();
    Place place(session, argument);
    Failure failure;
    NodeHandle node = FindPlace(session, place, failure);
    if (!node)
        return outcome.Fail(failure);
    bool isHolder = IsHolder(AttributesOf(browser, node));
    std::vector<NodeHandle> nodes = { node };
    if (isHolder)
        nodes = SortedChildrenOf(browser, node, OrderOf(command), command.Has(Option::Reverse));
    if (isHolder && nodes.empty())
        failure = CheckReadable(session, place.Address());
    if (failure)
        return outcome.Fail(failure);
    std::vector<Entry> entries;
    for (const NodeHandle& child : nodes) {
        if (IsInterrupted())
            return outcome.Fail(Interrupted());
        entries.push_back(ReadEntry(session, child, TypeTest::ByName));
    }
    output.Separate();
    if (command.arguments.size() > 1 && isHolder && !output.IsJson())
        std::printf("%s:\n", Shown(argument).c_str());
    output.Table(entries);
    outcome.Done();
}

// Draws a folder and all below it.
class TreeDrawing
{
public:
    TreeDrawing(const Command& newCommand, const Session& newSession, EntryOutput& newOutput, Outcome& newOutcome)
        : command(newCommand)
        , session(newSession)
        , output(newOutput)
        , outcome(newOutcome)
        , wanted(std::stoi(newCommand.Value(Option::Depth, std::to_string(INT_MAX))))
        , withColour(WantsColour())
    {
    }

    void Draw(const NodeHandle& top)
    {
        NodeHandle computer = RootOf(session.Browser(), RootComputer);
        startsAtComputer = computer.Get() == top.Get();
        if (startsAtComputer)
            NoteVolumes(computer);
        DrawNode(top, "", "", 0);
        std::fflush(stdout);
        if (!outcome.IsCancelled())
            std::fprintf(stderr, "%lld folders, %lld files\n", static_cast<long long>(folders), static_cast<long long>(files));
    }

private:
    void NoteVolumes(const NodeHandle& computer)
    {
        for (const NodeHandle& volume : SortedChildrenOf(session.Browser(), computer, VX3_SORT_NONE, false))
            volumes.push_back(UrlOf(session.Browser(), volume));
    }

    // A mount hangs below the computer and inside the volume on which it is mounted.
    bool IsSecondVolume(const NodeHandle& node, uint32_t attributes)
    {
        if (!startsAtComputer || (attributes & VX3_NODE_VOLUME))
            return false;
        Url url = UrlOf(session.Browser(), node);
        return std::any_of(volumes.begin(), volumes.end(), [&](Url& volume) { return volume.Equals(url); });
    }

    void DrawNode(const NodeHandle& node, const std::string& branch, const std::string& indent, int32_t level)
    {
        Entry entry = ReadEntry(session, node, TypeTest::ByName);
        bool isHolder = IsHolder(entry.attributes);
        ++(isHolder ? folders : files);
        entry.depth = level;
        if (output.IsJson())
            output.Write(entry);
        else
            std::printf("%s%s\n", branch.c_str(), ColouredName(entry, withColour).c_str());
        bool isGone = (entry.attributes & VX3_NODE_REMOVED) != 0;
        if (!isHolder || isGone || IsSecondVolume(node, entry.attributes))
            return;
        if (level < std::min(wanted, deepestLevel))
            DrawChildren(node, indent, level + 1);
        else if (level < wanted && !SortedChildrenOf(session.Browser(), node, VX3_SORT_NONE, false).empty())
            outcome.Fail({ Exit::Refused, "the folders below level " + std::to_string(deepestLevel) + " are not drawn" });
    }

    void DrawChildren(const NodeHandle& node, const std::string& indent, int32_t level)
    {
        std::vector<NodeHandle> children = SortedChildrenOf(session.Browser(), node, OrderOf(command), command.Has(Option::Reverse));
        if (children.empty()) {
            Url url = UrlOf(session.Browser(), node);
            if (Failure failure = CheckReadable(session, url))
                return outcome.Fail(failure);
        }
        for (size_t index = 0; index < children.size(); ++index) {
            if (IsInterrupted() && !outcome.IsCancelled())
                outcome.Fail(Interrupted());
            if (outcome.IsCancelled())
                return;
            bool isLast = index + 1 == children.size();
            DrawNode(children[index], indent + (isLast ? "└── " : "├── "), indent + (isLast ? "    " : "│   "), level);
        }
    }

    const Command& command;
    const Session& session;
    EntryOutput& output;
    Outcome& outcome;
    int32_t wanted; // levels
    bool withColour;
    bool startsAtComputer = false;
    std::vector<Url> volumes;
    int64_t folders = 0;
    int64_t files = 0;
};

} // namespace

int RunRoots(const Command& command, Session& session)
{
    EntryOutput output(command);
    std::vector<Entry> entries;
    for (int32_t index = 0; index < RootCount; ++index)
        if (NodeHandle root = RootOf(session.Browser(), index))
            entries.push_back(ReadEntry(session, root, TypeTest::ByName));
    if (output.IsJson())
        output.Table(entries);
    else
        for (const Entry& entry : entries)
            std::printf("%-12s %s\n", entry.url.c_str(), Shown(entry.nameBytes).c_str());
    return static_cast<int>(Exit::Done);
}

int RunLs(const Command& command, Session& session)
{
    EntryOutput output(command);
    Outcome outcome;
    for (const std::string& argument : PlacesOf(command))
        if (!outcome.IsCancelled())
            ListPlace(command, session, argument, output, outcome);
    return outcome.Code();
}

int RunStat(const Command& command, Session& session)
{
    EntryOutput output(command);
    Outcome outcome;
    for (const std::string& argument : command.arguments) {
        Place place(session, argument);
        Failure failure;
        NodeHandle node = FindPlace(session, place, failure);
        if (!node) {
            outcome.Fail(failure);
            continue;
        }
        Entry entry = ReadEntry(session, node, TypeTest::ByBytes);
        output.Separate();
        if (output.IsJson())
            output.Write(entry);
        else
            PrintFields(entry);
        outcome.Done();
    }
    return outcome.Code();
}

int RunTree(const Command& command, Session& session)
{
    EntryOutput output(command);
    Outcome outcome;
    Place place(session, PlacesOf(command).front());
    Failure failure;
    NodeHandle node = FindPlace(session, place, failure);
    if (!node) {
        outcome.Fail(failure);
        return outcome.Code();
    }
    // An unreadable top alone is a refusal; one inside is an error in an item.
    if (!IsHolder(AttributesOf(session.Browser(), node)) || !CheckReadable(session, place.Address()))
        outcome.Done();
    TreeDrawing(command, session, output, outcome).Draw(node);
    return outcome.Code();
}

} // namespace vx3::console
