#include <random>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "core/corehost.h"
#include "openfile.h"

namespace vx3::core {

namespace {

// Any order of calls gives what the same calls give on bytes in memory.
void CompareWithModel(const Path& path, unsigned seed)
{
    OpenFile file(path, VX3_OPEN_UPDATE);
    ASSERT_TRUE(file.isOpen);
    std::mt19937 random(seed);
    std::string model;
    size_t at = 0;
    for (int step = 0; step < 600; ++step) {
        size_t length = random() % (step % 50 == 0 ? 200000 : 900);
        switch (random() % 4) {
        case 0: {
            std::string bytes(length, static_cast<char>('a' + step % 26));
            ASSERT_TRUE(file.Write(bytes));
            if (length > 0 && model.size() < at + length)
                model.resize(at + length);
            model.replace(at, length, bytes);
            at += length;
            break;
        }
        case 1: {
            std::string expected = at < model.size() ? model.substr(at, length) : "";
            ASSERT_EQ(file.Read(static_cast<int64_t>(length)), expected) << "step " << step;
            at += expected.size();
            break;
        }
        case 2:
            at = random() % (model.size() + 100);
            ASSERT_TRUE(file.Seek(static_cast<int64_t>(at)));
            break;
        default: ASSERT_EQ(file.Length(), static_cast<int64_t>(model.size())); break;
        }
        ASSERT_EQ(file.Position(), static_cast<int64_t>(at));
    }
    ASSERT_TRUE(file.Close());
    OpenFile reader(path, VX3_OPEN_READ);
    EXPECT_EQ(reader.Read(static_cast<int64_t>(model.size()) + 1), model);
}

TEST(BinaryFile, AnyOrderOfCallsGivesWhatPlainBytesGive)
{
    Scratch scratch;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        CompareWithModel(Path(scratch / ("file" + std::to_string(seed))), seed);
        Path memory;
        ASSERT_TRUE(PathServices()->setMemoryWriting(memory.Get()));
        CompareWithModel(memory, seed);
    }
}

TEST(BinaryFile, IntegersStandInTheOrderOfOpening)
{
    Scratch scratch;
    const std::pair<int32_t, std::string> orders[] = { { VX3_ORDER_BIG, std::string("\x12\x34\xFE\xDC\xBA\x98\0\0\0\0\0\0\1\2", 14) },
                                                       { VX3_ORDER_LITTLE, std::string("\x34\x12\x98\xBA\xDC\xFE\2\1\0\0\0\0\0\0", 14) } };
    for (const auto& [order, bytes] : orders) {
        Path path(scratch / "integers");
        {
            OpenFile file(path, VX3_OPEN_CREATE, order);
            EXPECT_TRUE(FileServices()->writeInt16(file.file, 0x1234) && FileServices()->writeInt32(file.file, 0xFEDCBA98)
                        && FileServices()->writeInt64(file.file, 0x102));
        }
        EXPECT_EQ(Contents(scratch / "integers"), bytes);
        OpenFile file(path, VX3_OPEN_READ, order);
        uint16_t small = 0;
        uint32_t middle = 0;
        uint64_t large = 0;
        EXPECT_TRUE(FileServices()->readInt16(file.file, &small) && FileServices()->readInt32(file.file, &middle)
                    && FileServices()->readInt64(file.file, &large));
        EXPECT_TRUE(small == 0x1234 && middle == 0xFEDCBA98 && large == 0x102);
        EXPECT_FALSE(FileServices()->readInt16(file.file, &small));
        EXPECT_EQ(small, 0x1234) << "a short read leaves the value";
    }
}

TEST(BinaryFile, ModesTreatWhatIsThereAsTheySay)
{
    Scratch scratch;
    Path path(scratch / "file");
    EXPECT_FALSE(OpenFile(path, VX3_OPEN_READ).isOpen);
    EXPECT_TRUE(OpenFile(path, VX3_OPEN_UPDATE).Write("long content"));
    EXPECT_TRUE(OpenFile(path, VX3_OPEN_UPDATE).Write("LONG"));
    EXPECT_EQ(Contents(scratch / "file"), "LONG content");
    EXPECT_TRUE(OpenFile(path, VX3_OPEN_CREATE).Write("new"));
    EXPECT_EQ(Contents(scratch / "file"), "new");
    EXPECT_FALSE(OpenFile(path, VX3_OPEN_READ).Write("x"));
    EXPECT_FALSE(OpenFile(path, 7).isOpen);
}

TEST(BinaryFile, OnlyRegularFilesAreOpenedAndNothingWaits)
{
    Scratch scratch;
    mkfifo((scratch / "pipe").c_str(), 0666);
    scratch.Folder("folder");
    files::create_symlink("pipe", scratch / "link");
    for (const char* name : { "pipe", "folder", "link" })
        for (int32_t mode : { VX3_OPEN_READ, VX3_OPEN_UPDATE, VX3_OPEN_CREATE })
            EXPECT_FALSE(OpenFile(Path(scratch / name), mode).isOpen) << name << mode;
    EXPECT_FALSE(OpenFile(Path("/dev/zero"), VX3_OPEN_READ).isOpen);
    EXPECT_FALSE(OpenFile(Path(), VX3_OPEN_READ).isOpen);
}

TEST(BinaryFile, AfterAFailureOnlyClosingIsLeft)
{
    Scratch scratch;
    OpenFile file(Path(scratch.File("file")), VX3_OPEN_UPDATE);
    EXPECT_TRUE(file.Write("kept"));
    EXPECT_FALSE(file.Seek(-5, VX3_SEEK_RELATIVE));
    EXPECT_FALSE(file.Seek(0));
    EXPECT_FALSE(file.Write("x"));
    EXPECT_EQ(file.Read(1), "failed");
    EXPECT_EQ(file.Length(), -1);
    EXPECT_TRUE(file.Close()) << "nothing that was accepted is lost";
    EXPECT_EQ(Contents(scratch / "file"), "keptent");
}

TEST(BinaryFile, ClosingTellsOfAWriteThatWasLost)
{
    Scratch scratch;
    struct rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    auto* oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = { 1000, old.rlim_max };
    setrlimit(RLIMIT_FSIZE, &small);
    OpenFile file(Path(scratch / "file"), VX3_OPEN_CREATE);
    bool isAccepted = file.Write(std::string(2000, 'x'));
    bool isClosed = file.Close();
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_TRUE(isAccepted); // still in the buffer
    EXPECT_FALSE(isClosed);
}

TEST(BinaryFile, TheUserHearsOfAFailureIfAsked)
{
    Scratch scratch;
    std::string told;
    HostSettings settings;
    settings.onText = [&](const std::string& text) { told += text; };
    CoreHost host(settings);
    VX3BinaryFile* file = FileServices()->create();
    for (VX3Bool show : { 0, 1 }) {
        EXPECT_TRUE(told.empty());
        EXPECT_FALSE(FileServices()->open(file, Path(scratch / "absent").Get(), VX3_OPEN_READ, show, 0, 0, 0));
    }
    EXPECT_NE(told.find("absent"), std::string::npos);
    FileServices()->free(file);
}

} // namespace

} // namespace vx3::core
