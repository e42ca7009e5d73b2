#include "headless/hosticons.h"

#include <algorithm>
#include <array>

#include "core/services.h"
#include "headless/palette.h"
#include "vx3/guigadget.h"

namespace vx3::headless {

namespace {

constexpr int32_t side = 16;
constexpr int32_t colourDepth = 24;

// A letter for each pixel: `#` is covered, `+` half.
struct Sign {
    int32_t id;
    std::array<const char*, side> rows;
};

// clang-format off
constexpr Sign signs[] = {
    { VX3_ICON_BACK, { {
        "                ",
        "                ",
        "      +##       ",
        "     +##        ",
        "    +##         ",
        "   +##          ",
        "  +##           ",
        " ############## ",
        " ############## ",
        "  +##           ",
        "   +##          ",
        "    +##         ",
        "     +##        ",
        "      +##       ",
        "                ",
        "                ",
    } } },
    { VX3_ICON_FORWARD, { {
        "                ",
        "                ",
        "       ##+      ",
        "        ##+     ",
        "         ##+    ",
        "          ##+   ",
        "           ##+  ",
        " ############## ",
        " ############## ",
        "           ##+  ",
        "          ##+   ",
        "         ##+    ",
        "        ##+     ",
        "       ##+      ",
        "                ",
        "                ",
    } } },
    { VX3_ICON_UP, { {
        "                ",
        "       ##       ",
        "      ####      ",
        "     ######     ",
        "    ## ## ##    ",
        "   ##  ##  ##   ",
        "  ##   ##   ##  ",
        "  +    ##    +  ",
        "       ##       ",
        "       ##       ",
        "       ##       ",
        "       ##       ",
        "       ##       ",
        "       ##       ",
        "       ##       ",
        "                ",
    } } },
    { VX3_ICON_HOME, { {
        "                ",
        "       ##       ",
        "      ####      ",
        "     ##++##     ",
        "    ##++++##    ",
        "   ##++++++##   ",
        "  ##++++++++##  ",
        " ##++++++++++## ",
        "+##++++++++++##+",
        "  #++++++++++#  ",
        "  #+++####+++#  ",
        "  #+++#  #+++#  ",
        "  #+++#  #+++#  ",
        "  #+++#  #+++#  ",
        "  ############  ",
        "                ",
    } } },
    { VX3_ICON_SEARCH, { {
        "                ",
        "    ++##++      ",
        "   ########     ",
        "  ##+    +##    ",
        " +#+      +#+   ",
        " ##        ##   ",
        " ##        ##   ",
        " +#+      +#+   ",
        "  ##+    +##    ",
        "   #########    ",
        "    ++##+####   ",
        "          +###  ",
        "           +### ",
        "            +## ",
        "                ",
        "                ",
    } } },
    { VX3_ICON_REFRESH, { {
        "                ",
        "     +####+  ## ",
        "   +########+## ",
        "  +##+    +#### ",
        "  ##+      +### ",
        " +#+     ###### ",
        " ##      ###### ",
        " ##             ",
        "             ## ",
        " ######      ## ",
        " ######     +#+ ",
        " ###+      +##  ",
        " ####+    +##+  ",
        " ##+########+   ",
        " ##  +####+     ",
        "                ",
    } } },
    { VX3_ICON_MENU, { {
        "                ",
        "                ",
        "                ",
        "  ############  ",
        "  ############  ",
        "                ",
        "                ",
        "  ############  ",
        "  ############  ",
        "                ",
        "                ",
        "  ############  ",
        "  ############  ",
        "                ",
        "                ",
        "                ",
    } } },
    { VX3_ICON_ZOOM_SMALLEST, { {
        "                ",
        "                ",
        "  ###  ###  ### ",
        "  ###  ###  ### ",
        "  ###  ###  ### ",
        "                ",
        "                ",
        "  ###  ###  ### ",
        "  ###  ###  ### ",
        "  ###  ###  ### ",
        "                ",
        "                ",
        "  ###  ###  ### ",
        "  ###  ###  ### ",
        "  ###  ###  ### ",
        "                ",
    } } },
    { VX3_ICON_ZOOM_LARGEST, { {
        "                ",
        "                ",
        "  ############# ",
        "  ############# ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ##         ## ",
        "  ############# ",
        "  ############# ",
        "                ",
    } } },
};
// clang-format on

uint8_t CoverageOf(char letter)
{
    return letter == '#' ? 255 : letter == '+' ? 128 : 0;
}

void Draw(const Sign& sign, VX3Bitmap* bitmap)
{
    const gui::Colour colour = style::text;
    for (int32_t y = 0; y < side; ++y) {
        std::array<uint8_t, 4 * side> row = {};
        for (size_t x = 0; x < side; ++x) {
            const std::array<uint8_t, 4> pixel = { colour.red, colour.green, colour.blue,
                                                   CoverageOf(sign.rows[static_cast<size_t>(y)][x]) };
            std::copy(pixel.begin(), pixel.end(), row.begin() + static_cast<ptrdiff_t>(4 * x));
        }
        core::BitmapServices()->writePixels(bitmap, 0, y, side, row.data());
    }
}

} // namespace

void RegisterHostIcons()
{
    const VX3BitmapServices* bitmaps = core::BitmapServices();
    for (const Sign& sign : signs) {
        VX3Bitmap* bitmap = bitmaps->create(side, side, colourDepth);
        if (bitmap && bitmaps->addAlpha(bitmap)) {
            Draw(sign, bitmap);
            core::RegistryServices()->registerIcon(sign.id, bitmap); // copies it
        }
        bitmaps->free(bitmap);
    }
}

} // namespace vx3::headless
