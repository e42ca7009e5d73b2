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
    EXPECT_GT(cuts, 100u);
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
    // One more level by hand: each is an id, a count of 1, a key and a type.
    Bytes deeper(image.begin(), image.begin() + 13);
    deeper.insert(deeper.end(), image.begin(), image.end());
    EXPECT_FALSE(DecodeContainer(deeper, *read.Get()));
}

TEST(ContainerImage, WhatAWriterCannotHaveMadeIsRefused)
{
    const Bytes head = { 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 9 };
    const struct {
        const char* what;
        Bytes value;
        bool good;
    } rows[] = {
        { "truth", { 4, 1 }, true },
        { "truth of 2", { 4, 2 }, false },
        { "pointer", { 7, 0, 0, 0, 0, 0, 0, 0, 0 }, false },
        { "type 0", { 0, 0 }, false },
        { "type 9", { 9, 0, 0, 0, 0 }, false },
        { "text of more units than bytes", { 5, 0, 0, 0, 2, 0, 0 }, false },
        { "text whose length wraps", { 5, 0x80, 0, 0, 1, 0, 0 }, false },
        { "bytes whose length is negative", { 8, 255, 255, 255, 255, 255, 255, 255, 255, 0 }, false },
        { "container with a huge count", { 6, 0, 0, 0, 0, 255, 255, 255, 255 }, false },
    };
    for (const auto& row : rows) {
        Bytes image = head;
        image.insert(image.end(), row.value.begin(), row.value.end());
        Container read;
        EXPECT_EQ(DecodeContainer(image, *read.Get()), row.good) << row.what;
    }
    const Bytes twice = { 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 9, 4, 1, 0, 0, 0, 9, 4, 1 };
    Container read;
    EXPECT_FALSE(DecodeContainer(twice, *read.Get())) << "a key that stands twice";
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
