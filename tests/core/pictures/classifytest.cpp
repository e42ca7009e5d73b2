// The class of a file by its bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "samples.h"

namespace vx3::core {

namespace {

constexpr uint32_t nativeOnly = VX3_CLASSIFY_HEADER_ONLY;
constexpr uint32_t alsoForeign = VX3_CLASSIFY_HEADER_ONLY | VX3_CLASSIFY_FOREIGN_SCENES;
constexpr size_t headerSize = 512;

uint32_t Classify(const Bytes& bytes, uint32_t flags, const VX3Path* path = nullptr)
{
    auto length = int32_t(std::min(bytes.size(), headerSize));
    return ClassifyServices()->classify(path, bytes.data(), length, flags);
}

// A header of 512 bytes that begins with a text.
Bytes HeaderOf(std::string_view start, uint8_t filling = 0)
{
    Bytes bytes(headerSize, filling);
    std::copy(start.begin(), start.end(), bytes.begin());
    return bytes;
}

void PutLittle(Bytes& bytes, size_t offset, uint32_t value, size_t width)
{
    for (size_t at = 0; at < width; ++at)
        bytes[offset + at] = uint8_t(value >> 8 * at);
}

Bytes BinaryStl(uint32_t count)
{
    Bytes bytes(84 + size_t(count) * 50);
    PutLittle(bytes, 80, count, 4);
    const float facet[12] = { 0, 0, 1, 0, 0, 0, 10, 0, 0, 0, 10, 0 };
    for (uint32_t at = 0; at < count; ++at)
        std::memcpy(bytes.data() + 84 + at * 50, facet, sizeof facet);
    return bytes;
}

// MPEG 1 layer III, 128 kbit/s, 44,100 Hz: frames of 417 bytes.
Bytes Mp3Frames(size_t second)
{
    Bytes bytes(1000);
    for (size_t offset : { size_t(0), second }) {
        const uint8_t header[] = { 0xff, 0xfb, 0x90, 0x00 };
        std::copy(std::begin(header), std::end(header), bytes.begin() + std::ptrdiff_t(offset));
    }
    return bytes;
}

Bytes Flic()
{
    Bytes bytes(200);
    PutLittle(bytes, 0, 5000, 4);
    PutLittle(bytes, 4, 0xaf12, 2);
    for (size_t offset : { 6, 8, 10 })
        PutLittle(bytes, offset, 100, 2);
    PutLittle(bytes, 12, 8, 2);
    return bytes;
}

Bytes Scene3ds(uint32_t innerLength)
{
    Bytes bytes(headerSize);
    PutLittle(bytes, 0, 0x4d4d, 2);
    PutLittle(bytes, 2, 4000, 4);
    PutLittle(bytes, 6, 0x3d3d, 2);
    PutLittle(bytes, 8, innerLength, 4);
    return bytes;
}

Bytes Asf(bool withVideo)
{
    using namespace std::literals;
    Bytes bytes = HeaderOf("\x30\x26\xb2\x75\x8e\x66\xcf\x11\xa6\xd9\x00\xaa\x00\x62\xce\x6c"sv);
    constexpr auto video = "\xc0\xef\x19\xbc\x4d\x5b\xcf\x11\xa8\xfd\x00\x80\x5f\x5c\x44\x2b"sv;
    if (withVideo)
        std::copy(video.begin(), video.end(), bytes.begin() + 200);
    return bytes;
}

Bytes Transport(size_t third)
{
    Bytes bytes(headerSize);
    bytes[0] = bytes[188] = bytes[third] = 0x47;
    return bytes;
}

struct Case {
    const char* what;
    Bytes bytes;
    uint32_t expected;
    uint32_t flags = nativeOnly;
};

void Check(const std::vector<Case>& cases)
{
    for (const Case& row : cases)
        EXPECT_EQ(Classify(row.bytes, row.flags), row.expected) << row.what;
}

using namespace std::literals;

} // namespace

TEST(Classify, EverySampleIsAnImageUnderAnyName)
{
    Path wrongName("/anywhere/notes.txt");
    for (const Sample& sample : Samples())
        EXPECT_EQ(Classify(ReadSample(sample.name), nativeOnly, wrongName.Get()), uint32_t(VX3_CLASS_IMAGE)) << sample.name;
    EXPECT_EQ(Classify(ReadSample("moving.gif"), alsoForeign), uint32_t(VX3_CLASS_IMAGE));
}

TEST(Classify, PicturesMoviesAndSounds)
{
    Check({
        { "OpenEXR", HeaderOf("\x76\x2f\x31\x01\x02"sv), VX3_CLASS_IMAGE },
        { "ILBM", HeaderOf("FORM\0\1\2\3ILBMBMHD"sv), VX3_CLASS_IMAGE },
        { "XPM", HeaderOf("/* XPM */\nstatic char *a[] = {"), VX3_CLASS_IMAGE },
        { "XBM", HeaderOf("/* made by hand */\n#define pic_width 16\n#define pic_height 16\n"), VX3_CLASS_IMAGE },
        { "AVI", HeaderOf("RIFF\x10\x20\x30\0AVI LIST"sv), VX3_CLASS_MOVIE },
        { "QuickTime without ftyp", HeaderOf("\0\0\x10\0moov"sv), VX3_CLASS_MOVIE },
        { "QuickTime brand",
          HeaderOf("\0\0\0\x14"
                   "ftypqt  "sv),
          VX3_CLASS_MOVIE },
        { "MPEG-4",
          HeaderOf("\0\0\0\x18"
                   "ftypisom"sv),
          VX3_CLASS_MOVIE },
        { "3GPP",
          HeaderOf("\0\0\0\x18"
                   "ftyp3gp5"sv),
          VX3_CLASS_MOVIE },
        { "MPEG program", HeaderOf("\0\0\x01\xba\x44"sv), VX3_CLASS_MOVIE },
        { "MPEG transport", Transport(376), VX3_CLASS_MOVIE },
        { "FLV", HeaderOf("FLV\x01\x05"sv), VX3_CLASS_MOVIE },
        { "SWF", HeaderOf("CWS\x0a\0\x10\0\0"sv), VX3_CLASS_MOVIE },
        { "FLC", Flic(), VX3_CLASS_MOVIE },
        { "ASF with video", Asf(true), VX3_CLASS_MOVIE },
        { "ASF without", Asf(false), VX3_CLASS_SOUND },
        { "M4A",
          HeaderOf("\0\0\0\x18"
                   "ftypM4A "sv),
          VX3_CLASS_SOUND },
        { "WAVE", HeaderOf("RIFF\x10\x20\x30\0WAVEfmt "sv), VX3_CLASS_SOUND },
        { "AIFC", HeaderOf("FORM\0\1\2\3AIFC"sv), VX3_CLASS_SOUND },
        { "AU", HeaderOf(".snd\0\0\0\x18"sv), VX3_CLASS_SOUND },
        { "MP3 with a tag", HeaderOf("ID3\x03\0"sv), VX3_CLASS_SOUND },
        { "MP3 frames", Mp3Frames(417), VX3_CLASS_SOUND },
    });
}

TEST(Classify, FilesOfThisSystem)
{
    Check({
        { "scene", HeaderOf("VX3S"), VX3_CLASS_SCENE },
        { "script", HeaderOf("VX3C"), VX3_CLASS_SCRIPT },
        { "tonic", HeaderOf("VX3T"), VX3_CLASS_TONIC },
        { "layout", HeaderOf("VX3L"), VX3_CLASS_LAYOUT },
        { "short", Bytes{ 'V', 'X', '3', 'S' }, VX3_CLASS_SCENE },
        { "too short", Bytes{ 'V', 'X', '3' }, 0 },
    });
}

TEST(Classify, ForeignScenesCountOnlyIfAskedFor)
{
    const Case scenes[] = {
        { "FBX", HeaderOf("Kaydara FBX Binary  \0\x1a\0"sv), VX3_CLASS_SCENE },
        { "FBX text", HeaderOf("; FBX 7.4.0 project file\n"), VX3_CLASS_SCENE },
        { "LWO", HeaderOf("FORM\0\1\2\3LWO2"sv), VX3_CLASS_SCENE },
        { "LWS", HeaderOf("LWSC\n3\n"), VX3_CLASS_SCENE },
        { "VRML", HeaderOf("#VRML V2.0 utf8\n"), VX3_CLASS_SCENE },
        { "3DMF", HeaderOf("3DMF\0\0\0\x10"sv), VX3_CLASS_SCENE },
        { "STL text", HeaderOf("solid cube\n facet normal 0 0 1\n"), VX3_CLASS_SCENE },
        { "STL", BinaryStl(20), VX3_CLASS_SCENE },
        { "STL of one facet", BinaryStl(1), VX3_CLASS_SCENE },
        { "3DS", Scene3ds(3000), VX3_CLASS_SCENE },
    };
    for (const Case& scene : scenes) {
        EXPECT_EQ(Classify(scene.bytes, alsoForeign), uint32_t(VX3_CLASS_SCENE)) << scene.what;
        EXPECT_EQ(Classify(scene.bytes, nativeOnly), 0u) << scene.what;
    }
}

// What only looks like one of them.
TEST(Classify, LookalikesAreNothing)
{
    Bytes crookedStl = BinaryStl(3);
    crookedStl[84 + 50 + 8] = 0x40; // a normal that is too long
    crookedStl[84 + 50 + 11] = 0x41;
    Bytes deepTga = ReadSample("plain.tga");
    deepTga[16] = 23;
    Bytes mappedTga = ReadSample("plain.tga");
    mappedTga[5] = 7; // a colour map that is not there has entries
    Bytes strangeBmp = ReadSample("plain.bmp");
    strangeBmp[14] = 41;
    Bytes wideFlic = Flic();
    wideFlic[12] = 24;
    Check({
        { "text", HeaderOf("These are words and not a picture.\n", ' '), 0, alsoForeign },
        { "text that begins like a bitmap", HeaderOf("BMW and other cars\n", ' '), 0, alsoForeign },
        { "text that begins like a sound", HeaderOf("FORMAL letters begin so\n", ' '), 0, alsoForeign },
        { "solid ground", HeaderOf("solid ground under the feet\n", ' '), 0, alsoForeign },
        { "a C header", HeaderOf("#define buffer_width 4\n#include <x.h>\n", ' '), 0, alsoForeign },
        { "zeros", HeaderOf(""), 0, alsoForeign },
        { "RIFF of another kind", HeaderOf("RIFF\x10\x20\x30\0PALdata"sv), 0, alsoForeign },
        { "one MP3 frame and nothing behind", Mp3Frames(500), 0 },
        { "two packets only", Transport(377), 0 },
        { "STL with a crooked normal", crookedStl, 0, alsoForeign },
        { "3DS with a chunk beyond the end", Scene3ds(5000), 0, alsoForeign },
        { "TGA of 23 bits", deepTga, 0 },
        { "TGA with half a colour map", mappedTga, 0 },
        { "BMP with an unknown header", strangeBmp, 0 },
        { "FLC of 24 bits", wideFlic, 0 },
        { "nothing", Bytes{}, 0, alsoForeign },
    });
}

// What the first 512 bytes leave open is looked up in the file, if the flags allow it.
TEST(Classify, OpensTheFileOnlyWhereItMay)
{
    Bytes cutTga = ReadSample("plain.tga");
    cutTga.resize(600);
    Bytes pict(600);
    const uint8_t version[] = { 0, 0x11, 0x02, 0xff };
    std::copy(std::begin(version), std::end(version), pict.begin() + 522);
    Bytes cutStl = BinaryStl(20);
    cutStl.resize(cutStl.size() - 1);
    Bytes lateVideo = Asf(true);
    lateVideo.insert(lateVideo.begin() + 16, 1000, 0);
    Bytes mp3 = Mp3Frames(1);
    const uint8_t high[] = { 0xff, 0xfb, 0xe0, 0x00 }; // 320 kbit/s: 1,044 bytes a frame
    mp3.assign(2000, 0);
    std::copy(std::begin(high), std::end(high), mp3.begin());
    std::copy(std::begin(high), std::end(high), mp3.begin() + 1044);

    struct OpenCase {
        const char* what;
        Bytes bytes;
        uint32_t closed;
        uint32_t opened;
    };
    const OpenCase cases[] = {
        { "TGA that is cut", cutTga, VX3_CLASS_IMAGE, 0 },
        { "PICT", pict, 0, VX3_CLASS_IMAGE },
        { "STL that is cut", cutStl, VX3_CLASS_SCENE, 0 },
        { "ASF with a late video stream", lateVideo, VX3_CLASS_SOUND, VX3_CLASS_MOVIE },
        { "MP3 with long frames", mp3, 0, VX3_CLASS_SOUND },
    };
    for (const OpenCase& row : cases) {
        Path path = PathOf(row.bytes);
        EXPECT_EQ(Classify(row.bytes, alsoForeign, path.Get()), row.closed) << row.what;
        EXPECT_EQ(Classify(row.bytes, VX3_CLASSIFY_FOREIGN_SCENES, path.Get()), row.opened) << row.what;
        EXPECT_EQ(ClassifyServices()->classify(path.Get(), nullptr, 0, VX3_CLASSIFY_FOREIGN_SCENES), row.opened) << row.what;
    }
    Path missing("/nowhere/at/all");
    EXPECT_EQ(ClassifyServices()->classify(missing.Get(), nullptr, 0, 0), 0u);
}

} // namespace vx3::core
