// What the machine allows: the same bytes in chunks, through plain calls of the system, without anything that keeps them in order.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "records.h"
#include "steps.h"

namespace vx3::bench {
namespace {

enum class Tag : uint32_t { Head = 1, Data, Preview, Record, End, Dead };

struct Header {
    Tag tag;
    uint32_t id;
    uint64_t length; // of what follows
};

constexpr size_t bufferBytes = 1 << 20;
constexpr int readAndWrite = 0644;

// In front of the texts of a record.
struct Fixed {
    uint32_t hash;
    int32_t type;
    int32_t subtype;
    uint32_t pathLength;
    uint32_t nameLength;
    uint32_t settingsLength;
    int64_t created;
    int64_t changed;
    uint64_t data; // offsets
    uint64_t preview;
};

std::string FileOf(const std::string& folder)
{
    return folder + "/library.plain";
}

int OpenFile(const std::string& file, int flags)
{
    const int descriptor = open(file.c_str(), flags | O_CLOEXEC, readAndWrite);
    Demand(descriptor >= 0, "opening a file");
    return descriptor;
}

void WriteAt(int file, const void* bytes, size_t size, uint64_t offset)
{
    Demand(pwrite(file, bytes, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size), "writing");
}

void ReadAt(int file, void* bytes, size_t size, uint64_t offset)
{
    Demand(pread(file, bytes, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size), "reading");
}

// Takes chunks and writes them in large pieces.
class Writer
{
public:
    Writer(int target, uint64_t offset)
        : file(target)
        , written(offset)
        , buffer(bufferBytes)
    {
    }
    uint64_t Add(Tag tag, size_t number, const void* bytes, size_t size)
    {
        if (used + sizeof(Header) + size > buffer.size())
            Flush();
        const uint64_t start = End();
        const Header header = { tag, static_cast<uint32_t>(number), size };
        Put(&header, sizeof header);
        Put(bytes, size);
        return start;
    }
    void AddPayloads(size_t number, Fixed& fixed)
    {
        fixed.data = Add(Tag::Data, number, Payload(number, dataBytes), dataBytes);
        fixed.preview = Add(Tag::Preview, number, Payload(number, previewBytes), previewBytes);
    }
    void AddRecord(size_t number, Fixed fixed)
    {
        const ItemRow row = MakeRow(number);
        fixed.hash = row.hash, fixed.type = row.type, fixed.subtype = row.subtype;
        fixed.created = row.created, fixed.changed = row.changed;
        fixed.pathLength = static_cast<uint32_t>(row.path.size());
        fixed.nameLength = static_cast<uint32_t>(row.name.size());
        fixed.settingsLength = static_cast<uint32_t>(row.settings.size());
        record.assign(reinterpret_cast<const char*>(&fixed), sizeof fixed);
        record.append(row.path).append(row.name).append(row.settings);
        Add(Tag::Record, number, record.data(), record.size());
    }
    void Flush()
    {
        WriteAt(file, buffer.data(), used, written);
        written += used;
        used = 0;
    }
    uint64_t End() const { return written + used; }

private:
    void Put(const void* bytes, size_t size)
    {
        if (size)
            std::memcpy(buffer.data() + used, bytes, size);
        used += size;
    }

    const int file;
    uint64_t written;
    std::vector<uint8_t> buffer;
    size_t used = 0;
    std::string record;
};

// All payloads and then all records.
void WriteAtOnce(const std::string& folder, size_t count)
{
    double start = NowSeconds();
    const int file = OpenFile(FileOf(folder), O_CREAT | O_TRUNC | O_RDWR);
    Writer writer(file, 0);
    std::vector<Fixed> records(count);
    writer.Add(Tag::Head, 0, nullptr, 0);
    for (size_t i = 0; i < count; i++)
        writer.AddPayloads(i, records[i]);
    for (size_t i = 0; i < count; i++)
        writer.AddRecord(i, records[i]);
    writer.Add(Tag::End, 0, nullptr, 0);
    writer.Flush();
    close(file);
    PrintCaseOf("bulk_ms", count, (NowSeconds() - start) * 1e3, "ms");
    PrintCaseOf("file_MiB", count, MebibytesOf(FileOf(folder)), "MiB");
}

// Each record behind its payloads.
void WriteLog(const std::string& folder, size_t count)
{
    const int file = OpenFile(FileOf(folder), O_CREAT | O_TRUNC | O_RDWR);
    Writer writer(file, 0);
    writer.Add(Tag::Head, 0, nullptr, 0);
    for (size_t i = 0; i < count; i++) {
        Fixed record = {};
        writer.AddPayloads(i, record);
        writer.AddRecord(i, record);
    }
    writer.Add(Tag::End, 0, nullptr, 0);
    writer.Flush();
    close(file);
}

// The records in memory, and a table of them by hash.
class Records
{
public:
    struct Record {
        uint32_t id;
        uint64_t chunk;
        uint64_t length;
        const uint8_t* bytes;
        Fixed Read() const
        {
            Fixed fixed;
            std::memcpy(&fixed, bytes, sizeof fixed);
            return fixed;
        }
    };

    explicit Records(int file)
    {
        struct stat status = {};
        Demand(fstat(file, &status) == 0, "asking for a length");
        const auto length = static_cast<size_t>(status.st_size);
        void* map = mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file, 0);
        Demand(map != MAP_FAILED, "mapping a file");
        Scan(static_cast<const uint8_t*>(map), length);
        munmap(map, length);
        Index();
    }
    const std::vector<Record>& All() const { return records; }

private:
    void Scan(const uint8_t* map, size_t length)
    {
        Header header = {};
        for (uint64_t at = 0; at + sizeof header <= length; at += sizeof header + header.length) {
            std::memcpy(&header, map + at, sizeof header);
            if (header.tag == Tag::End)
                return;
            if (header.tag == Tag::Record)
                records.push_back({ header.id, at, header.length, Keep(map + at + sizeof header, header.length) });
        }
    }
    const uint8_t* Keep(const uint8_t* bytes, size_t size)
    {
        if (blocks.empty() || room < size) {
            room = bufferBytes;
            blocks.push_back(static_cast<uint8_t*>(std::malloc(room)));
            Demand(blocks.back() != nullptr, "taking memory");
        }
        uint8_t* copy = blocks.back() + (bufferBytes - room);
        std::memcpy(copy, bytes, size);
        room -= size;
        return copy;
    }
    void Index()
    {
        size_t size = 16;
        while (size < records.size() * 2)
            size *= 2;
        table.assign(size, 0);
        for (uint32_t i = 0; i < records.size(); i++) {
            size_t slot = records[i].Read().hash & (size - 1);
            while (table[slot])
                slot = (slot + 1) & (size - 1);
            table[slot] = i + 1;
        }
    }

    std::vector<Record> records;
    std::vector<uint32_t> table;
    std::vector<uint8_t*> blocks; // until the process ends
    size_t room = 0;
};

void OpenAs(const char* name, const std::string& folder, size_t count)
{
    double start = NowSeconds();
    const int file = OpenFile(FileOf(folder), O_RDONLY);
    const Records records(file);
    close(file);
    PrintCaseOf(name, count, (NowSeconds() - start) * 1e3, "ms");
    Demand(records.All().size() == count, "reading all records");
}

void Use(const std::string& folder, size_t count)
{
    const int file = OpenFile(FileOf(folder), O_RDONLY);
    const Records records(file);
    std::vector<uint8_t> bytes(sizeof(Header) + previewBytes);
    uint64_t random = orderSeed;
    Latencies previews;
    for (size_t i = 0; i < previewCount; i++) {
        const uint64_t offset = records.All()[NextRandom(&random) % count].Read().preview;
        previews.Time([&] { ReadAt(file, bytes.data(), bytes.size(), offset); });
    }
    close(file);
    previews.Print("preview", count, 1e6, "us");
}

// What is left of every pair, with one read for data and preview, which lie side by side.
void CopyEverySecond(int source, int target, const std::vector<Records::Record>& records)
{
    constexpr size_t payloadBytes = 2 * sizeof(Header) + dataBytes + previewBytes;
    std::vector<uint8_t> payloads(payloadBytes);
    Writer writer(target, 0);
    writer.Add(Tag::Head, 0, nullptr, 0);
    for (size_t i = 0; i < records.size(); i += 2) {
        ReadAt(source, payloads.data(), payloads.size(), records[i].Read().data);
        writer.Add(Tag::Data, records[i].id, payloads.data() + sizeof(Header), dataBytes);
        writer.Add(Tag::Preview, records[i].id, payloads.data() + 2 * sizeof(Header) + dataBytes, previewBytes);
    }
    for (size_t i = 0; i < records.size(); i += 2)
        writer.Add(Tag::Record, records[i].id, records[i].bytes, records[i].length);
    writer.Add(Tag::End, 0, nullptr, 0);
    writer.Flush();
}

void Shrink(const std::string& folder, size_t count)
{
    constexpr Tag dead = Tag::Dead;
    const std::string fresh = FileOf(folder) + ".new";
    const int file = OpenFile(FileOf(folder), O_RDWR);
    const Records records(file);
    double start = NowSeconds();
    for (size_t i = 1; i < records.All().size(); i += 2) {
        const Fixed record = records.All()[i].Read();
        for (uint64_t offset : { record.data, record.preview, records.All()[i].chunk })
            WriteAt(file, &dead, sizeof dead, offset);
    }
    PrintCaseOf("delete_half_ms", count, (NowSeconds() - start) * 1e3, "ms");
    start = NowSeconds();
    const int target = OpenFile(fresh, O_CREAT | O_TRUNC | O_RDWR);
    CopyEverySecond(file, target, records.All());
    close(target);
    close(file);
    Demand(rename(fresh.c_str(), FileOf(folder).c_str()) == 0, "renaming");
    PrintCaseOf("compact_ms", count, (NowSeconds() - start) * 1e3, "ms");
    PrintCaseOf("compacted_MiB", count, MebibytesOf(FileOf(folder)), "MiB");
}

// The file is opened for each item, and its first chunk written anew.
void Commit(const std::string& folder, size_t count)
{
    constexpr Header head = { Tag::Head, 0, 0 };
    double start = NowSeconds();
    uint64_t end = sizeof head;
    for (size_t i = 0; i < count; i++) {
        const int file = OpenFile(FileOf(folder), O_CREAT | O_RDWR);
        WriteAt(file, &head, sizeof head, 0);
        Writer writer(file, end);
        Fixed record = {};
        writer.AddPayloads(i, record);
        writer.AddRecord(i, record);
        end = writer.End();
        writer.Add(Tag::End, 0, nullptr, 0);
        writer.Flush();
        close(file);
    }
    PrintCaseOf("commit_off_us", count, (NowSeconds() - start) * 1e6 / static_cast<double>(count), "us");
}

constexpr Step steps[] = {
    { "bulk", WriteAtOnce },
    { "open", [](const std::string& folder, size_t count) { OpenAs("open_index_map_ms", folder, count); } },
    { "cold", [](const std::string& folder, size_t count) { OpenAs("cold_open_index_map_ms", folder, count); } },
    { "use", Use },
    { "shrink", Shrink },
    { "log", WriteLog },
    { "openlog", [](const std::string& folder, size_t count) { OpenAs("log_open_index_map_ms", folder, count); } },
    { "commits", Commit },
};

} // namespace
} // namespace vx3::bench

int main(int count, char** arguments)
{
    vx3::bench::Payload(0, 1);
    return vx3::bench::RunStep(vx3::bench::steps, count - 1, arguments + 1);
}
