#include "librarysession.h"

#include <utility>

#include "libraryverbs.h"
#include "wholefile.h"

namespace vx3::console {

namespace {

enum class Subject { File, Item };

struct OutcomeRow {
    int32_t outcome;
    Exit exit;
    Subject subject;
    const char* text; // behind the subject
};

constexpr OutcomeRow outcomeTable[] = {
    { VX3_LIBRARY_NOT_FOUND, Exit::NotFound, Subject::Item, "not found" },
    { VX3_LIBRARY_EXISTS, Exit::Conflict, Subject::Item, "exists already" },
    { VX3_LIBRARY_FOLDER, Exit::Refused, Subject::File, "is a folder" },
    { VX3_LIBRARY_UNREADABLE, Exit::Refused, Subject::File, "cannot be read" },
    { VX3_LIBRARY_NO_LIBRARY, Exit::Damaged, Subject::File, "is no library file" },
    { VX3_LIBRARY_DAMAGED, Exit::Damaged, Subject::Item, "is damaged; vx3 lib check tells what is wrong" },
    { VX3_LIBRARY_READ_ONLY, Exit::Refused, Subject::File, "is read-only: nothing in it can be changed" },
    { VX3_LIBRARY_PROTECTED, Exit::Refused, Subject::File, "cannot be opened for writing" },
    { VX3_LIBRARY_IN_USE, Exit::Refused, Subject::File, "is open in another program or in the browser itself" },
    { VX3_LIBRARY_NAME_TAKEN, Exit::Refused, Subject::File, "has the same URL as a library of the browser itself" },
    { VX3_LIBRARY_CHANGED, Exit::Refused, Subject::File, "was changed by another program meanwhile" },
    { VX3_LIBRARY_NOT_WRITTEN, Exit::Refused, Subject::File, "cannot be written as it should be; vx3 lib check tells what is in it" },
    { VX3_LIBRARY_BAD_PATH, Exit::Refused, Subject::Item, "cannot be the path of an item" },
    { VX3_LIBRARY_NO_DATA, Exit::NotFound, Subject::Item, "has no data" },
    { VX3_LIBRARY_TOO_LARGE, Exit::Refused, Subject::Item, "is too large: an item holds less than 2 GiB" },
    { VX3_LIBRARY_NO_PICTURE, Exit::Refused, Subject::Item, "is no picture that can be read" },
    { VX3_LIBRARY_FULL, Exit::Refused, Subject::File, "has no id left for a further item" },
    { VX3_LIBRARY_NO_MEMORY, Exit::Refused, Subject::Item, "there is not enough memory" },
    { VX3_LIBRARY_BACKUP_THERE, Exit::Damaged, Subject::File,
      "is damaged, and a change would replace the .bak beside it; vx3 lib recover looks at both" },
};

const OutcomeRow* FindRow(int32_t outcome)
{
    for (const OutcomeRow& row : outcomeTable)
        if (row.outcome == outcome)
            return &row;
    return nullptr;
}

} // namespace

bool EndsWork(int32_t outcome)
{
    const OutcomeRow* row = FindRow(outcome);
    return row && (row->subject == Subject::File || outcome == VX3_LIBRARY_NO_MEMORY);
}

Failure ItemPathOf(const std::string& argument, core::Text& path)
{
    path = core::Text{ std::string_view(argument) };
    if (path.Utf8() == argument)
        return {};
    return { Exit::Refused, Quoted(argument) + " is no UTF-8, as the path of an item is" };
}

LibrarySession::LibrarySession(const Command& newCommand)
    : command(newCommand)
    , file(LibraryPath(newCommand))
{
}

LibrarySession::~LibrarySession()
{
    if (tools)
        tools->close(library);
}

Failure LibrarySession::Start()
{
    if (Failure failure = session.Open(command))
        return failure;
    const VX3ToolFunctions& offered = *session.Browser().tools;
    constexpr auto needed = static_cast<int64_t>(offsetof(VX3ToolFunctions, libraries) + sizeof offered.libraries);
    if (offered.size < needed || !offered.libraries)
        return { Exit::Damaged, "the module " + Quoted(session.ModuleFile()) + " is too old to change libraries" };
    tools = offered.libraries;
    return {};
}

Failure LibrarySession::Open(LibraryUse use)
{
    if (Failure failure = Start())
        return failure;
    core::Path path(AbsoluteFile());
    return FailureOf(tools->open(path.Get(), use == LibraryUse::Change ? VX3_LIBRARY_CHANGE : VX3_LIBRARY_READ, &library));
}

Failure LibrarySession::Create(const std::string& name)
{
    if (Failure failure = Start())
        return failure;
    core::Path path(AbsoluteFile());
    core::Text shown{ std::string_view(name) };
    return FailureOf(tools->create(path.Get(), name.empty() ? nullptr : shown.Get(), &library));
}

Failure LibrarySession::Close()
{
    return FailureOf(tools->close(std::exchange(library, nullptr)));
}

Failure LibrarySession::CheckRoom(uint64_t bytes) const
{
    if (HasRoom(AbsoluteFile(), bytes))
        return {};
    return { Exit::Refused, Quoted(file) + " is left as it was: there is no room on the disk for what it would become" };
}

Failure LibrarySession::FailureOf(int32_t outcome) const
{
    if (outcome == VX3_LIBRARY_NOT_FOUND)
        return { Exit::NotFound, Quoted(file) + ": not found" };
    return FailureOf(outcome, file);
}

Failure LibrarySession::FailureOf(int32_t outcome, const std::string& subject) const
{
    if (outcome == VX3_LIBRARY_OK)
        return {};
    const OutcomeRow* row = FindRow(outcome);
    if (!row)
        return { Exit::Refused, Quoted(file) + ": the module answered " + std::to_string(outcome) };
    std::string name = Quoted(row->subject == Subject::File ? file : subject);
    if (outcome == VX3_LIBRARY_NOT_FOUND)
        return { row->exit, name + " not found in " + Quoted(file) };
    return { row->exit, name + (outcome == VX3_LIBRARY_NO_MEMORY ? ": " : " ") + row->text };
}

} // namespace vx3::console
