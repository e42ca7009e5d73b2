#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "core/containerimage.h"
#include "core/livecounts.h"
#include "core/services.h"
#include "core/values.h"
#include "samplecontainer.h"

namespace vx3::core {
namespace {

using Bytes = std::vector<uint8_t>;

const VX3ContainerServices& container = *ContainerServices();

Bytes ImageOf(const Container& value)
{
    Bytes image;
    EXPECT_TRUE(EncodeContainer(*value.Get(), image));
    return image;
}

Container Untouched()
{
    Container value;
    container.setText(value.Get(), 3, Text("untouched").Get());
    return value;
}

// The address space that the process has ever asked for.
int64_t PeakKilobytes()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmPeak:", 0) == 0)
            return std::stoll(line.substr(std::strlen("VmPeak:")));
    }
    return 0;
}

TEST(ContainerImage, EverythingButPointersComesBack)
{
    const Bytes image = ImageOf(SampleContainer());
    EXPECT_EQ(image, ImageOf(SampleContainer(false)));
    Container read = Untouched();
    ASSERT_TRUE(DecodeContainer(image, *read.Get()));
    EXPECT_TRUE(container.equals(read.Get(), SampleContainer(false).Get()));
    EXPECT_EQ(ImageOf(read), image);
    const Bytes empty = ImageOf(Container());
    ASSERT_TRUE(DecodeContainer(empty, *read.Get()));
    EXPECT_TRUE(container.equals(read.Get(), Container().Get()));
}

TEST(ContainerImage, ACutImageIsRefusedAndLeavesTheContainer)
{
    const Bytes image = ImageOf(SampleContainer());
    const LiveObjects live = ReadLiveObjects();
    size_t cuts = 0;
    for (size_t length = 0; length < image.size(); ++length) {
        const Bytes cut(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(length));
        Container read = Untouched();
        ASSERT_FALSE(DecodeContainer(cut, *read.Get())) << length;
        ASSERT_TRUE(container.equals(read.Get(), Untouched().Get())) << length;
        ++cuts;
    }
    EXPECT_GT(cuts, 60u);
    Bytes longer = image;
    longer.push_back(0);
    Container read;
    EXPECT_FALSE(DecodeContainer(longer, *read.Get()));
    EXPECT_EQ(ReadLiveObjects().containers, live.containers);
    EXPECT_EQ(ReadLiveObjects().texts, live.texts);
}

TEST(ContainerImage, ADamagedByteNeitherCrashesNorAsksForMemory)
{
    constexpr int64_t allowedKilobytes = 64 * 1024;
    const Bytes image = ImageOf(SampleContainer());
    const LiveObjects live = ReadLiveObjects();
    const int64_t peak = PeakKilobytes();
    size_t accepted = 0;
    size_t refused = 0;
    for (size_t place = 0; place < image.size(); ++place) {
        for (int flip = 1; flip < 256; ++flip) {
            Bytes damaged = image;
            damaged[place] ^= static_cast<uint8_t>(flip);
            Container read = Untouched();
            if (DecodeContainer(damaged, *read.Get())) {
                ++accepted;
                ASSERT_EQ(ImageOf(read), damaged) << "what is accepted is the one image of its container";
            } else {
                ++refused;
                ASSERT_TRUE(container.equals(read.Get(), Untouched().Get()));
            }
        }
    }
    EXPECT_EQ(accepted + refused, image.size() * 255);
    EXPECT_GT(refused, 5000u);
    EXPECT_LT(PeakKilobytes() - peak, allowedKilobytes);
    EXPECT_EQ(ReadLiveObjects().containers, live.containers);
    EXPECT_EQ(ReadLiveObjects().texts, live.texts);
}

Container NestedDeep(int depth)
{
    Container outermost;
    VX3Container* innermost = outermost.Get();
    for (int i = 1; i < depth; ++i) {
        container.setContainer(innermost, 1, nullptr);
        innermost = container.getContainer(innermost, 1);
    }
    return outermost;
}

TEST(ContainerImage, DepthOf64AndNotOf65)
{
    Container read;
    const Bytes image = ImageOf(NestedDeep(64));
    EXPECT_TRUE(DecodeContainer(image, *read.Get()));
    EXPECT_TRUE(container.equals(read.Get(), NestedDeep(64).Get()));
    Bytes refused;
    EXPECT_FALSE(EncodeContainer(*NestedDeep(65).Get(), refused));
    // One more level by hand: an id, a count of 1, a key, a type and the length.
    ASSERT_EQ(image.size(), 0xE2u + 0x80);
    Bytes deeper = { 0, 1, 2, 6, 0xE2, 2 };
    deeper.insert(deeper.end(), image.begin(), image.end());
    EXPECT_FALSE(DecodeContainer(deeper, *read.Get()));
}

TEST(ContainerImage, DepthIsThatOfThePlaceWhereItIsWritten)
{
    Container deep, outer;
    ASSERT_TRUE(DecodeContainer(ImageOf(NestedDeep(40)), *deep.Get()));
    container.setContainer(outer.Get(), 1, nullptr);
    VX3Container* innermost = container.getContainer(outer.Get(), 1);
    for (int i = 0; i < 30; ++i) {
        container.setContainer(innermost, 1, nullptr);
        innermost = container.getContainer(innermost, 1);
    }
    container.setContainer(innermost, 1, deep.Get());
    Bytes refused;
    EXPECT_FALSE(EncodeContainer(*outer.Get(), refused));
}

TEST(ContainerImage, WhatAWriterCannotHaveMadeIsRefused)
{
    const Bytes head = { 0, 1, 18 }; // one entry, its key 9
    const struct {
        const char* what;
        Bytes value;
        bool good;
    } rows[] = {
        { "truth", { 4, 1 }, true },
        { "truth of 2", { 4, 2 }, false },
        { "pointer", { 7, 0 }, false },
        { "type 0", { 0, 0 }, false },
        { "type 9", { 9, 0, 0, 0, 0 }, false },
        { "number in two bytes", { 1, 0x80, 1 }, true },
        { "number longer than it has to be", { 1, 0x81, 0 }, false },
        { "number without an end", { 1, 0x80 }, false },
        { "smallest of 32 bits", { 1, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F }, true },
        { "beyond 32 bits", { 1, 0x80, 0x80, 0x80, 0x80, 0x10 }, false },
        { "the same in 64 bits", { 2, 0x80, 0x80, 0x80, 0x80, 0x10 }, true },
        { "smallest of 64 bits", { 2, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1 }, true },
        { "beyond 64 bits", { 2, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 2 }, false },
        { "text of more bytes than there are", { 5, 2, 'a' }, false },
        { "text with a slash in two bytes", { 5, 2, 0xC0, 0xAF }, false },
        { "lone surrogate", { 5, 3, 0xED, 0xB3, 0xBF }, true },
        { "pair of surrogates", { 5, 6, 0xED, 0xA0, 0x80, 0xED, 0xB0, 0x80 }, false },
        { "surrogates the wrong way round", { 5, 6, 0xED, 0xB0, 0x80, 0xED, 0xA0, 0x80 }, true },
        { "character in four bytes", { 5, 4, 0xF0, 0x9F, 0x98, 0x80 }, true },
        { "bytes of a huge length", { 8, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1, 0 }, false },
        { "container with a huge count", { 6, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F }, false },
        { "container that is shorter than told", { 6, 3, 0, 0, 0 }, false },
    };
    for (const auto& row : rows) {
        Bytes image = head;
        image.insert(image.end(), row.value.begin(), row.value.end());
        Container read;
        EXPECT_EQ(DecodeContainer(image, *read.Get()), row.good) << row.what;
        EXPECT_EQ(ImageOf(read) == image, row.good) << row.what;
    }
    const Bytes twice = { 0, 2, 18, 4, 1, 18, 4, 1 };
    Container read;
    EXPECT_FALSE(DecodeContainer(twice, *read.Get())) << "a key that stands twice";
    Bytes many = { 0, 100 };
    for (uint8_t key = 0; key < 100; ++key)
        many.insert(many.end(), { static_cast<uint8_t>(key < 50 ? key : 98 - key), 4, 1 });
    EXPECT_FALSE(DecodeContainer(many, *read.Get())) << "one of many keys stands twice";
}

// The bytes of the block marked `hex`, without the words behind them.
Bytes ExampleOfDocument()
{
    std::ifstream document(FORMAT_DOCUMENT);
    Bytes bytes;
    std::string line;
    while (std::getline(document, line) && line != "```hex") { }
    constexpr size_t remarkColumn = 55;
    while (std::getline(document, line) && line != "```") {
        std::istringstream words(line.substr(0, remarkColumn));
        std::string word;
        while (words >> word)
            bytes.push_back(static_cast<uint8_t>(std::stoi(word, nullptr, 16)));
    }
    return bytes;
}

Container ExampleContainer()
{
    Container value;
    container.setId(value.Get(), 1000);
    container.setInt32(value.Get(), 1, -2);
    container.setText(value.Get(), 2, Text(u"a\u00E9\xDCFF").Get());
    container.setBool(value.Get(), -3, 1);
    container.setFloat(value.Get(), 4, 0.5);
    Container nested;
    container.setId(nested.Get(), 7);
    container.setBytes(nested.Get(), 1, "hi", 2);
    container.setContainer(value.Get(), 5, nested.Get());
    container.setInt64(value.Get(), 6, int64_t(1) << 40);
    return value;
}

constexpr uint32_t exampleIdent = 0x64656D6F;

TEST(DataFile, TheDocumentShowsTheBytesThatAreWritten)
{
    Path memory;
    ASSERT_TRUE(PathServices()->setMemoryWriting(memory.Get()));
    VX3DataFile* file = DataFileServices()->open(memory.Get(), VX3_DATA_WRITE, exampleIdent);
    ASSERT_TRUE(file);
    EXPECT_TRUE(DataFileServices()->write(file, ExampleContainer().Get()));
    EXPECT_FALSE(DataFileServices()->read(file, Container().Get())) << "it is open for writing";
    EXPECT_TRUE(DataFileServices()->close(file));
    void* bytes = nullptr;
    int64_t length = 0;
    ASSERT_TRUE(PathServices()->takeMemory(memory.Get(), &bytes, &length));
    const Bytes written(static_cast<uint8_t*>(bytes), static_cast<uint8_t*>(bytes) + length);
    MemoryServices()->free(bytes);
    EXPECT_EQ(written, ExampleOfDocument());
}

std::vector<Container> ReadAll(const Bytes& bytes, uint32_t ident, bool& opened)
{
    Path memory;
    EXPECT_TRUE(PathServices()->setMemoryReading(memory.Get(), bytes.data(), static_cast<int64_t>(bytes.size())));
    std::vector<Container> all;
    VX3DataFile* file = DataFileServices()->open(memory.Get(), VX3_DATA_READ, ident);
    opened = file != nullptr;
    if (!opened)
        return all;
    Container read;
    while (DataFileServices()->read(file, read.Get()))
        all.push_back(read);
    EXPECT_TRUE(DataFileServices()->close(file));
    return all;
}

TEST(DataFile, ReadsTheDocumentsExampleAndRefusesItsCuts)
{
    const Bytes example = ExampleOfDocument();
    constexpr size_t headerSize = 12;
    bool opened = false;
    const std::vector<Container> all = ReadAll(example, exampleIdent, opened);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_TRUE(container.equals(all[0].Get(), ExampleContainer().Get()));
    ReadAll(example, exampleIdent + 1, opened);
    EXPECT_FALSE(opened);
    size_t cuts = 0;
    for (size_t length = 0; length < example.size(); ++length) {
        EXPECT_TRUE(ReadAll(Bytes(example.begin(), example.begin() + static_cast<std::ptrdiff_t>(length)), exampleIdent, opened).empty())
            << length;
        EXPECT_EQ(opened, length >= headerSize);
        ++cuts;
    }
    EXPECT_EQ(cuts, example.size());
    Bytes huge = example;
    huge[headerSize] = 0x40;
    EXPECT_TRUE(ReadAll(huge, exampleIdent, opened).empty()) << "a length beyond the file";
}

TEST(DataFile, SeveralContainersOnTheDisk)
{
    const LiveObjects live = ReadLiveObjects();
    {
        const Path path(testing::TempDir() + "vx3 containers.vx3d");
        VX3DataFile* file = DataFileServices()->open(path.Get(), VX3_DATA_WRITE, 7);
        ASSERT_TRUE(file);
        EXPECT_TRUE(DataFileServices()->write(file, SampleContainer(false).Get()));
        EXPECT_FALSE(DataFileServices()->write(file, NestedDeep(65).Get())) << "refused before a byte is written";
        EXPECT_TRUE(DataFileServices()->write(file, Container().Get()));
        EXPECT_TRUE(DataFileServices()->write(file, ExampleContainer().Get()));
        ASSERT_TRUE(DataFileServices()->close(file));
        file = DataFileServices()->open(path.Get(), VX3_DATA_READ, 7);
        ASSERT_TRUE(file);
        Container read;
        for (const Container& expected : { SampleContainer(false), Container(), ExampleContainer() }) {
            ASSERT_TRUE(DataFileServices()->read(file, read.Get()));
            EXPECT_TRUE(container.equals(read.Get(), expected.Get()));
        }
        EXPECT_FALSE(DataFileServices()->read(file, read.Get()));
        EXPECT_TRUE(container.equals(read.Get(), ExampleContainer().Get()));
        DataFileServices()->close(file);
        std::remove(path.Native().c_str());
        EXPECT_EQ(DataFileServices()->open(Path("/").Get(), VX3_DATA_READ, 7), nullptr);
        EXPECT_EQ(DataFileServices()->open(path.Get(), VX3_DATA_READ, 7), nullptr);
        EXPECT_EQ(DataFileServices()->open(path.Get(), 3, 7), nullptr);
    }
    EXPECT_EQ(ReadLiveObjects().files, live.files);
    EXPECT_EQ(ReadLiveObjects().containers, live.containers);
}

} // namespace
} // namespace vx3::core
