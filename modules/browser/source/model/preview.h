// What GetPreview gives: a bitmap, how to draw it, and whether it is owned.
#pragma once

#include "services/allocation.h"
#include "services/hostbitmap.h"

namespace browser {

class Preview
{
public:
    enum : uint32_t {
        drawnMixed = 2,    // drawn in the mode 768
        neverEnlarged = 4, // icons carry this
    };

    // Borrows: the owner keeps the bitmap for as long as any preview may show it.
    Preview(VX3Bitmap* borrowed, uint32_t drawFlags)
        : bitmap(borrowed)
        , flags(drawFlags)
    {
    }
    Preview(HostBitmap owned, uint32_t drawFlags)
        : own(std::move(owned))
        , bitmap(own.Get())
        , flags(drawFlags)
    {
    }

    VX3Bitmap* Bitmap() const { return bitmap; }
    uint32_t Flags() const { return flags; }

private:
    HostBitmap own;
    VX3Bitmap* bitmap;
    uint32_t flags;
};

} // namespace browser
