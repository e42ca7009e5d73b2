// The small host's answers beside those of the core host, question by question.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

#include "core/corehost.h"
#include "vx3/host.h"

extern "C" const VX3Host* MinimalHostTable(void);

namespace vx3 {

namespace {

// A text of one of the two hosts.
class Text
{
public:
    Text(const VX3Host* newHost, const std::u16string& units = {})
        : host(newHost)
    {
        host->text->setUnits(&value, reinterpret_cast<const VX3Unit*>(units.data()), static_cast<int32_t>(units.size()));
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { host->text->destruct(&value); }

    operator VX3String*() { return &value; }
    std::u16string Units() const
    {
        int32_t length = 0;
        const VX3Unit* units = host->text->view(&value, &length);
        return std::u16string(units, units + length);
    }

private:
    const VX3Host* host;
    VX3String value = {};
};

class Path
{
public:
    Path(const VX3Host* newHost, const std::u16string& text)
        : host(newHost)
    {
        Text units(host, text);
        host->path->setText(&value, units);
    }
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;
    ~Path() { host->path->destruct(&value); }

    operator VX3Path*() { return &value; }
    std::u16string Units() const
    {
        Text text(host);
        host->path->getText(&value, text);
        return text.Units();
    }

private:
    const VX3Host* host;
    VX3Path value = {};
};

class MinimalTable : public ::testing::Test
{
protected:
    MinimalTable()
        : core(core::SettingsBelow(profile))
        , hosts{ MinimalHostTable(), core.Table() }
    {
    }
    ~MinimalTable() override { std::filesystem::remove_all(profile); }

    // The same question to both; the answers are to be equal.
    template <class Question>
    void Compare(Question&& question)
    {
        EXPECT_EQ(question(hosts[0]), question(hosts[1]));
    }

    std::string profile = ::testing::TempDir() + "minimaltable" + std::to_string(getpid());
    core::CoreHost core;
    const VX3Host* hosts[2];
};

int Sign(int32_t number)
{
    return (number > 0) - (number < 0);
}

// Few different units, so that texts meet: letters in both cases, digits, separators,
// surrogates in pairs and alone, and what a folding by language would treat specially.
std::u16string RandomText(std::mt19937& random, size_t mostUnits)
{
    static const std::u16string letters = u"aAbB0019./:\\ÄäßİıΣςσЖжǅ\u212A\xD83D\xDE00\xDCFF\xDC5C ";
    std::u16string text(random() % (mostUnits + 1), u' ');
    for (char16_t& unit : text)
        unit = letters[random() % letters.size()];
    return text;
}

constexpr int rounds = 3000;
constexpr size_t shortText = 8;

} // namespace

TEST_F(MinimalTable, LowerCaseOfEveryUnit)
{
    std::u16string all(0x10000, u' ');
    for (size_t unit = 0; unit < all.size(); ++unit)
        all[unit] = static_cast<char16_t>(unit);
    Compare([&](const VX3Host* host) {
        Text text(host, all);
        EXPECT_TRUE(host->text->toLower(text, text));
        return text.Units();
    });
}

TEST_F(MinimalTable, TextsAreComparedAndOrderedAlike)
{
    std::mt19937 random(1);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        std::u16string first = RandomText(random, shortText);
        std::u16string second = RandomText(random, shortText);
        Compare([&](const VX3Host* host) {
            Text a(host, first);
            Text b(host, second);
            VX3Unit keys[2][64];
            int32_t lengths[2] = { host->text->orderKey(a, keys[0], 64), host->text->orderKey(b, keys[1], 64) };
            EXPECT_LE(lengths[0], static_cast<int32_t>(2 * first.size() + 1));
            bool before = std::lexicographical_compare(keys[0], keys[0] + lengths[0], keys[1], keys[1] + lengths[1]);
            bool behind = std::lexicographical_compare(keys[1], keys[1] + lengths[1], keys[0], keys[0] + lengths[0]);
            int order = Sign(host->text->order(a, b));
            EXPECT_TRUE(before ? order < 0 : !behind || order > 0) << "the keys are to stand in the order of `order`";
            return std::vector<int>{ order, Sign(host->text->compare(a, b)), Sign(host->text->compareFolding(a, b)), before, behind };
        });
    }
}

TEST_F(MinimalTable, TextsAreCutAndSearchedAlike)
{
    std::mt19937 random(2);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        std::u16string whole = RandomText(random, 3 * shortText);
        std::u16string other = RandomText(random, 2);
        int32_t at = static_cast<int32_t>(random() % 30) - 2;
        int32_t count = static_cast<int32_t>(random() % 10) - 1;
        Compare([&](const VX3Host* host) {
            Text text(host, whole);
            Text what(host, other);
            Text part(host);
            host->text->part(text, at, count, part);
            std::vector<int32_t> found = { host->text->find(text, what, at), host->text->findBackward(text, what, at),
                                           host->text->matchesAt(text, at, what, 0), host->text->matchesAt(text, at, what, 1) };
            host->text->erase(text, at, count > 0 ? count : 0);
            host->text->insert(text, at, what);
            host->text->insert(text, at, text);
            char bytes[16];
            found.push_back(host->text->toUtf8(text, bytes, sizeof(bytes)));
            return std::make_tuple(found, part.Units(), text.Units(), std::string(bytes));
        });
    }
}

TEST_F(MinimalTable, BytesAndTextsOfNumbersAreReadAlike)
{
    const char* const rows[] = { "",
                                 "0",
                                 "-0",
                                 "+7",
                                 "12 ",
                                 " 12",
                                 "9223372036854775807",
                                 "9223372036854775808",
                                 "-9223372036854775808",
                                 "1.5",
                                 "1,5",
                                 ".5",
                                 "5.",
                                 "1e3",
                                 "-",
                                 "0x10",
                                 "1e400",
                                 "\xC3\xA4",
                                 "\xC3",
                                 "\xED\xA0\x80",
                                 "\xF0\x9F\x98\x80",
                                 "\xF5\x80",
                                 "\xC0\xAF" };
    for (const char* row : rows) {
        for (int32_t encoding : { VX3_ENCODING_PLAIN, VX3_ENCODING_UTF8 }) {
            SCOPED_TRACE(row);
            Compare([&](const VX3Host* host) {
                Text text(host);
                int64_t whole = -1;
                double number = -1;
                host->text->set(text, row, -1, encoding);
                VX3Bool isWhole = host->text->toInteger(text, &whole);
                VX3Bool isNumber = host->text->toFloat(text, &number);
                return std::make_tuple(text.Units(), isWhole, whole, isNumber, number);
            });
        }
    }
}

TEST_F(MinimalTable, NumbersAreWrittenAlike)
{
    for (double number : { 0.0, -1.5, 0.1, 1e21, 1e-7, 123456.789, 2.5 }) {
        for (int32_t decimals : { -1, 0, 3 }) {
            SCOPED_TRACE(number);
            Compare([&](const VX3Host* host) {
                Text text(host);
                host->text->setFloat(text, number, decimals);
                double back = 0;
                host->text->toFloat(text, &back);
                EXPECT_TRUE(decimals >= 0 || back == number);
                return decimals < 0 ? u"" : text.Units(); // of the shortest forms there may be several
            });
        }
    }
    for (int64_t number : { int64_t(0), int64_t(-7), INT64_MIN, INT64_MAX }) {
        Compare([&](const VX3Host* host) {
            Text text(host);
            host->text->setInteger(text, number, 3);
            return text.Units();
        });
    }
}

TEST_F(MinimalTable, PathsAreTakenApartAndJoinedAlike)
{
    std::mt19937 random(3);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        std::u16string first = (round % 4 ? u"/" : u"") + RandomText(random, 2 * shortText);
        std::u16string second = RandomText(random, shortText);
        Compare([&](const VX3Host* host) {
            Path path(host, first);
            Path other(host, second);
            Text name(host, second);
            Text text(host);
            std::vector<std::u16string> answers = { path.Units() };
            auto note = [&] { answers.push_back(text.Units()); };
            host->path->getLast(path, text), note();
            host->path->getSuffix(path, text), note();
            host->path->getUrlTail(path, text), note();
            host->path->setUrlTail(other, text), answers.push_back(other.Units());
            EXPECT_EQ(first.starts_with(u'/') ? other.Units() : u"", first.starts_with(u'/') ? path.Units() : u"") << "there and back";
            host->path->getDirectory(path, other), answers.push_back(other.Units());
            host->path->join(path, name, other), answers.push_back(other.Units());
            host->path->setDirectory(other, path), answers.push_back(other.Units());
            host->path->setLast(other, name), answers.push_back(other.Units());
            answers.push_back(host->path->isNameAllowed(name) ? u"allowed" : u"not allowed");
            answers.push_back(host->path->equals(path, other) ? u"equal" : u"different");
            return answers;
        });
    }
}

TEST_F(MinimalTable, ContainersKeepOrderTypesAndNestedAddresses)
{
    Compare([&](const VX3Host* host) {
        const VX3ContainerServices& section = *host->container;
        VX3Container container = {};
        VX3Container copy = {};
        Text text(host, u"value");
        section.setId(&container, 7);
        section.setInt32(&container, 5, -5);
        section.setContainer(&container, 3, nullptr);
        VX3Container* nested = section.getContainer(&container, 3);
        section.setText(nested, 1, text);
        section.setBytes(nested, 2, "abc", 3);
        for (int32_t key = 100; key < 150; ++key)
            section.setFloat(&container, key, key / 2.0);
        section.setText(&container, 5, text); // another type, the same place
        EXPECT_TRUE(section.remove(&container, 120));
        EXPECT_FALSE(section.remove(&container, 120));
        EXPECT_EQ(section.getContainer(&container, 3), nested);
        section.copy(&copy, &container);
        EXPECT_TRUE(section.equals(&copy, &container));
        section.setBytes(section.getContainer(&copy, 3), 2, "abd", 3);
        EXPECT_FALSE(section.equals(&copy, &container)) << "a copy is deep, and so is the comparison";

        std::vector<int32_t> answers = { section.getId(&copy), section.count(&container), section.getInt32(&container, 5, 99),
                                         section.typeOf(&container, 4) };
        int32_t key = 0;
        int32_t type = 0;
        for (int32_t place = -1; place <= section.count(&container); ++place)
            if (section.entryAt(&container, place, &key, &type))
                answers.insert(answers.end(), { place, key, type });
        section.clear(&container);
        answers.insert(answers.end(), { section.count(&container), section.getId(&container) });
        section.destruct(&container);
        section.destruct(&copy);
        return answers;
    });
}

TEST_F(MinimalTable, LinesOfTextsAreReadAlike)
{
    const std::string folder = profile + "/module/res/strings";
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/us.txt") << "0 = English\n1=tight\n2 \t=\t wide \r\n3 = a \\\\n\\n\\t\\\n4 = \xC3\x84\xFF = b\n"
                                         "5 none\n 6 = indented\n-7 = negative\n+8 = plus\n9x = letter\n# 10 = comment\n11 =\n"
                                         "4294967308 = far\n2147483647 = last\n99999999999999999999 = too far\n= none\n1 = later";
    const std::string program = profile + "/module/browser.so";
    for (int32_t number : { -7, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, INT32_MAX, INT32_MIN })
        Compare([&](const VX3Host* host) {
            Path path(host, std::u16string(program.begin(), program.end()));
            Text text(host);
            VX3Resources* resources = host->resource->load(path);
            EXPECT_NE(resources, nullptr);
            VX3Bool isThere = host->resource->text(resources, number, text);
            host->resource->free(resources);
            return std::pair(isThere, text.Units());
        });
}

TEST_F(MinimalTable, WalksGiveTheSameEntries)
{
    namespace files = std::filesystem;
    files::path folder = files::path(profile) / "walk";
    files::create_directories(folder / "below" / "deeper");
    std::ofstream(folder / "file.txt") << "12345";
    std::ofstream(folder / ".hidden") << "1";
    std::ofstream(folder / "read\\only\xFF") << "123";
    files::permissions(folder / "read\\only\xFF", files::perms::owner_read);
    files::create_symlink("file.txt", folder / "link");
    files::create_symlink("missing", folder / "broken");
    files::create_directory_symlink("..", folder / "ring");
    files::create_directory_symlink("below/deeper", folder / "other");
    std::string native = folder.string();
    for (uint32_t options : { 0u, uint32_t(VX3_WALK_HIDDEN), uint32_t(VX3_WALK_READONLY), uint32_t(VX3_WALK_HIDDEN | VX3_WALK_READONLY) }) {
        Compare([&](const VX3Host* host) {
            std::map<std::u16string, std::vector<int64_t>> entries;
            Path path(host, std::u16string(native.begin(), native.end()));
            VX3FolderEntry entry = {};
            VX3FolderWalk* walk = host->folder->startWalk(path, options);
            while (walk && host->folder->nextEntry(walk, &entry)) {
                int32_t length = 0;
                const VX3Unit* units = host->text->view(&entry.name, &length);
                entries[std::u16string(units, units + length)] = { entry.size, entry.flags, entry.modified.year, entry.modified.minute };
            }
            EXPECT_TRUE(walk && host->folder->walkIsSound(walk));
            host->folder->endWalk(walk);
            host->text->destruct(&entry.name);
            EXPECT_GE(entries.size(), 5u);
            return entries;
        });
    }
}

// What the small host does not offer answers as the headers let it fail.
TEST_F(MinimalTable, FoldersAreNotWatchedAndMenusRefused)
{
    const VX3Host* small = hosts[0];
    auto hear = [](void*) {};
    EXPECT_EQ(small->folder->watch(Path(small, u"/"), hear, nullptr), nullptr);
    small->folder->unwatch(nullptr);
    EXPECT_EQ(small->registry->registerMenu(1, Text(small, u"Menu")), 0);
}

TEST_F(MinimalTable, TheLocksKeepThreadsApart)
{
    const VX3LockServices& locks = *hosts[0]->lock;
    constexpr int threads = 4;
    constexpr int turns = 10000;
    uint32_t word32 = 0;
    uint64_t word64 = 0;
    uint32_t shared = 0;
    int64_t counts[3] = {}; // each under the lock of its place
    bool sawHalf = false;   // under `shared`
    auto body = [&] {
        for (int turn = 0; turn < turns; ++turn) {
            locks.lock32(&word32, 1), ++counts[0], locks.unlock32(&word32);
            locks.lock64(&word64, 1), ++counts[1], locks.unlock64(&word64);
            locks.lockExclusive(&shared, 1);
            sawHalf = sawHalf || counts[2] % 2 != 0;
            ++counts[2];
            ++counts[2];
            locks.unlockExclusive(&shared);
            locks.lockShared(&shared, 1);
            EXPECT_EQ(counts[2] % 2, 0);
            locks.unlockShared(&shared);
        }
    };
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i)
        running.emplace_back(body);
    for (std::thread& thread : running)
        thread.join();
    EXPECT_EQ(counts[0], threads * turns);
    EXPECT_EQ(counts[1], threads * turns);
    EXPECT_EQ(counts[2], 2 * threads * turns);
    EXPECT_FALSE(sawHalf);
    EXPECT_EQ(word32 + word64 + shared, 0u) << "a free lock is 0";
}

TEST_F(MinimalTable, AWriterThatWaitedLeavesAFreeLock)
{
    const VX3LockServices& locks = *hosts[0]->lock;
    uint32_t word = 0;
    locks.lockShared(&word, 1);
    uint32_t heldByReader = word;
    std::thread writer([&] {
        locks.lockExclusive(&word, 1);
        locks.unlockExclusive(&word);
    });
    while (__atomic_load_n(&word, __ATOMIC_RELAXED) == heldByReader) // until the writer has shown that it waits
        std::this_thread::yield();
    locks.unlockShared(&word);
    writer.join();
    EXPECT_EQ(word, 0u);
}

TEST_F(MinimalTable, NoReaderComesInWhileAWriterIsInside)
{
    constexpr int chances = 2000;
    const VX3LockServices& locks = *hosts[0]->lock;
    uint32_t word = 0;
    std::atomic<bool> begun = false;
    std::atomic<bool> isInside = false;
    locks.lockExclusive(&word, 1);
    std::thread reader([&] {
        begun = true;
        locks.lockShared(&word, 1);
        isInside = true;
        locks.unlockShared(&word);
    });
    for (int chance = 0; chance < chances || !begun; ++chance)
        std::this_thread::yield();
    EXPECT_FALSE(isInside);
    locks.unlockExclusive(&word);
    reader.join();
    EXPECT_TRUE(isInside);
    EXPECT_EQ(word, 0u);
}

namespace {

// The object of a thread that runs until it is told to stop.
struct Body {
    const VX3ThreadServices* threads;
    VX3Thread* thread = nullptr;
    VX3Semaphore* begun = nullptr;
    const VX3LockServices* locks = nullptr;
    bool destructed = false;
    bool wasMain = true;
};

const VX3ThreadTable bodyTable = { [](void* object) { static_cast<Body*>(object)->destructed = true; }, nullptr,
                                   [](void* object) {
                                       auto* body = static_cast<Body*>(object);
                                       body->wasMain = body->threads->isMainThread();
                                       body->locks->give(body->begun);
                                       while (!body->threads->shouldStop(body->thread))
                                           body->threads->sleep(1);
                                   },
                                   [](void*) { return "body"; } };

} // namespace

TEST_F(MinimalTable, AThreadRunsOnceUntilItIsToldToEnd)
{
    for (const VX3Host* host : hosts) {
        Body body = { host->thread };
        body.locks = host->lock;
        body.begun = host->lock->createSemaphore(0);
        body.thread = host->thread->create(&body, &bodyTable);
        host->thread->wait(body.thread); // never started: at once
        ASSERT_TRUE(host->thread->start(body.thread, 1, VX3_PRIORITY_NORMAL));
        host->lock->take(body.begun);
        EXPECT_TRUE(host->thread->isRunning(body.thread));
        EXPECT_FALSE(host->thread->start(body.thread, 1, VX3_PRIORITY_NORMAL));
        host->thread->end(body.thread);
        host->thread->wait(body.thread);
        EXPECT_FALSE(host->thread->isRunning(body.thread));
        EXPECT_FALSE(body.destructed);
        host->thread->free(body.thread);
        EXPECT_TRUE(body.destructed);
        EXPECT_FALSE(body.wasMain);
        host->lock->freeSemaphore(body.begun);
    }
}

} // namespace vx3
