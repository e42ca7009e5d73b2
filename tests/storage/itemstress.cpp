// Threads that read, write, move and delete the same items, over two libraries with one
// small set of paths, while a third library comes and goes. Nobody ever reads anything but
// what was written as a whole, nothing hangs, and the files are sound at the end.

#include <array>
#include <atomic>
#include <random>
#include <thread>

#include "itemfixture.h"
#include "support/watchdog.h"

namespace {

using namespace vx3::tests;
using browser::BrowserDatabase;

constexpr int paths = 12;
constexpr const char* guestFile = "/lib/guest.libvx";

class ItemStress : public ItemTest
{
protected:
    static std::string PathOfNumber(unsigned number) { return "x/" + std::to_string(number % paths); }
    static std::string PathOfGuest(unsigned number) { return "guest/" + std::to_string(number % paths); }

    // Text that says itself whether it is whole.
    static std::string Payload(std::mt19937& random)
    {
        const std::string piece = std::to_string(random() % 10);
        std::string text;
        for (unsigned i = random() % 3000; i > 0; i--)
            text += piece;
        return std::to_string(text.size()) + ":" + text;
    }
    static bool IsWhole(const std::string& text)
    {
        const size_t colon = text.find(':');
        return colon != std::string::npos && std::stoul(text) == text.size() - colon - 1
            && text.find_first_not_of(text.back(), colon + 1) == std::string::npos;
    }

    static void Write(BrowserDatabase& library, std::mt19937& random)
    {
        const Item item = OpenItem(library, PathOfNumber(static_cast<unsigned>(random())).c_str());
        ASSERT_TRUE(item);
        const std::string bytes = Payload(random);
        EXPECT_TRUE(SetData(*item, bytes, random() % 2));
        EXPECT_TRUE(item->SetName(TextOf(bytes.substr(0, 8))));
        if (random() % 4 == 0) {
            EXPECT_TRUE(item->AddPreview(Grey(static_cast<uint8_t>(random())).Get(), 1, 1, {}, true));
        }
        if (random() % 8 == 0)
            (void)item->DeleteAllPreviews();
    }

    void Read(std::mt19937& random)
    {
        const auto number = static_cast<unsigned>(random());
        const bool isGuest = random() % 4 == 0;
        const Item item = Find(isGuest ? PathOfGuest(number) : PathOfNumber(number));
        if (!item)
            return;
        guests += isGuest;
        browser::Block data;
        if (item->GetData(data)) {
            EXPECT_TRUE(IsWhole(StringOf(data)));
            CountIdleReader(item->Library());
        }
        (void)item->GetDataSize(true);
        (void)item->GetName(true);
        browser::PreviewInfo info;
        if (item->PreviewAt(0, info)) {
            EXPECT_EQ(info.number, 1);
        }
        (void)item->GetPreview(1);
        if (const VX3Bitmap* shared = item->GetSharedPreview(1)) {
            EXPECT_GE(GreyOf(shared), 0);
            item->ReleasePreview(1);
        }
    }

    // Is a file left behind for the next reader? Taken and left again, as readers do.
    void CountIdleReader(BrowserDatabase& library)
    {
        const browser::ReadGuard guard(library.Lock(), browser::LockRank::Library);
        browser::IdleReader& idle = library.State().idleReader;
        if (browser::BinaryFile* file = library.State().openCount == 0 ? idle.Take() : nullptr) {
            idle.Leave(file);
            ++idleReaders;
        }
    }

    void DoSomething(BrowserDatabase& own, std::mt19937& random)
    {
        const auto any = [&random] { return TextOf(PathOfNumber(static_cast<unsigned>(random()))); };
        switch (random() % 16) {
        case 0: (void)own.DeleteItem(any()); break;
        case 1:
        case 2: moves += own.MoveItem(any(), any()); break;
        case 3: EXPECT_TRUE(own.Flush()); break;
        case 4:
            if (own.HoldFile()) {
                Write(own, random);
                own.ReleaseFile();
            }
            break;
        case 5:
        case 6:
        case 7: Write(own, random); break;
        default: Read(random);
        }
    }

    // Opened, read and closed again, with whoever uses its items meanwhile.
    void Visit()
    {
        BrowserDatabase& guest = Make(guestFile);
        EXPECT_TRUE(guest.Load());
        std::this_thread::yield();
        EXPECT_TRUE(guest.Flush());
        browser::CloseLibrary(&guest);
    }

    void MakeGuest()
    {
        FileBytes file;
        file.Head().Chunk("difm", 0, InfoImage("preset://guest.libvx"));
        for (int i = 0; i < paths; i++) {
            file.Chunk("ditm", i + 1, ItemImage(PathOfNumber(static_cast<unsigned>(i)).c_str()));
            file.Chunk("ditm", paths + i + 1, ItemImage(PathOfGuest(static_cast<unsigned>(i)).c_str()));
        }
        Put(file.End().bytes, guestFile);
    }

    // What the threads have come across, so that nothing of it is left out unseen.
    std::atomic<int64_t> moves = 0;       // from one node of the index to another
    std::atomic<int64_t> idleReaders = 0; // files that a reader left open
    std::atomic<int64_t> guests = 0;      // items of the library that comes and goes

    void ExpectSound(const char* path)
    {
        BrowserDatabase& library = Open(path);
        EXPECT_FALSE(library.IsDamaged());
        for (size_t place = 0; place < library.State().items.PlaceCount(); place++)
            if (const browser::ItemRecord* record = library.State().items.At(place)) {
                const Item item = Find(Utf8(record->GetPath()));
                ASSERT_TRUE(item);
                if (item->GetDataSize(false) >= 0) {
                    EXPECT_TRUE(IsWhole(DataOf(*item)));
                }
            }
    }
};

TEST_F(ItemStress, Storm)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    std::array<BrowserDatabase*, 2> libraries = { &MakeEmpty(), &MakeEmpty("/lib/b.libvx") };
    MakeGuest();
    std::atomic<bool> stop = false;
    std::atomic<int64_t> operations = 0;
    std::array<std::thread, 8> workers;
    for (size_t i = 0; i < workers.size(); i++)
        workers[i] = std::thread([&, i] {
            std::mt19937 random(static_cast<unsigned>(i));
            for (; !stop; operations++)
                if (i == 0)
                    Visit();
                else
                    DoSomething(*libraries[i % libraries.size()], random);
        });
    std::this_thread::sleep_for(StressSeconds());
    stop = true;
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_GT(operations, 100);
    RecordProperty("operations", std::to_string(operations));
    for (const auto& [name, count] : { std::pair("moves", &moves), std::pair("idleReaders", &idleReaders), std::pair("guests", &guests) }) {
        EXPECT_GT(*count, 10) << name;
        RecordProperty(name, std::to_string(*count));
    }
    for (BrowserDatabase* library : libraries) {
        EXPECT_TRUE(library->Flush());
        EXPECT_GE(library->CountItems(), 0);
    }
    browser::CloseAll(false, false);
    for (const char* path : { usualFile, "/lib/b.libvx" })
        ExpectSound(path);
}

} // namespace
