// The verb `lib dump`: the chunks of a library file as they stand in it.
#include <cinttypes>
#include <cstdio>
#include <memory>

#include "jsonwriter.h"
#include "librarycheck.h"
#include "libraryvalues.h"
#include "libraryverbs.h"
#include "verbs.h"

namespace vx3::console {

namespace {

bool HoldsContainer(const Chunk& chunk)
{
    return chunk.tag == tag::info || chunk.tag == tag::category || chunk.tag == tag::item;
}

class Dump
{
public:
    Dump(const Command& command, ReadLibrary& newLibrary)
        : library(newLibrary)
        , use(newLibrary.scan)
        , isRaw(command.Has(Option::Raw))
    {
        if (command.Has(Option::Json))
            json = std::make_unique<JsonWriter>(stdout);
    }

    void Run();

private:
    const char* StateOf(const Chunk& chunk) const;
    void Print(const Chunk& chunk, const std::vector<ValueRow>& values) const;
    void Write(const Chunk& chunk, const std::vector<ValueRow>& values);

    ReadLibrary& library;
    ChunkUse use;
    bool isRaw;
    std::unique_ptr<JsonWriter> json;
};

// Behind a container that cannot be read the headers still tell of chunks.
const char* Dump::StateOf(const Chunk& chunk) const
{
    if (chunk.offset >= library.scan.stop)
        return "unread";
    if (chunk.tag == tag::dead)
        return "dead";
    return use.IsUsed(chunk) ? "used" : "unused";
}

void Dump::Print(const Chunk& chunk, const std::vector<ValueRow>& values) const
{
    std::printf("%12" PRIu64 "  %-10s  %10" PRId32 "  %12" PRIu64 "  %s%s\n", chunk.offset, TagText(chunk.tag).c_str(), chunk.id,
                chunk.length, StateOf(chunk), chunk.isWhole ? "" : " cut");
    for (const ValueRow& row : values)
        std::printf("%14s%-12s  %-22s  %-9s  %s\n", "", row.keys.c_str(), row.name.c_str(), row.type, Shown(row.text).c_str());
}

void Dump::Write(const Chunk& chunk, const std::vector<ValueRow>& values)
{
    json->BeginEntry();
    json->Number("offset", static_cast<int64_t>(chunk.offset));
    json->Text("tag", TagText(chunk.tag));
    json->Number("id", chunk.id);
    json->Text("length", std::to_string(chunk.length)); // may be more than a number of JSON can be
    json->Truth("whole", chunk.isWhole);
    json->Truth("referenced", std::string(StateOf(chunk)) == "used");
    json->Text("state", StateOf(chunk));
    if (!isRaw) {
        json->BeginList("values");
        for (const ValueRow& row : values) {
            json->BeginItem();
            json->Text("key", row.keys);
            json->Text("name", row.name);
            json->Text("type", row.type);
            json->Text("value", row.text);
            json->EndItem();
        }
        json->EndList();
    }
    json->EndEntry();
}

void Dump::Run()
{
    ChunkWalk walk(library.file);
    Chunk chunk;
    while (walk.Next(chunk)) {
        LibraryContainer container;
        std::vector<uint8_t> payload;
        std::vector<ValueRow> values;
        bool isShown = !isRaw && HoldsContainer(chunk) && library.file.ReadPayload(chunk, payload);
        if (isShown && container.Decode(payload) != PayloadState::Unreadable)
            values = ValuesOf(chunk.tag, container.View());
        if (json)
            Write(chunk, values);
        else
            Print(chunk, values);
    }
}

} // namespace

int RunLibDump(const Command& command)
{
    const std::string& path = LibraryPath(command);
    ReadLibrary library;
    if (Failure failure = OpenLibrary(path, library)) {
        Say(failure.sentence);
        return static_cast<int>(failure.exit);
    }
    Dump(command, library).Run();
    return EndOf(path, library);
}

} // namespace vx3::console
