#include "libraryverbs.h"

#include <new>

#include "progressbar.h"
#include "verbs.h"

namespace vx3::console {

const std::string& LibraryPath(const Command& command)
{
    return command.arguments[1];
}

std::string ItemTypeText(const LibraryItem& item)
{
    return std::to_string(item.type) + (item.subtype ? "." + std::to_string(item.subtype) : "");
}

int FailWith(const Failure& failure)
{
    Say(failure.sentence);
    return static_cast<int>(failure.exit);
}

Failure OpenLibrary(const std::string& path, ReadLibrary& library)
{
    if (Failure failure = library.file.Open(path))
        return failure;
    library.scan = ScanLibrary(library.file);
    if (Failure failure = library.file.ReadFailure())
        return failure;
    if (library.scan.IsLibrary())
        return {};
    return { Exit::Damaged, library.file.Length() ? Quoted(path) + " is no library file" : Quoted(path) + " is empty" };
}

int EndOf(const std::string& path, const ReadLibrary& library)
{
    Failure failure = library.file.ReadFailure();
    if (!failure && IsInterrupted())
        failure = { Exit::Cancelled, "cancelled" };
    if (!failure && library.scan.IsDamaged())
        failure = { Exit::Damaged, Quoted(path) + " is damaged; vx3 lib check tells what is wrong" };
    if (failure)
        Say(failure.sentence);
    return static_cast<int>(failure.exit);
}

int RunLib(const Command& command)
{
    try {
        return FindSubVerb(command.verb, command.arguments[0])->run(command);
    } catch (const std::bad_alloc&) {
        Say("there is not enough memory for " + Quoted(LibraryPath(command)));
        return static_cast<int>(Exit::Refused);
    }
}

} // namespace vx3::console
