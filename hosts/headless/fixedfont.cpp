#include "headless/fixedfont.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include <ft2build.h>

#include FT_FREETYPE_H

namespace vx3::headless {

namespace {

constexpr int glyphPixels = 11; // the size at which the glyphs fit the cell
constexpr int baseline = 10;    // below the top of the cell

constexpr const char* fontFiles[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf", "/usr/share/fonts/dejavu-sans-mono-fonts/DejaVuSansMono.ttf",
    "/usr/share/fonts/dejavu/DejaVuSansMono.ttf",          "/usr/share/fonts/TTF/DejaVuSansMono.ttf",
    "/usr/local/share/fonts/DejaVuSansMono.ttf",
};

struct UnitRange {
    char16_t first;
    char16_t last;
};

constexpr UnitRange combiningMarks[] = {
    { 0x0300, 0x036F }, { 0x0483, 0x0489 }, { 0x0591, 0x05BD }, { 0x0610, 0x061A }, { 0x064B, 0x065F },
    { 0x1AB0, 0x1AFF }, { 0x1DC0, 0x1DFF }, { 0x20D0, 0x20FF }, { 0x3099, 0x309A }, { 0xFE20, 0xFE2F },
};

bool IsCombining(char16_t unit)
{
    return std::any_of(std::begin(combiningMarks), std::end(combiningMarks),
                       [unit](const UnitRange& range) { return unit >= range.first && unit <= range.last; });
}

bool IsHighHalf(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool IsLowHalf(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

void DrawBox(Raster& raster, const gui::Place& clip, gui::Point corner, gui::Colour colour)
{
    const gui::Place box = { corner.x + 1, corner.y + 3, cellWidth - 2, baseline - 3 };
    for (const gui::Place& side : { gui::Place{ box.x, box.y, box.width, 1 }, gui::Place{ box.x, box.y + box.height - 1, box.width, 1 },
                                    gui::Place{ box.x, box.y, 1, box.height }, gui::Place{ box.x + box.width - 1, box.y, 1, box.height } })
        raster.Fill(side.Cut(clip), colour);
}

} // namespace

struct FixedFont::Face {
    ~Face()
    {
        if (face)
            FT_Done_Face(face);
        if (library)
            FT_Done_FreeType(library);
    }
    bool Open(const std::string& file)
    {
        return FT_Init_FreeType(&library) == 0 && FT_New_Face(library, file.c_str(), 0, &face) == 0
            && FT_Set_Pixel_Sizes(face, 0, glyphPixels) == 0;
    }
    bool Load(char32_t character) { return FT_Load_Char(face, character, FT_LOAD_RENDER) == 0; }

    FT_Library library = nullptr;
    FT_Face face = nullptr;
};

FixedFont::FixedFont()
    : FixedFont(FindFontFile())
{
}

FixedFont::FixedFont(const std::string& file)
{
    auto opened = std::make_unique<Face>();
    if (!file.empty() && opened->Open(file))
        face = std::move(opened);
}

FixedFont::~FixedFont() = default;

bool FixedFont::HasGlyphs() const
{
    return face != nullptr;
}

void FixedFont::Draw(Raster& raster, const gui::Place& clip, std::u16string_view text, gui::Point corner, gui::Colour colour)
{
    for (size_t index = 0; index < text.size(); ++index) {
        const char16_t unit = text[index];
        const bool isPair = IsHighHalf(unit) && index + 1 < text.size() && IsLowHalf(text[index + 1]);
        const size_t cell = IsCombining(unit) && index > 0 ? index - 1 : index;
        const gui::Point at = { corner.x + static_cast<int>(cell) * cellWidth, corner.y };
        const char32_t character = isPair ? 0x10000u + ((unit & 0x3FFu) << 10) + (text[++index] & 0x3FFu) : unit;
        if (character == u' ' || clip.Cut({ at.x - cellWidth, at.y, 3 * cellWidth, cellHeight }).IsEmpty())
            continue;
        if (!face || !face->Load(character)) {
            DrawBox(raster, clip, at, colour);
            continue;
        }
        const FT_GlyphSlot glyph = face->face->glyph;
        const Coverage coverage = { glyph->bitmap.buffer, static_cast<int>(glyph->bitmap.width), static_cast<int>(glyph->bitmap.rows),
                                    glyph->bitmap.pitch };
        raster.Blend(coverage, { at.x + glyph->bitmap_left, at.y + baseline - glyph->bitmap_top }, clip, colour);
    }
}

std::string FindFontFile()
{
    std::error_code ignored;
    for (const char* file : fontFiles)
        if (std::filesystem::exists(file, ignored))
            return file;
    return {};
}

} // namespace vx3::headless
