// What reading costs, and what it gives while others change the file.
#include <random>

#include "core/filebuffer.h"
#include "openfile.h"

namespace vx3::core {

namespace {

constexpr int64_t kilobyte = 1024;
constexpr int64_t megabyte = 1024 * kilobyte;

// A file whose bytes tell their offset, and which keeps what it was asked.
class CountingFile : public RawFile
{
public:
    struct Asked {
        int64_t reads = 0;
        int64_t bytes = 0;
        std::vector<ByteRange> announced;
    };
    CountingFile(int64_t fileLength, Asked& whatWasAsked)
        : length(fileLength)
        , asked(whatWasAsked)
    {
    }
    static char ByteAt(int64_t offset) { return static_cast<char>(offset ^ offset >> 8 ^ offset >> 16); }

    int64_t ReadAt(int64_t offset, void* bytes, int64_t count) override
    {
        const int64_t got = std::max<int64_t>(0, std::min(count, length - offset));
        for (int64_t i = 0; i < got; ++i)
            static_cast<char*>(bytes)[i] = ByteAt(offset + i);
        asked.reads++;
        asked.bytes += got;
        return got;
    }
    void Announce(int64_t offset, int64_t count) override { asked.announced.push_back({ offset, count }); }
    bool WriteAt(int64_t, const void*, int64_t) override { return false; }
    int64_t Length() override { return length; }
    bool Sync() override { return true; }
    bool Close() override { return true; }

private:
    int64_t length;
    Asked& asked;
};

bool IsRight(const std::string& bytes, int64_t offset)
{
    for (size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != CountingFile::ByteAt(offset + static_cast<int64_t>(i)))
            return false;
    return true;
}

class FileRead : public ::testing::Test
{
protected:
    void Open(int64_t length)
    {
        fileLength = length;
        asked = {};
        buffer.Attach(std::make_unique<CountingFile>(length, asked), false);
    }
    // Reads and compares; -1 if it is not what stands there.
    int64_t Read(int64_t offset, int64_t length)
    {
        std::string bytes(static_cast<size_t>(length), 0);
        const int64_t got = buffer.SeekTo(offset) ? buffer.Read(bytes.data(), length) : -1;
        if (got != std::max<int64_t>(0, std::min(length, fileLength - offset)))
            return -1;
        bytes.resize(static_cast<size_t>(got));
        return IsRight(bytes, offset) ? got : -1;
    }

    int64_t fileLength = 0;
    CountingFile::Asked asked;
    FileBuffer buffer;
};

TEST_F(FileRead, AnyHopsOverWindowEdgesGiveWhatStandsThere)
{
    constexpr int64_t sizes[] = { 1, 16, 496, 511, 512, 513, 4095, 4096, 4097, 65535, 65536, 65537, 200000 };
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        const int64_t length = static_cast<int64_t>(random() % 3000000);
        Open(length);
        int64_t at = 0;
        for (int step = 0; step < 400; ++step) {
            const int64_t edge = sizes[random() % std::size(sizes)];
            switch (random() % 4) {
            case 0: at += edge; break; // a hop
            case 1: at = static_cast<int64_t>(random() % static_cast<unsigned>(length + 1000)); break;
            case 2: at = std::max<int64_t>(0, at - edge); break;
            default: break; // on
            }
            const int64_t wanted = random() % 3 == 0 ? edge : static_cast<int64_t>(random() % 900);
            const int64_t got = Read(at, wanted);
            ASSERT_GE(got, 0) << "seed " << seed << " step " << step;
            at += got;
        }
    }
}

TEST_F(FileRead, HoppingOverPayloadsBringsLittleAndAnnouncesAllOfTheWay)
{
    constexpr int64_t hop = 14 * kilobyte;
    constexpr int64_t hops = 4000;
    Open(hops * hop);
    for (int64_t i = 0; i < hops; ++i)
        ASSERT_EQ(Read(i * hop, 16), 16);
    EXPECT_LT(asked.bytes, hops * kilobyte);
    EXPECT_LE(asked.reads, hops);
    ASSERT_FALSE(asked.announced.empty());
    EXPECT_LT(asked.announced.front().offset, 20 * hop);
    int64_t end = asked.announced.front().offset;
    for (const ByteRange& range : asked.announced) {
        ASSERT_EQ(range.offset, end) << "neither a gap nor anything twice";
        end += range.length;
    }
    EXPECT_GE(end, fileLength);
    EXPECT_LT(static_cast<int64_t>(asked.announced.size()), hops / 20) << "few at a time";
}

TEST_F(FileRead, SequentialAndFarReadsAnnounceNothing)
{
    Open(20 * megabyte);
    for (int64_t at = 0; at < fileLength; at += 700)
        ASSERT_GT(Read(at, 700), 0);
    EXPECT_EQ(asked.bytes, fileLength);
    EXPECT_LT(asked.reads, fileLength / (60 * kilobyte));
    for (int64_t i = 1; i < 50; ++i) // far apart, and back
        ASSERT_EQ(Read((i * 7 % 20) * megabyte, 16), 16);
    EXPECT_TRUE(asked.announced.empty());
}

TEST_F(FileRead, OneHeaderOfAFileIsCheap)
{
    Open(20 * megabyte);
    ASSERT_EQ(Read(0, 16), 16);
    EXPECT_LE(asked.bytes, 4 * kilobyte);
}

TEST(FileReadOnDisk, AFileThatShrinksOrGrowsReadsAsShorterOrLonger)
{
    Scratch scratch;
    const std::string name = scratch.File("file", std::string(static_cast<size_t>(2 * megabyte), 'a'));
    for (bool hops : { false, true }) {
        files::resize_file(name, static_cast<uintmax_t>(2 * megabyte));
        OpenFile file(Path(name), VX3_OPEN_READ);
        for (int i = 0; hops && i < 20; ++i)
            ASSERT_TRUE(file.Seek(i * 10 * kilobyte) && file.Read(16).size() == 16u);
        files::resize_file(name, 300 * kilobyte);
        ASSERT_TRUE(file.Seek(290 * kilobyte));
        EXPECT_EQ(file.Read(100 * kilobyte).size(), static_cast<size_t>(10 * kilobyte));
        EXPECT_EQ(file.Length(), 300 * kilobyte);
        ASSERT_TRUE(file.Seek(megabyte));
        EXPECT_EQ(file.Read(16), "") << "behind the end there is nothing, and no failure";
        files::resize_file(name, static_cast<uintmax_t>(megabyte + 10));
        EXPECT_EQ(file.Read(16).size(), 10u) << "now there is";
        EXPECT_EQ(file.Position(), megabyte + 10);
    }
}

} // namespace

} // namespace vx3::core
