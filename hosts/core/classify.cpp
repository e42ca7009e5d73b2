// The classify section of the host's table.
#include "vx3/classify.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

#include "classifymagic.h"
#include "codecsource.h"
#include "services.h"

namespace vx3::core {

namespace {

// What may be read beyond the header: a file that is opened once, and only if it is needed and allowed.
class MoreBytes
{
public:
    MoreBytes(const VX3Path* filePath, uint32_t flags)
        : path(flags & VX3_CLASSIFY_HEADER_ONLY ? nullptr : filePath)
    {
    }

    int64_t Length() { return Open() ? file.Length() : -1; }
    Header Read(int64_t offset, size_t count);

private:
    bool Open();

    const VX3Path* path;
    PictureFile file;
    std::optional<bool> opened;
    std::array<char, 8192> bytes; // room for what Read gives, until the next Read
};

bool MoreBytes::Open()
{
    if (!opened)
        opened = path && file.Open(*path);
    return *opened;
}

Header MoreBytes::Read(int64_t offset, size_t count)
{
    if (!Open())
        return {};
    int64_t got = file.ReadAt(offset, bytes.data(), int64_t(std::min(count, bytes.size())));
    return Header(bytes.data(), size_t(std::max<int64_t>(got, 0)));
}

// Advanced Systems Format, 3.3: a stream is a movie's or a sound's by the type in its properties object.
uint32_t ClassifyAsf(Header header, MoreBytes& more)
{
    using namespace std::literals;
    constexpr auto headerObject = "\x30\x26\xb2\x75\x8e\x66\xcf\x11\xa6\xd9\x00\xaa\x00\x62\xce\x6c"sv;
    constexpr auto videoStream = "\xc0\xef\x19\xbc\x4d\x5b\xcf\x11\xa8\xfd\x00\x80\x5f\x5c\x44\x2b"sv;
    if (!header.starts_with(headerObject))
        return 0;
    Header longer = more.Read(0, 8192);
    Header searched = longer.size() > header.size() ? longer : header;
    return searched.find(videoStream) != Header::npos ? VX3_CLASS_MOVIE : VX3_CLASS_SOUND;
}

// A TGA header is accepted only if the file can hold the pixels, as far as the file may be looked at.
bool IsTgaFile(Header header, MoreBytes& more)
{
    if (!IsTga(header))
        return false;
    int64_t length = more.Length();
    return length < 0 || length >= TgaLength(header);
}

bool IsTallSound(Header header, MoreBytes& more)
{
    if (IsMpegAudio(header))
        return true;
    constexpr size_t twoFrames = 4096; // the longest frame has 2,881 bytes
    return header.size() >= 2 && BigAt(header, 0, 2) >= 0xffe2 && IsMpegAudio(more.Read(0, twoFrames));
}

bool IsPictFile(Header header, MoreBytes& more)
{
    constexpr size_t pictHeader = 526;
    bool mayBe = header.size() >= headerSize && header.find_first_not_of('\0') == Header::npos;
    return mayBe && IsPict(more.Read(0, pictHeader));
}

bool IsForeignScene(Header header, MoreBytes& more)
{
    if (Is3ds(header))
        return true;
    return IsStl(header, more.Length());
}

uint32_t ClassifyBytes(Header header, MoreBytes& more, uint32_t flags)
{
    bool foreignScenes = flags & VX3_CLASSIFY_FOREIGN_SCENES;
    if (const Magic* magic = FindMagic(header))
        return magic->foreign && !foreignScenes ? 0 : magic->kind;
    if (uint32_t kind = ClassifyAsf(header, more))
        return kind;
    if (IsBmp(header) || IsXbm(header))
        return VX3_CLASS_IMAGE;
    if (IsFlic(header) || IsFlash(header) || IsDv(header) || IsMpegTransport(header))
        return VX3_CLASS_MOVIE;
    if (IsTallSound(header, more))
        return VX3_CLASS_SOUND;
    if (IsTgaFile(header, more) || IsPictFile(header, more))
        return VX3_CLASS_IMAGE;
    return foreignScenes && IsForeignScene(header, more) ? VX3_CLASS_SCENE : 0;
}

uint32_t Classify(const VX3Path* path, const void* header, int32_t length, uint32_t flags)
try {
    MoreBytes more(path, flags);
    if (header && length > 0)
        return ClassifyBytes(Header(static_cast<const char*>(header), size_t(length)), more, flags);
    std::array<char, headerSize> own;
    Header read = more.Read(0, own.size());
    std::copy(read.begin(), read.end(), own.begin());
    return ClassifyBytes(Header(own.data(), read.size()), more, flags);
} catch (const std::bad_alloc&) {
    return 0;
}

constexpr VX3ClassifyServices services = { Classify };

} // namespace

const VX3ClassifyServices* ClassifyServices()
{
    return &services;
}

} // namespace vx3::core
