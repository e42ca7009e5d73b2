#include "classifymagic.h"

#include "vx3/classify.h"

namespace vx3::core {

namespace {

using namespace std::literals;
using Picture = PictureFormat;

constexpr Magic PictureMagic(uint16_t offset, std::string_view bytes, Picture picture, std::string_view mask = {})
{
    return { offset, bytes, mask, VX3_CLASS_IMAGE, false, picture };
}

constexpr Magic KindMagic(uint32_t kind, uint16_t offset, std::string_view bytes, std::string_view mask = {})
{
    return { offset, bytes, mask, kind, false, Picture::None };
}

constexpr Magic ForeignScene(uint16_t offset, std::string_view bytes, std::string_view mask = {})
{
    return { offset, bytes, mask, VX3_CLASS_SCENE, true, Picture::None };
}

// Masks over a chunk header: a tag, a length that does not count, a second tag.
constexpr auto twoTags = "\xff\xff\xff\xff\0\0\0\0\xff\xff\xff\xff"sv;

// A more telling row stands in front of a less telling one.
constexpr Magic magics[] = {
    // Files of this system. Four letters, chosen for it.
    KindMagic(VX3_CLASS_SCENE, 0, "VX3S"sv),
    KindMagic(VX3_CLASS_SCRIPT, 0, "VX3C"sv),
    KindMagic(VX3_CLASS_TONIC, 0, "VX3T"sv),
    KindMagic(VX3_CLASS_LAYOUT, 0, "VX3L"sv),

    PictureMagic(0, "\x89PNG\r\n\x1a\n"sv, Picture::Png), // ISO/IEC 15948, 5.2
    PictureMagic(0, "\xff\xd8\xff"sv, Picture::Jpeg),     // ITU-T T.81, B.1.1.3: SOI, then a marker
    PictureMagic(0, "GIF87a"sv, Picture::Gif),            // GIF89a, 17
    PictureMagic(0, "GIF89a"sv, Picture::Gif),
    PictureMagic(0, "II*\0"sv, Picture::Tiff), // TIFF 6.0, section 2
    PictureMagic(0, "MM\0*"sv, Picture::Tiff),
    PictureMagic(0, "II+\0\x08\0\0\0"sv, Picture::Tiff), // BigTIFF design note: 8-byte offsets
    PictureMagic(0, "MM\0+\0\x08\0\0"sv, Picture::Tiff),
    PictureMagic(0, "8BPS\0\x01"sv, Picture::Psd), // published layout of PSD: version 1, or 2 for PSB
    PictureMagic(0, "8BPS\0\x02"sv, Picture::Psd),
    PictureMagic(0, "\x76\x2f\x31\x01"sv, Picture::Exr),           // OpenEXR File Layout
    PictureMagic(0, "FORM\0\0\0\0ILBM"sv, Picture::Ilbm, twoTags), // EA IFF 85, ILBM
    PictureMagic(0, "FORM\0\0\0\0PBM "sv, Picture::Ilbm, twoTags),
    PictureMagic(0, "\x01\xda\0\x01\0"sv, Picture::Sgi, "\xff\xff\xfe\xff\xff"sv), // The SGI Image File Format 1.0: storage 0 or 1, 1 byte
    PictureMagic(0, "\x01\xda\0\x02\0"sv, Picture::Sgi, "\xff\xff\xfe\xff\xff"sv),
    PictureMagic(0, "/* XPM */"sv, Picture::Xpm),                // XPM manual, 1.2
    PictureMagic(0, "\0\0\0\x0cjP  \r\n\x87\n"sv, Picture::Jp2), // ITU-T T.800, I.5.1
    PictureMagic(0, "\xff\x4f\xff\x51"sv, Picture::J2k),         // ITU-T T.800, A.4: SOC, SIZ
    PictureMagic(65, "PNTGMPNT"sv, Picture::MacPaint),           // MacBinary: type and creator
    PictureMagic(4, "idsc\0\0\0"sv, Picture::Qtif),              // QuickTime File Format: image files
    PictureMagic(4, "idat"sv, Picture::Qtif),

    // ISO/IEC 14496-12, 4.3: major brands that hold sound alone stand in front of the others.
    KindMagic(VX3_CLASS_SOUND, 4, "ftypM4A"sv),
    KindMagic(VX3_CLASS_SOUND, 4, "ftypM4B"sv),
    KindMagic(VX3_CLASS_SOUND, 4, "ftypM4P"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypqt  "sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypiso"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypmp4"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypavc1"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypM4V"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypMSNV"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypdash"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftypf4v"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "ftyp3gp"sv), // 3GPP TS 26.244, 5.3
    KindMagic(VX3_CLASS_MOVIE, 4, "ftyp3g2"sv), // 3GPP2 C.S0050
    KindMagic(VX3_CLASS_MOVIE, 4, "moov"sv),    // QuickTime File Format: files without ftyp
    KindMagic(VX3_CLASS_MOVIE, 4, "mdat"sv),
    KindMagic(VX3_CLASS_MOVIE, 4, "wide\0\0\0\0mdat"sv, twoTags),
    KindMagic(VX3_CLASS_MOVIE, 4, "pnot"sv),
    KindMagic(VX3_CLASS_MOVIE, 0, "RIFF\0\0\0\0AVI "sv, twoTags), // Multimedia Programming Interface 1.0, RIFF
    KindMagic(VX3_CLASS_MOVIE, 0, "\0\0\x01\xba"sv),              // ISO/IEC 11172-1, 2.4.3.2: pack header
    KindMagic(VX3_CLASS_MOVIE, 0, "\0\0\x01\xb3"sv),              // ISO/IEC 11172-2, 2.4.2.3: sequence header
    KindMagic(VX3_CLASS_MOVIE, 0, "FLV\x01"sv),                   // Video File Format 10, Annex E
    KindMagic(VX3_CLASS_MOVIE, 0, "<smil"sv),                     // W3C SMIL 3.0

    KindMagic(VX3_CLASS_SOUND, 0, "FORM\0\0\0\0AIFF"sv, twoTags), // Audio Interchange File Format 1.3
    KindMagic(VX3_CLASS_SOUND, 0, "FORM\0\0\0\0AIFC"sv, twoTags),
    KindMagic(VX3_CLASS_SOUND, 0, ".snd\0\0"sv), // au(5): offset to the data below 64 KiB
    KindMagic(VX3_CLASS_SOUND, 0, "RIFF\0\0\0\0WAVE"sv, twoTags),
    KindMagic(VX3_CLASS_SOUND, 0, "ID3\x02"sv), // ID3v2 informal standards 2.2 to 2.4
    KindMagic(VX3_CLASS_SOUND, 0, "ID3\x03"sv),
    KindMagic(VX3_CLASS_SOUND, 0, "ID3\x04"sv),

    ForeignScene(0, "Kaydara FBX Binary  \0"sv), // Blender developers' notes on binary FBX
    ForeignScene(0, "; FBX "sv),
    ForeignScene(0, "FORM\0\0\0\0LWOB"sv, twoTags), // LWO and LWO2 file format notes
    ForeignScene(0, "FORM\0\0\0\0LWLO"sv, twoTags),
    ForeignScene(0, "FORM\0\0\0\0LWO2"sv, twoTags),
    ForeignScene(0, "LWSC"sv),    // LWS scene notes
    ForeignScene(0, "#VRML V"sv), // ISO/IEC 14772-1, 4.2.2
    ForeignScene(0, "3DMF"sv),    // 3D Metafile Reference, big and little endian, text
    ForeignScene(0, "FMD3"sv),
    ForeignScene(0, "3DMetafile"sv),
};

bool Fits(const Magic& magic, Header header)
{
    if (header.size() < magic.offset + magic.bytes.size())
        return false;
    Header part = header.substr(magic.offset, magic.bytes.size());
    if (magic.mask.empty())
        return part == magic.bytes;
    for (size_t at = 0; at < part.size(); ++at)
        if ((part[at] ^ magic.bytes[at]) & magic.mask[at])
            return false;
    return true;
}

} // namespace

uint32_t BigAt(Header header, size_t offset, size_t width)
{
    uint32_t value = 0;
    for (size_t at = 0; at < width && offset + width <= header.size(); ++at)
        value = value << 8 | ByteAt(header, offset + at);
    return value;
}

uint32_t LittleAt(Header header, size_t offset, size_t width)
{
    uint32_t value = 0;
    for (size_t at = width; at > 0 && offset + width <= header.size(); --at)
        value = value << 8 | ByteAt(header, offset + at - 1);
    return value;
}

const Magic* FindMagic(Header header)
{
    for (const Magic& magic : magics)
        if (Fits(magic, header))
            return &magic;
    return nullptr;
}

PictureFormat TellPicture(Header header)
{
    if (const Magic* magic = FindMagic(header))
        return magic->picture;
    if (IsBmp(header))
        return Picture::Bmp;
    if (IsXbm(header))
        return Picture::Xbm;
    return IsTga(header) ? Picture::Tga : Picture::None;
}

} // namespace vx3::core
