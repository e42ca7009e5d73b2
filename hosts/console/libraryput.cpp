// The verb `lib put`: files and folders into a library.
#include <algorithm>
#include <filesystem>
#include <unistd.h>

#include "core/services.h"
#include "librarysession.h"
#include "libraryverbs.h"
#include "nodes.h"
#include "progressbar.h"
#include "verbs.h"
#include "wholefile.h"

namespace vx3::console {

namespace {

namespace fs = std::filesystem;

constexpr size_t firstPair = 2;
constexpr uint64_t roomForRecord = 8 * 1024; // more than is told of an item, without its path
constexpr uint64_t roomPerByteOfPath = 4;

struct Source {
    std::string path; // of the item
    std::string file;
    uint64_t size = 0;
};

struct Stored {
    std::string path;
    int32_t id = 0;
    int64_t size = 0;
    int64_t storedSize = 0;
    bool isPacked = false;
    bool isReplaced = false;
};

Failure UnreadableFolder(const std::string& folder, const std::error_code& error)
{
    return { Exit::Refused, Quoted(folder) + " cannot be read: " + error.message() };
}

// All files below a folder, in the order of their names. Folders behind links may lead back.
Failure ListFolder(const std::string& argument, const std::string& folder, std::vector<Source>& sources)
{
    const std::string path = argument.substr(0, argument.find_last_not_of('/') + 1);
    std::error_code error;
    std::vector<Source> found;
    for (auto entry = fs::recursive_directory_iterator(folder, error); !error && entry != fs::recursive_directory_iterator();
         entry.increment(error)) {
        if (IsInterrupted())
            return { Exit::Cancelled, "cancelled; nothing was stored" };
        std::string file = entry->path().native();
        if (!IsFolder(file))
            found.push_back({ path + "/" + entry->path().lexically_relative(folder).native(), file, FileSize(file) });
    }
    if (error)
        return UnreadableFolder(folder, error);
    std::sort(found.begin(), found.end(), [](const Source& a, const Source& b) { return a.path < b.path; });
    sources.insert(sources.end(), found.begin(), found.end());
    return {};
}

Failure ListSources(const Command& command, std::vector<Source>& sources)
{
    for (size_t index = firstPair; index + 1 < command.arguments.size(); index += 2) {
        const std::string& path = command.arguments[index];
        const std::string& file = command.arguments[index + 1];
        if (!IsThere(file))
            return { Exit::NotFound, Quoted(file) + ": not found" };
        if (!IsFolder(file))
            sources.push_back({ path, file, FileSize(file) });
        else if (Failure failure = ListFolder(path, file, sources))
            return failure;
    }
    return {};
}

uint64_t RoomFor(const std::vector<Source>& sources)
{
    uint64_t room = roomForRecord;
    for (const Source& source : sources)
        room += source.size + roomForRecord + roomPerByteOfPath * source.path.size();
    return room;
}

// The id of the plugin for a file, by its bytes.
int32_t TypeOf(const LibrarySession& library, const std::string& file)
{
    const VX3Browser& browser = library.Module().Browser();
    Url url(browser);
    url.SetFile(core::Path(AbsolutePath(file)));
    VX3Plugin* plugin = nullptr;
    bool isKnown = browser.plugins->forUrl(url.Get(), 1, &plugin) && plugin;
    return isKnown ? browser.plugins->typeId(plugin, nullptr) : static_cast<int32_t>(VX3_LIBRARY_KEEP_TYPE);
}

class Putting
{
public:
    Putting(LibrarySession& opened, const std::vector<Source>& wanted)
        : library(opened)
        , sources(wanted)
    {
    }

    void Run();
    int Finish(const Command& command); // what was stored is in the file then

private:
    Failure PutOne(const Source& source, int32_t& result);
    Failure Note(const core::Text& path, const Source& source, bool isReplaced);

    LibrarySession& library;
    const std::vector<Source>& sources;
    std::vector<Stored> stored;
    Outcome outcome;
};

void Putting::Run()
{
    Amount total;
    for (const Source& source : sources)
        total = { total.elements + 1, total.bytes + static_cast<int64_t>(source.size) };
    ProgressBar bar("put", total, isatty(STDERR_FILENO) != 0);
    int32_t result = VX3_LIBRARY_OK;
    for (const Source& source : sources) {
        if (IsInterrupted())
            return outcome.Fail({ Exit::Cancelled, "cancelled; " + std::to_string(stored.size()) + " items are stored" });
        if (Failure failure = PutOne(source, result))
            outcome.Fail(failure);
        if (EndsWork(result))
            return;
        ProgressBar::Report(&bar, VX3_MODE_DO, 1, static_cast<int64_t>(source.size), 0);
    }
}

Failure Putting::PutOne(const Source& source, int32_t& result)
{
    core::Text path;
    std::vector<uint8_t> bytes;
    if (Failure failure = ItemPathOf(source.path, path))
        return failure;
    if (Failure failure = ReadWholeFile(source.file, bytes))
        return failure;
    int32_t before = library.Tools().countItems(library.Get());
    result =
        library.Tools().putData(library.Get(), path.Get(), TypeOf(library, source.file), bytes.data(), static_cast<int64_t>(bytes.size()));
    if (result != VX3_LIBRARY_OK)
        return library.FailureOf(result, source.path);
    return Note(path, source, library.Tools().countItems(library.Get()) == before);
}

Failure Putting::Note(const core::Text& path, const Source& source, bool isReplaced)
{
    VX3LibraryItem item = {};
    int32_t found = library.Tools().findItem(library.Get(), path.Get(), &item);
    if (found != VX3_LIBRARY_OK)
        return library.FailureOf(found, source.path);
    stored.push_back({ core::ToUtf8(item.path), item.id, item.dataSize, item.storedSize, item.mode == VX3_STORED_PACKED, isReplaced });
    outcome.Done();
    core::TextServices()->destruct(&item.path);
    return {};
}

int Putting::Finish(const Command& command)
{
    if (Failure failure = library.Close())
        return FailWith(failure);
    if (!command.Has(Option::Json))
        return outcome.Code();
    JsonWriter json(stdout);
    for (const Stored& item : stored) {
        json.BeginEntry();
        json.Text("path", item.path);
        json.Number("id", item.id);
        json.Number("size", item.size);
        json.Number("storedSize", item.storedSize);
        json.Truth("packed", item.isPacked);
        json.Truth("replaced", item.isReplaced);
        json.EndEntry();
    }
    return outcome.Code();
}

} // namespace

int RunLibPut(const Command& command)
{
    if (command.arguments.size() % 2 != 0) {
        Say("each PATH needs a SOURCE behind it; vx3 lib --help tells more");
        return static_cast<int>(Exit::Usage);
    }
    std::vector<Source> sources;
    LibrarySession library(command);
    Failure failure = ListSources(command, sources);
    if (!failure)
        failure = library.Open(LibraryUse::Change);
    if (!failure)
        failure = library.CheckRoom(RoomFor(sources));
    if (failure)
        return FailWith(failure);
    Putting putting(library, sources);
    putting.Run();
    return putting.Finish(command);
}

} // namespace vx3::console
