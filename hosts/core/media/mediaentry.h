// The one function of the library `vx3media.so`, which is loaded when the first picture
// needs it: the codecs of FFmpeg bring a hundred libraries of their own, and take longer to
// load than all the rest of a program.
#pragma once

#include "core/bitmappixels.h"
#include "core/classifymagic.h"

// Decodes one frame of a picture; a VX3_IMAGE value. Any thread. Throws std::bad_alloc and
// nothing else. Both sides come from one build, so that classes mean the same to them.
extern "C" __attribute__((visibility("default"))) int32_t vx3_decode_media_picture(vx3::core::PictureFormat format, const uint8_t* bytes,
                                                                                   size_t length, int32_t frame, vx3::core::Pixels* pixels);
