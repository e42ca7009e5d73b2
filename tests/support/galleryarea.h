// Areas of the gallery: one that is dragged from and has a rubber band, one to drop on.
#pragma once

#include <functional>

#include "support/galleryvalues.h"

namespace vx3::tests {

constexpr int32_t bandAreaWidth = 300;
constexpr int32_t bandAreaHeight = 600;
constexpr int32_t itemSize = 60; // of the squares that can be dragged, two in a row
constexpr int32_t dropAreaWidth = 120;
constexpr int32_t dropAreaHeight = 80;

class GalleryArea
{
public:
    enum class Kind { Band, Drop };

    GalleryArea(const VX3Host& ownHost, GalleryLog& ownLog, Kind ownKind);
    ~GalleryArea();
    GalleryArea(const GalleryArea&) = delete;
    GalleryArea& operator=(const GalleryArea&) = delete;

    VX3Area Handle() const { return handle; }
    void SetMenu(std::function<void(int32_t x, int32_t y)> function) { showMenu = std::move(function); }
    // A point of the screen in the area, as words.
    std::string LocalText(int32_t x, int32_t y) const;

private:
    static void MinSize(void* object, int32_t* width, int32_t* height);
    static void Draw(void* object, VX3Canvas canvas, const VX3Rectangle* dirty);
    static VX3Bool Input(void* object, const VX3Container* event);
    static VX3Bool Message(void* object, int32_t code, const VX3Container* message);
    static constexpr VX3AreaTable table = { MinSize, Draw, Input, Message };

    void DrawSquares(VX3Canvas canvas) const;
    VX3Bool Press(int32_t channel, int32_t x, int32_t y, bool isDouble);
    VX3Bool Key(int32_t code, uint32_t qualifiers);
    void Band(int32_t x, int32_t y);
    std::string Name() const { return kind == Kind::Band ? "band area" : "drop area"; }

    const VX3Host& host;
    GalleryLog& log;
    Kind kind;
    VX3Area handle = 0;
    VX3Bitmap* picture = nullptr;
    std::function<void(int32_t x, int32_t y)> showMenu;
};

} // namespace vx3::tests
