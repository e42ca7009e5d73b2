// A container as bytes and back; docs/libraryformat.md describes them byte by byte.
//
// One container value without pointers has exactly one image, and an image that could
// not have been written is refused.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "vx3/types.h"

namespace vx3::core {

constexpr int32_t maximalContainerDepth = 64; // the outermost one counts

// Appends the image; false if the container is too deep. May throw std::bad_alloc.
bool EncodeContainer(const VX3Container& container, std::vector<uint8_t>& image);

// Reads an image that takes up all of the bytes. False if it is damaged or without
// memory; the container is then as it was.
bool DecodeContainer(std::span<const uint8_t> image, VX3Container& container);

} // namespace vx3::core
