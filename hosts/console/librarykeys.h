// The keys of the containers in a library file.
#pragma once

#include <cstdint>

namespace vx3::console::key {

constexpr int32_t infoVersion = 0;
constexpr int32_t infoName = 3;
constexpr int32_t infoNames = 4;
constexpr int32_t infoReadOnly = 5;

constexpr int32_t categoryText = 1;
constexpr int32_t categoryNames = 2;

constexpr int32_t itemType = 1;
constexpr int32_t itemWords = 2;
constexpr int32_t itemDescription = 3;
constexpr int32_t itemSource = 4;
constexpr int32_t itemPreviews = 5;
constexpr int32_t itemPath = 6;
constexpr int32_t itemView = 10;
constexpr int32_t itemChanged = 11;
constexpr int32_t itemCreated = 13;
constexpr int32_t itemData = 14;
constexpr int32_t itemSettings = 15;
constexpr int32_t itemNames = 16;
constexpr int32_t itemSubtype = 17;
constexpr int32_t itemScanState = 21;
constexpr int32_t itemScanSizes = 22;

constexpr int32_t pathText = 0;
constexpr int32_t pathOldPreviews = 1;
constexpr int32_t pathHash = 2;
constexpr int32_t pathLink = 3;
constexpr int32_t pathLinkIsRelative = 4;

constexpr int32_t dataOffset = 0;
constexpr int32_t dataMode = 1;
constexpr int32_t dataUnpacked = 2;

constexpr int32_t previewFile = 0;
constexpr int32_t previewWidth = 1;
constexpr int32_t previewHeight = 2;
constexpr int32_t previewGrade = 3;
constexpr int32_t previewDate = 4;
constexpr int32_t previewOffset = 5;

constexpr int32_t dateDay = 0;
constexpr int32_t dateTime = 1;

} // namespace vx3::console::key
