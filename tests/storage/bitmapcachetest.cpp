// Decoded previews: which stay, which go, and that nobody's goes while it is in use.

#include "itemfixture.h"

namespace {

using namespace vx3::tests;
using browser::DatabaseBitmapCache;
using browser::HostBitmap;
using Pin = DatabaseBitmapCache::Pin;

constexpr int32_t limit = 128;

class BitmapCache : public ItemTest
{
protected:
    static bool Has(DatabaseBitmapCache& cache, int32_t id) { return static_cast<bool>(cache.Get(id, 0)); }
    static void Fill(DatabaseBitmapCache& cache, int32_t first, int32_t count)
    {
        for (int32_t id = first; id < first + count; id++)
            ASSERT_TRUE(cache.Store(id, 0, Grey(static_cast<uint8_t>(id)).Get()));
    }
};

TEST_F(BitmapCache, TheLeastUsedOneOfAllLibrariesGoes)
{
    auto a = std::make_unique<DatabaseBitmapCache>(), b = std::make_unique<DatabaseBitmapCache>();
    Fill(*a, 0, 2);
    Fill(*b, 0, limit - 2);
    EXPECT_TRUE(Has(*a, 0)) << "and is the newest now";
    Fill(*b, 1000, 1);
    EXPECT_EQ(DatabaseBitmapCache::Count(), limit);
    EXPECT_FALSE(Has(*a, 1));
    EXPECT_TRUE(Has(*a, 0) && Has(*b, 1));
    Fill(*b, 2000, 1);
    EXPECT_FALSE(Has(*b, 0));
    a.reset(); // the libraries go in any order
    EXPECT_EQ(DatabaseBitmapCache::Count(), limit - 1);
    Fill(*b, 3000, 2);
    b.reset();
    EXPECT_EQ(DatabaseBitmapCache::Count(), 0);
}

TEST_F(BitmapCache, GrowsWhereEverythingIsInUse)
{
    DatabaseBitmapCache cache, other;
    for (int32_t id = 0; id < limit; id++)
        ASSERT_TRUE(cache.StoreShared(id, 0, Grey(static_cast<uint8_t>(id)), Pin::Yes));
    Fill(other, 0, 1);
    EXPECT_EQ(DatabaseBitmapCache::Count(), limit + 1);
    EXPECT_TRUE(cache.Release(5, 0));
    ASSERT_TRUE(other.StoreShared(1, 0, Grey(1), Pin::Yes));
    EXPECT_EQ(DatabaseBitmapCache::Count(), limit) << "what is not in use goes then";
    EXPECT_FALSE(Has(cache, 5) || Has(other, 0));
    for (int32_t id = 0; id < limit; id++)
        EXPECT_EQ(cache.Release(id, 0), id != 5);
    EXPECT_FALSE(cache.Release(1, 0)) << "nobody uses it";
    EXPECT_TRUE(Has(cache, 1));
}

TEST_F(BitmapCache, AForgottenOneIsHiddenAndLivesForItsUsers)
{
    DatabaseBitmapCache cache;
    VX3Bitmap* used = cache.StoreShared(1, 0, Grey(11), Pin::Yes);
    EXPECT_EQ(cache.GetShared(1, 0), used);
    EXPECT_FALSE(cache.Forget(1, 1) || cache.Forget(2, 0) || cache.Release(2, 0));
    EXPECT_TRUE(cache.Forget(1, 0));
    EXPECT_FALSE(cache.Forget(1, 0)) << "it is forgotten already";
    EXPECT_FALSE(Has(cache, 1));
    EXPECT_EQ(cache.GetShared(1, 0), nullptr);
    EXPECT_EQ(GreyOf(used), 11);
    EXPECT_TRUE(cache.Release(1, 0));
    EXPECT_EQ(GreyOf(used), 11);
    EXPECT_TRUE(cache.Release(1, 0));
    EXPECT_EQ(DatabaseBitmapCache::Count(), 0);
    EXPECT_FALSE(cache.Release(1, 0));
}

TEST_F(BitmapCache, OfTwoWithOneKeyTheNewerIsFound)
{
    DatabaseBitmapCache cache;
    ASSERT_TRUE(cache.Store(1, 0, Grey(1).Get()) && cache.Store(1, 0, Grey(2).Get()));
    EXPECT_EQ(DatabaseBitmapCache::Count(), 2);
    EXPECT_EQ(GreyOf(cache.Get(1, 0).Get()), 2);
    EXPECT_TRUE(cache.Forget(1, 0));
    EXPECT_EQ(DatabaseBitmapCache::Count(), 0) << "the older one must not come back";
}

// Without memory nothing is stored, and what was there stays.
TEST_F(BitmapCache, WithoutMemory)
{
    using namespace vx3::testing;
    const HostBitmap bitmap = Grey(7);
    const int64_t runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, [&](int64_t) {
        DatabaseBitmapCache cache;
        const bool isStored = cache.Store(1, 0, bitmap.Get());
        const VX3Bitmap* shared = cache.StoreShared(2, 0, Grey(8), Pin::Yes);
        EXPECT_EQ(DatabaseBitmapCache::Count(), isStored + (shared != nullptr));
        EXPECT_EQ(cache.Release(2, 0), shared != nullptr);
        (void)cache.Get(1, 0);
        EXPECT_EQ(cache.GetShared(1, 0) != nullptr, isStored);
    });
    EXPECT_GE(runs, 5);
}

} // namespace
