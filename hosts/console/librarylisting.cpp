// The verbs behind `lib` that list: info, ls, check.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <memory>

#include "core/services.h"
#include "entries.h"
#include "jsonwriter.h"
#include "librarycheck.h"
#include "libraryverbs.h"
#include "progressbar.h"
#include "verbs.h"

namespace vx3::console {

namespace {

void PrintField(const char* label, const std::string& value)
{
    std::printf("%-12s %s\n", label, value.empty() ? "-" : Shown(value).c_str());
}

const char* YesOrNo(bool truth)
{
    return truth ? "yes" : "no";
}

std::string KindText(uint32_t kind)
{
    return kind == tag::none ? "other" : TagText(kind);
}

std::string ChunkCounts(const LibraryScan& scan)
{
    std::string text;
    for (const auto& [kind, count] : scan.chunks)
        text += (text.empty() ? "" : ", ") + std::to_string(count.chunks) + " " + KindText(kind);
    return text;
}

void PrintInfo(const ReadLibrary& library, const LibraryCheck& unused)
{
    const LibraryScan& scan = library.scan;
    PrintField("URL:", scan.name.Utf8());
    for (const auto& [language, name] : scan.names)
        PrintField(("Name (" + LanguageText(language) + "):").c_str(), name);
    PrintField("Category:", scan.category.value_or(""));
    PrintField("Version:", std::to_string(scan.version));
    PrintField("Read-only:", YesOrNo(scan.isReadOnly));
    PrintField("Items:", std::to_string(scan.items.size()));
    PrintField("Size:", std::to_string(scan.fileLength));
    PrintField("Chunks:", ChunkCounts(scan));
    PrintField("Live bytes:", std::to_string(scan.liveBytes));
    PrintField("Dead bytes:", std::to_string(scan.deadBytes));
    PrintField("Unused:", Counted(unused.unusedPayloads, "payload") + ", " + std::to_string(unused.unusedBytes) + " bytes");
    PrintField("Rewrite due:", YesOrNo(scan.IsRewriteDue()));
    PrintField("Closed:", YesOrNo(scan.end == WalkEnd::Closed));
    PrintField("Damaged:", YesOrNo(scan.IsDamaged()));
}

void WriteInfo(JsonWriter& json, const std::string& path, const ReadLibrary& library, const LibraryCheck& unused)
{
    const LibraryScan& scan = library.scan;
    json.BeginEntry();
    json.Text("file", Shown(path));
    json.Number("size", static_cast<int64_t>(scan.fileLength));
    json.Text("url", scan.name.Utf8());
    json.BeginObject("names");
    for (const auto& [language, name] : scan.names)
        json.Text(Shown(LanguageText(language)).c_str(), name);
    json.EndObject();
    if (scan.category)
        json.Text("category", *scan.category);
    else
        json.Null("category");
    json.Number("fileVersion", scan.version);
    json.Truth("readOnly", scan.isReadOnly);
    json.Number("items", static_cast<int64_t>(scan.items.size()));
    json.BeginObject("chunks");
    for (const auto& [kind, count] : scan.chunks)
        json.Number(KindText(kind).c_str(), count.chunks);
    json.EndObject();
    json.BeginObject("chunkBytes");
    for (const auto& [kind, count] : scan.chunks)
        json.Number(KindText(kind).c_str(), static_cast<int64_t>(count.bytes));
    json.EndObject();
    json.Number("liveBytes", static_cast<int64_t>(scan.liveBytes));
    json.Number("deadBytes", static_cast<int64_t>(scan.deadBytes));
    json.Number("unusedPayloads", unused.unusedPayloads);
    json.Number("unusedBytes", static_cast<int64_t>(unused.unusedBytes));
    json.Truth("rewriteDue", scan.IsRewriteDue());
    json.Truth("closed", scan.end == WalkEnd::Closed);
    json.Truth("damaged", scan.IsDamaged());
    json.EndEntry();
}

// --- ls ------------------------------------------------------------------------------------------------------------------

struct ItemRow {
    const LibraryItem* item;
    std::string path;             // inside of the library
    std::optional<int64_t> bytes; // of its data, unpacked
};

std::optional<int64_t> DataSize(LibraryFile& file, const LibraryItem& item)
{
    Chunk chunk;
    if (!item.data)
        return {};
    bool isStored = item.data->mode == StorageRaw && item.data->offset > 0
        && file.ReadChunk(static_cast<uint64_t>(item.data->offset), chunk) && chunk.tag == tag::data && chunk.isWhole;
    return isStored ? static_cast<int64_t>(chunk.length) : item.data->unpacked;
}

// The item at a place or below it; the place may be given as a URL too, and in any case.
bool IsBelow(const LibraryItem& item, const std::string& path, const core::Text& place)
{
    const core::Text inside{ std::string_view(path) };
    for (const core::Text* text : { &inside, &item.pathUnits }) {
        const VX3TextServices& texts = *core::TextServices();
        int32_t length = texts.length(place.Get());
        if (!texts.matchesAt(text->Get(), 0, place.Get(), 1))
            continue;
        if (length == 0 || texts.length(text->Get()) == length || text->Units()[static_cast<size_t>(length)] == u'/')
            return true;
    }
    return false;
}

// Without the slashes around it.
std::string PlaceOf(const Command& command)
{
    constexpr size_t placeArgument = 2;
    std::string place = command.arguments.size() > placeArgument ? command.arguments[placeArgument] : "";
    size_t begin = std::min(place.find_first_not_of('/'), place.size());
    size_t end = place.find_last_not_of('/') + 1;
    return place.substr(begin, end > begin ? end - begin : 0);
}

int CompareDates(const VX3FileDate& a, const VX3FileDate& b)
{
    return DateText(a).compare(DateText(b));
}

bool ComesBefore(const std::string& order, const ItemRow& a, const ItemRow& b)
{
    int compared = 0;
    if (order == "size")
        compared = a.bytes < b.bytes ? -1 : a.bytes > b.bytes;
    else if (order == "type")
        compared = a.item->type < b.item->type ? -1 : a.item->type > b.item->type;
    else if (order == "created")
        compared = CompareDates(a.item->created, b.item->created);
    else if (order == "modified")
        compared = CompareDates(a.item->changed, b.item->changed);
    if (compared == 0)
        compared = core::TextServices()->order(a.item->pathUnits.Get(), b.item->pathUnits.Get());
    return compared < 0;
}

std::vector<ItemRow> RowsOf(const Command& command, ReadLibrary& library)
{
    std::vector<ItemRow> rows;
    core::Text place{ std::string_view(PlaceOf(command)) };
    for (const LibraryItem& item : library.scan.items) {
        std::string path = library.scan.PathInside(item);
        if (IsBelow(item, path, place))
            rows.push_back({ &item, path, DataSize(library.file, item) });
    }
    std::string order = command.Value(Option::Sort, "name");
    if (order != "none")
        std::stable_sort(rows.begin(), rows.end(), [&](const ItemRow& a, const ItemRow& b) { return ComesBefore(order, a, b); });
    if (command.Has(Option::Reverse))
        std::reverse(rows.begin(), rows.end());
    return rows;
}

void PrintRows(const std::vector<ItemRow>& rows)
{
    for (const ItemRow& row : rows) {
        std::string date = DateText(row.item->changed);
        std::replace(date.begin(), date.end(), 'T', ' ');
        std::printf("%6" PRId32 "  %12s  %2zu  %-19s  %10s  %s\n", row.item->id, row.bytes ? std::to_string(*row.bytes).c_str() : "-",
                    row.item->previews.size(), date.empty() ? "-" : date.c_str(), ItemTypeText(*row.item).c_str(),
                    row.path.empty() ? "-" : Shown(row.path).c_str());
    }
}

void WriteDate(JsonWriter& json, const char* name, const VX3FileDate& date)
{
    std::string text = DateText(date);
    if (text.empty())
        json.Null(name);
    else
        json.Text(name, text);
}

void WriteRow(JsonWriter& json, const ItemRow& row)
{
    json.BeginEntry();
    json.Number("id", row.item->id);
    json.Text("path", row.path);
    json.Text("url", row.item->path);
    json.Number("type", row.item->type);
    json.Number("subtype", row.item->subtype);
    if (row.bytes)
        json.Number("size", *row.bytes);
    else
        json.Null("size");
    json.Number("previews", static_cast<int64_t>(row.item->previews.size()));
    WriteDate(json, "created", row.item->created);
    WriteDate(json, "modified", row.item->changed);
    json.EndEntry();
}

// --- check ---------------------------------------------------------------------------------------------------------------

const char* SeverityText(Severity severity)
{
    return severity == Severity::Damage ? "damage" : "note";
}

void WriteFindings(const Findings& findings)
{
    JsonWriter json(stdout);
    for (const Finding& finding : findings.All()) {
        json.BeginEntry();
        json.Text("severity", SeverityText(finding.severity));
        json.Text("code", finding.code);
        json.Number("offset", static_cast<int64_t>(finding.offset));
        if (finding.item)
            json.Number("item", finding.item);
        else
            json.Null("item");
        json.Text("text", finding.sentence);
        json.EndEntry();
    }
}

void PrintFindings(const Findings& findings)
{
    for (const Finding& finding : findings.All())
        std::printf("%12" PRIu64 "  %-6s  %s\n", finding.offset, SeverityText(finding.severity), finding.sentence.c_str());
}

void NoteUnused(Findings& findings, const LibraryCheck& check)
{
    if (check.unusedPayloads > 0)
        findings.Note("unused", 0,
                      Counted(check.unusedPayloads, "payload") + " that no item names; a rewrite frees " + std::to_string(check.unusedBytes)
                          + " bytes");
}

int EndOfCheck(const std::string& path, const ReadLibrary& library, const LibraryCheck& check)
{
    const Findings& findings = library.scan.findings;
    if (Failure failure = library.file.ReadFailure(); failure || check.isInterrupted) {
        Say(failure ? failure.sentence : "cancelled");
        return static_cast<int>(failure ? failure.exit : Exit::Cancelled);
    }
    if (findings.LeftOut() > 0)
        Say(std::to_string(findings.LeftOut()) + " more findings are not shown");
    if (findings.DamageCount() == 0)
        return static_cast<int>(Exit::Done);
    Say(Quoted(path) + " is damaged; " + std::to_string(check.soundItems) + " of " + std::to_string(library.scan.items.size())
        + " items are whole");
    return static_cast<int>(Exit::Damaged);
}

} // namespace

int RunLibInfo(const Command& command)
{
    const std::string& path = LibraryPath(command);
    ReadLibrary library;
    if (Failure failure = OpenLibrary(path, library)) {
        Say(failure.sentence);
        return static_cast<int>(failure.exit);
    }
    LibraryCheck unused = CountUnused(library.file, library.scan);
    if (!command.Has(Option::Json))
        PrintInfo(library, unused);
    else {
        JsonWriter json(stdout);
        WriteInfo(json, path, library, unused);
    }
    return EndOf(path, library);
}

int RunLibLs(const Command& command)
{
    const std::string& path = LibraryPath(command);
    ReadLibrary library;
    if (Failure failure = OpenLibrary(path, library)) {
        Say(failure.sentence);
        return static_cast<int>(failure.exit);
    }
    std::vector<ItemRow> rows = RowsOf(command, library);
    if (!command.Has(Option::Json))
        PrintRows(rows);
    else {
        JsonWriter json(stdout);
        for (const ItemRow& row : rows)
            WriteRow(json, row);
    }
    int code = EndOf(path, library);
    std::string place = PlaceOf(command);
    if (!rows.empty() || place.empty())
        return code;
    Say(Quoted(place) + ": not found in " + Quoted(path));
    return code ? code : static_cast<int>(Exit::NotFound);
}

int RunLibCheck(const Command& command)
{
    const std::string& path = LibraryPath(command);
    ReadLibrary library;
    if (Failure failure = library.file.Open(path)) {
        Say(failure.sentence);
        return static_cast<int>(failure.exit);
    }
    library.scan = ScanLibrary(library.file);
    LibraryCheck check = CheckLibrary(library.file, library.scan);
    NoteUnused(library.scan.findings, check);
    if (command.Has(Option::Json))
        WriteFindings(library.scan.findings);
    else
        PrintFindings(library.scan.findings);
    int code = EndOfCheck(path, library, check);
    if (code == static_cast<int>(Exit::Done) && !command.Has(Option::Json))
        std::printf("%s is whole: %s, %s of %" PRIu64 " bytes\n", Shown(path).c_str(),
                    Counted(static_cast<int64_t>(library.scan.items.size()), "item").c_str(), Counted(check.payloads, "payload").c_str(),
                    check.payloadBytes);
    return code;
}

} // namespace vx3::console
