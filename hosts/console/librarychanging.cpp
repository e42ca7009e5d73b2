// The verbs behind `lib` that go through the module: create, get, rm, mv, name, freeze, compact.
#include <cstdio>

#include "core/services.h"
#include "librarysession.h"
#include "libraryverbs.h"
#include "verbs.h"
#include "wholefile.h"

namespace vx3::console {

namespace {

constexpr size_t pathArgument = 2;
constexpr size_t targetArgument = 3;
constexpr uint64_t roomForRecords = 64 * 1024; // more than the records take that one change writes

// Opens it for a change of what is told of items, which there must be room for.
Failure OpenForChange(LibrarySession& library)
{
    if (Failure failure = library.Open(LibraryUse::Change))
        return failure;
    return library.CheckRoom(roomForRecords);
}

std::string TextFrom(const LibrarySession& library, int32_t (*get)(VX3Library*, VX3String*))
{
    core::Text text;
    get(library.Get(), text.Get());
    return text.Utf8();
}

// The file that an item goes to: below a folder it has the last part of the item's path.
std::string TargetFile(const std::string& argument, const std::string& itemPath)
{
    if (!IsFolder(argument))
        return argument;
    std::vector<std::string> parts = SplitChoices(itemPath, '/');
    std::string slash = argument.back() == '/' ? "" : "/";
    return argument + slash + (parts.empty() ? "" : parts.back());
}

Failure Remove(const LibrarySession& library, const std::string& argument, int32_t& outcome)
{
    core::Text path;
    if (Failure failure = ItemPathOf(argument, path))
        return failure;
    outcome = library.Tools().removeItem(library.Get(), path.Get());
    return library.FailureOf(outcome, argument);
}

Failure Move(const LibrarySession& library, const std::string& from, const std::string& to)
{
    core::Text source, target;
    if (Failure failure = ItemPathOf(from, source))
        return failure;
    if (Failure failure = ItemPathOf(to, target))
        return failure;
    int32_t outcome = library.Tools().moveItem(library.Get(), source.Get(), target.Get());
    bool isOfTarget = outcome == VX3_LIBRARY_EXISTS;
    VX3LibraryItem item = {};
    if (outcome == VX3_LIBRARY_BAD_PATH)
        isOfTarget = library.Tools().findItem(library.Get(), source.Get(), &item) == VX3_LIBRARY_OK;
    core::TextServices()->destruct(&item.path);
    return library.FailureOf(outcome, isOfTarget ? to : from);
}

void TellName(const Command& command, const std::string& name)
{
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("file", Shown(LibraryPath(command)));
        json.Text("name", name);
    });
}

void TellPaths(const Command& command, const std::vector<std::string>& paths)
{
    if (!command.Has(Option::Json))
        return;
    JsonWriter json(stdout);
    for (const std::string& path : paths) {
        json.BeginEntry();
        json.Text("path", path);
        json.EndEntry();
    }
}

} // namespace

int RunLibCreate(const Command& command)
{
    LibrarySession library(command);
    if (Failure failure = library.Create(command.Value(Option::Name)))
        return FailWith(failure);
    std::string url = TextFrom(library, library.Tools().getAddress);
    std::string name = TextFrom(library, library.Tools().getName);
    if (Failure failure = library.Close())
        return FailWith(failure);
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("file", Shown(library.File()));
        json.Text("url", url);
        json.Text("name", name);
    });
    return static_cast<int>(Exit::Done);
}

int RunLibGet(const Command& command)
{
    const std::string& argument = command.arguments[pathArgument];
    std::string target = TargetFile(command.arguments[targetArgument], argument);
    LibrarySession library(command);
    if (Failure failure = library.Open(LibraryUse::Read))
        return FailWith(failure);
    core::Text path;
    ModuleBlock data(library.Module());
    Failure failure = ItemPathOf(argument, path);
    if (!failure)
        failure = library.FailureOf(library.Tools().getData(library.Get(), path.Get(), &data.bytes, &data.length), argument);
    if (!failure)
        failure = WriteNewFile(target, data.bytes, static_cast<size_t>(data.length));
    if (failure)
        return FailWith(failure);
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("path", argument);
        json.Text("target", Shown(target));
        json.Number("size", data.length);
    });
    return static_cast<int>(Exit::Done);
}

int RunLibRm(const Command& command)
{
    LibrarySession library(command);
    if (Failure failure = OpenForChange(library))
        return FailWith(failure);
    Outcome outcome;
    std::vector<std::string> removed;
    int32_t last = VX3_LIBRARY_OK;
    for (size_t index = pathArgument; index < command.arguments.size() && !EndsWork(last); ++index) {
        const std::string& argument = command.arguments[index];
        if (Failure failure = Remove(library, argument, last)) {
            outcome.Fail(failure);
            continue;
        }
        outcome.Done();
        removed.push_back(argument);
    }
    if (Failure failure = library.Close())
        return FailWith(failure);
    TellPaths(command, removed);
    return outcome.Code();
}

int RunLibMv(const Command& command)
{
    const std::string& from = command.arguments[pathArgument];
    const std::string& to = command.arguments[targetArgument];
    LibrarySession library(command);
    Failure failure = OpenForChange(library);
    if (!failure)
        failure = Move(library, from, to);
    if (!failure)
        failure = library.Close();
    if (failure)
        return FailWith(failure);
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("from", from);
        json.Text("to", to);
    });
    return static_cast<int>(Exit::Done);
}

int RunLibName(const Command& command)
{
    bool isToSet = command.arguments.size() > pathArgument;
    LibrarySession library(command);
    if (Failure failure = isToSet ? OpenForChange(library) : library.Open(LibraryUse::Read))
        return FailWith(failure);
    if (!isToSet) {
        std::string shown = TextFrom(library, library.Tools().getName);
        if (!command.Has(Option::Json))
            std::printf("%s\n", Shown(shown).c_str());
        TellName(command, shown);
        return static_cast<int>(Exit::Done);
    }
    core::Text name{ std::string_view(command.arguments[pathArgument]) };
    Failure failure = library.FailureOf(library.Tools().setName(library.Get(), name.Get()));
    if (!failure)
        failure = library.Close();
    if (failure)
        return FailWith(failure);
    TellName(command, name.Utf8());
    return static_cast<int>(Exit::Done);
}

int RunLibFreeze(const Command& command)
{
    LibrarySession library(command);
    if (Failure failure = OpenForChange(library))
        return FailWith(failure);
    int32_t items = library.Tools().countItems(library.Get());
    bool wasFrozen = library.Tools().isReadOnly(library.Get()) != 0;
    Failure failure = wasFrozen ? Failure{} : library.FailureOf(library.Tools().freeze(library.Get()));
    if (!failure)
        failure = library.Close();
    if (failure)
        return FailWith(failure);
    Say(Quoted(library.File()) + (wasFrozen ? " was frozen before" : " is frozen with " + Counted(items, "item")));
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("file", Shown(library.File()));
        json.Number("items", items);
        json.Truth("wasFrozen", wasFrozen);
    });
    return static_cast<int>(Exit::Done);
}

int RunLibCompact(const Command& command)
{
    LibrarySession library(command);
    if (Failure failure = library.Open(LibraryUse::Change))
        return FailWith(failure);
    auto before = static_cast<int64_t>(FileSize(library.AbsoluteFile()));
    Failure failure = library.FailureOf(library.Tools().compact(library.Get()));
    if (!failure)
        failure = library.Close();
    if (failure)
        return FailWith(failure);
    auto after = static_cast<int64_t>(FileSize(library.AbsoluteFile()));
    Say(Quoted(library.File()) + " had " + Counted(before, "byte") + " and has " + std::to_string(after));
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("file", Shown(library.File()));
        json.Number("before", before);
        json.Number("after", after);
    });
    return static_cast<int>(Exit::Done);
}

} // namespace vx3::console
