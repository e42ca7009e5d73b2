// What reading and writing TIFF share: handles that close themselves and are quiet.
#pragma once

#include <tiffio.h>

#include <memory>

#include "codec.h"

namespace vx3::core {

struct CloseTiff {
    void operator()(TIFF* tif) const { TIFFClose(tif); }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

// Messages of one handle go nowhere, and no single block may be endless.
class TiffOptions
{
public:
    TiffOptions();
    ~TiffOptions();
    TiffOptions(const TiffOptions&) = delete;
    TiffOptions& operator=(const TiffOptions&) = delete;

    TIFFOpenOptions* Get() const { return options; }

private:
    TIFFOpenOptions* options;
};

} // namespace vx3::core
