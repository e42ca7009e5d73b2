// An owned bitmap of the host.
#pragma once

#include "services/filepath.h"

namespace browser {

class HostBitmap
{
public:
    HostBitmap() = default;
    explicit HostBitmap(VX3Bitmap* owned)
        : bitmap(owned)
    {
    }
    HostBitmap(HostBitmap&& other) noexcept
        : bitmap(std::exchange(other.bitmap, nullptr))
    {
    }
    HostBitmap& operator=(HostBitmap&& other) noexcept
    {
        std::swap(bitmap, other.bitmap);
        return *this;
    }
    ~HostBitmap()
    {
        if (bitmap)
            host->bitmap->free(bitmap);
    }

    // The picture in a file, or none.
    static HostBitmap Load(const FilePath& path)
    {
        HostBitmap loaded(host->bitmap->create(1, 1, colourDepth));
        if (loaded.bitmap && host->bitmap->load(loaded.bitmap, path.Value(), 0) == VX3_IMAGE_OK)
            return loaded;
        return {};
    }
    static HostBitmap Create(int32_t width, int32_t height) { return HostBitmap(host->bitmap->create(width, height, colourDepth)); }

    // A square copy of another bitmap with its alpha, or none.
    static HostBitmap Scaled(const VX3Bitmap* source, int32_t size);
    explicit operator bool() const { return bitmap != nullptr; }
    VX3Bitmap* Get() const { return bitmap; }
    VX3Bitmap* Take() { return std::exchange(bitmap, nullptr); }
    int32_t Width() const { return host->bitmap->width(bitmap); }
    int32_t Height() const { return host->bitmap->height(bitmap); }

private:
    static constexpr int32_t colourDepth = 24;

    VX3Bitmap* bitmap = nullptr;
};

} // namespace browser
