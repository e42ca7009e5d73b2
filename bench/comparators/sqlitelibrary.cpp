// The library in SQLite: records, previews and data in three tables, nothing synced.

#include <sqlite3.h>
#include <unistd.h>
#include <unordered_map>

#include "records.h"
#include "steps.h"

namespace vx3::bench {
namespace {

constexpr const char* forWriting = "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-65536;";
constexpr const char* forReading = "PRAGMA mmap_size=4294967296;";
constexpr const char* forCommits = "PRAGMA journal_mode=WAL; PRAGMA synchronous=OFF;";

constexpr const char* tables =
    "CREATE TABLE item(id INTEGER PRIMARY KEY, path TEXT UNIQUE, hash INTEGER, type INTEGER, subtype INTEGER, name TEXT,"
    " created INTEGER, changed INTEGER, settings BLOB);"
    "CREATE TABLE preview(id INTEGER PRIMARY KEY, bytes BLOB);"
    "CREATE TABLE data(id INTEGER PRIMARY KEY, bytes BLOB);";

std::string FileOf(const std::string& folder)
{
    return folder + "/library.sqlite";
}

class Database
{
public:
    Database(const std::string& folder, const char* pragmas)
    {
        Demand(sqlite3_open(FileOf(folder).c_str(), &database) == SQLITE_OK, "opening the database");
        Run(pragmas);
    }
    ~Database()
    {
        while (sqlite3_stmt* statement = sqlite3_next_stmt(database, nullptr))
            sqlite3_finalize(statement);
        sqlite3_close(database);
    }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void Run(const char* statements) { Demand(sqlite3_exec(database, statements, nullptr, nullptr, nullptr) == SQLITE_OK, statements); }
    sqlite3_stmt* Prepare(const char* statement)
    {
        sqlite3_stmt* prepared = nullptr;
        Demand(sqlite3_prepare_v2(database, statement, -1, &prepared, nullptr) == SQLITE_OK, statement);
        return prepared;
    }

private:
    sqlite3* database = nullptr;
};

// Puts items into a database that has its tables.
class Inserter
{
public:
    explicit Inserter(Database& database)
        : addItem(database.Prepare("INSERT INTO item VALUES(?,?,?,?,?,?,?,?,?)"))
        , addPreview(database.Prepare("INSERT INTO preview VALUES(?,?)"))
        , addData(database.Prepare("INSERT INTO data VALUES(?,?)"))
    {
    }
    void Add(size_t number)
    {
        const ItemRow row = MakeRow(number);
        const auto id = static_cast<sqlite3_int64>(number) + 1;
        const sqlite3_int64 numbers[] = { row.hash, row.type, row.subtype };
        BindText(2, row.path);
        for (int i = 0; i < 3; i++)
            sqlite3_bind_int64(addItem, 3 + i, numbers[i]);
        BindText(6, row.name);
        sqlite3_bind_int64(addItem, 7, row.created);
        sqlite3_bind_int64(addItem, 8, row.changed);
        sqlite3_bind_blob(addItem, 9, row.settings.data(), static_cast<int>(row.settings.size()), SQLITE_STATIC);
        Put(addItem, id);
        PutBytes(addPreview, id, Payload(number, previewBytes), previewBytes);
        PutBytes(addData, id, Payload(number, dataBytes), dataBytes);
    }

private:
    void BindText(int column, const std::string& text)
    {
        sqlite3_bind_text(addItem, column, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }
    static void PutBytes(sqlite3_stmt* statement, sqlite3_int64 id, const uint8_t* bytes, size_t size)
    {
        sqlite3_bind_blob(statement, 2, bytes, static_cast<int>(size), SQLITE_STATIC);
        Put(statement, id);
    }
    static void Put(sqlite3_stmt* statement, sqlite3_int64 id)
    {
        sqlite3_bind_int64(statement, 1, id);
        Demand(sqlite3_step(statement) == SQLITE_DONE, "an insertion");
        sqlite3_reset(statement);
    }

    sqlite3_stmt* const addItem;
    sqlite3_stmt* const addPreview;
    sqlite3_stmt* const addData;
};

void WriteAtOnce(const std::string& folder, size_t count)
{
    double start = NowSeconds();
    {
        Database database(folder, forWriting);
        database.Run(tables);
        Inserter inserter(database);
        database.Run("BEGIN");
        for (size_t i = 0; i < count; i++)
            inserter.Add(i);
        database.Run("COMMIT");
    }
    PrintCaseOf("bulk_ms", count, (NowSeconds() - start) * 1e3, "ms");
    PrintCaseOf("file_MiB", count, MebibytesOf(FileOf(folder)), "MiB");
}

std::string BytesAt(sqlite3_stmt* row, int column)
{
    return std::string(static_cast<const char*>(sqlite3_column_blob(row, column)), static_cast<size_t>(sqlite3_column_bytes(row, column)));
}

ItemRow RowOf(sqlite3_stmt* row)
{
    return { BytesAt(row, 0),
             BytesAt(row, 1),
             static_cast<uint32_t>(sqlite3_column_int64(row, 2)),
             sqlite3_column_int(row, 3),
             sqlite3_column_int(row, 4),
             sqlite3_column_int64(row, 5),
             sqlite3_column_int64(row, 6),
             BytesAt(row, 7) };
}

void Open(const std::string& folder, size_t count)
{
    double before = PrivateBytes(), start = NowSeconds();
    Database database(folder, forReading);
    sqlite3_stmt* select = database.Prepare("SELECT path,name,hash,type,subtype,created,changed,settings FROM item");
    std::vector<ItemRow> items;
    std::unordered_map<uint32_t, size_t> byHash;
    while (sqlite3_step(select) == SQLITE_ROW) {
        items.push_back(RowOf(select));
        byHash.emplace(items.back().hash, items.size() - 1);
    }
    PrintCaseOf("open_index_ms", count, (NowSeconds() - start) * 1e3, "ms");
    PrintCaseOf("loaded_bytes_per_item", count, (PrivateBytes() - before) / static_cast<double>(count), "B");
    Demand(items.size() == count, "reading all items");
}

// In one transaction, so that a statement has no lock to take.
void Use(const std::string& folder, size_t count)
{
    Database database(folder, forReading);
    sqlite3_stmt* find = database.Prepare("SELECT id,type FROM item WHERE path=?");
    sqlite3_stmt* read = database.Prepare("SELECT bytes FROM preview WHERE id=?");
    std::vector<uint8_t> preview(previewBytes);
    uint64_t random = orderSeed;
    size_t found = 0;
    Latencies lookups, previews;
    database.Run("BEGIN");
    for (size_t i = 0; i < lookupCount; i++) {
        const std::string path = PathOfItem(NextRandom(&random) % count);
        lookups.Time([&] {
            sqlite3_bind_text(find, 1, path.data(), static_cast<int>(path.size()), SQLITE_STATIC);
            found += sqlite3_step(find) == SQLITE_ROW;
            sqlite3_reset(find);
        });
    }
    for (size_t i = 0; i < previewCount; i++) {
        const auto id = static_cast<sqlite3_int64>(NextRandom(&random) % count) + 1;
        previews.Time([&] {
            sqlite3_bind_int64(read, 1, id);
            found += sqlite3_step(read) == SQLITE_ROW && sqlite3_column_bytes(read, 0) == static_cast<int>(previewBytes);
            std::memcpy(preview.data(), sqlite3_column_blob(read, 0), previewBytes);
            sqlite3_reset(read);
        });
    }
    Demand(found == lookupCount + previewCount, "finding all that is asked for");
    lookups.Print("lookup", count, 1e9, "ns");
    previews.Print("preview", count, 1e6, "us");
}

void Shrink(const std::string& folder, size_t count)
{
    double start = NowSeconds();
    {
        Database database(folder, forWriting);
        database.Run("BEGIN; DELETE FROM item WHERE id%2=0; DELETE FROM preview WHERE id%2=0; DELETE FROM data WHERE id%2=0; COMMIT;");
        PrintCaseOf("delete_half_ms", count, (NowSeconds() - start) * 1e3, "ms");
        start = NowSeconds();
        database.Run("VACUUM");
    }
    PrintCaseOf("compact_ms", count, (NowSeconds() - start) * 1e3, "ms");
    PrintCaseOf("compacted_MiB", count, MebibytesOf(FileOf(folder)), "MiB");
}

void Commit(const std::string& folder, size_t count)
{
    Database database(folder, forCommits);
    database.Run(tables);
    Inserter inserter(database);
    double start = NowSeconds();
    for (size_t i = 0; i < count; i++) {
        database.Run("BEGIN");
        inserter.Add(i);
        database.Run("COMMIT");
    }
    PrintCaseOf("commit_wal_off_us", count, (NowSeconds() - start) * 1e6 / static_cast<double>(count), "us");
}

constexpr Step steps[] = {
    { "bulk", WriteAtOnce }, { "open", Open }, { "use", Use }, { "shrink", Shrink }, { "commits", Commit },
};

} // namespace
} // namespace vx3::bench

int main(int count, char** arguments)
{
    vx3::bench::Payload(0, 1);
    return vx3::bench::RunStep(vx3::bench::steps, count - 1, arguments + 1);
}
