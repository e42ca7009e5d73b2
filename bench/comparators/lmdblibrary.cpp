// The records of the library in LMDB, by their paths. Only what a lookup needs: previews and data would lie in trees of their own.

#include <lmdb.h>

#include "records.h"
#include "steps.h"

namespace vx3::bench {
namespace {

constexpr size_t addressSpace = size_t(4) << 30;

void Check(int result)
{
    Demand(result == MDB_SUCCESS, mdb_strerror(result));
}

// One transaction over one database of the file.
class Transaction
{
public:
    Transaction(const std::string& folder, unsigned flags)
    {
        Check(mdb_env_create(&environment));
        Check(mdb_env_set_mapsize(environment, addressSpace));
        Check(mdb_env_open(environment, (folder + "/library.lmdb").c_str(), MDB_NOSUBDIR | flags, 0644));
        Check(mdb_txn_begin(environment, nullptr, flags & MDB_RDONLY, &transaction));
        Check(mdb_dbi_open(transaction, nullptr, 0, &database));
    }
    ~Transaction()
    {
        Check(mdb_txn_commit(transaction));
        mdb_env_close(environment);
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Put(const std::string& key, const std::string& bytes)
    {
        MDB_val name = ValueOf(key), value = ValueOf(bytes);
        Check(mdb_put(transaction, database, &name, &value, 0));
    }
    bool Find(const std::string& key)
    {
        MDB_val name = ValueOf(key), value;
        return mdb_get(transaction, database, &name, &value) == MDB_SUCCESS;
    }

private:
    static MDB_val ValueOf(const std::string& bytes) { return { bytes.size(), const_cast<char*>(bytes.data()) }; }

    MDB_env* environment = nullptr;
    MDB_txn* transaction = nullptr;
    MDB_dbi database = 0;
};

void Write(const std::string& folder, size_t count)
{
    Transaction transaction(folder, MDB_NOSYNC);
    for (size_t i = 0; i < count; i++)
        transaction.Put(PathOfItem(i), std::string(recordBytes, 'x'));
}

void Use(const std::string& folder, size_t count)
{
    Transaction transaction(folder, MDB_RDONLY);
    uint64_t random = orderSeed;
    size_t found = 0;
    Latencies lookups;
    for (size_t i = 0; i < lookupCount; i++) {
        const std::string path = PathOfItem(NextRandom(&random) % count);
        lookups.Time([&] { found += transaction.Find(path); });
    }
    Demand(found == lookupCount, "finding an item");
    lookups.Print("lookup", count, 1e9, "ns");
}

constexpr Step steps[] = { { "bulk", Write }, { "use", Use } };

} // namespace
} // namespace vx3::bench

int main(int count, char** arguments)
{
    return vx3::bench::RunStep(vx3::bench::steps, count - 1, arguments + 1);
}
