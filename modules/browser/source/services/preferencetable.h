// The settings of the browser: key, type, name, default and bounds, each once.
#pragma once

#include "vx3/browser.h"
#include "vx3/container.h"

#include <cstdint>
#include <iterator>

namespace browser {

// The numbers are keys of the stored container and never change. A pane that shows a
// folder keeps its own zoom, order and view, apart from one that shows a list of hits.
enum class Preference : int32_t {
    StartUrl = 1,
    Zoom,
    HomeUrl,
    SortKey,
    ShowUnknown,
    PreviewWidth,
    PreviewHeight,
    PreviewFromFile,
    BackgroundEnabled,
    FoldersFirst,
    PreviewAlways,
    LastPlace,
    BackgroundTimeLimit,
    PreviewQuality,
    ViewMode,
    WindowWidth,
    WindowHeight,
    WindowState,
    FolderZoom,
    FolderSortKey,
    FolderViewMode,
    FirstSplitterBefore,
    FirstSplitterBehind,
    SecondSplitterBefore,
    SecondSplitterBehind,
    WindowZoom,
    HitsZoom,
    WindowOption28,
    HitsSortKey,
    WindowOption30,
    HitsViewMode,
    FoundOrder,
    ShowImages,
    ShowMovies,
    ShowNative,
    ShowOther3d,
    ShowKnown,
};

constexpr VX3Preference NumberRow(Preference key, const char* name, int32_t fallback, int32_t lowest, int32_t highest)
{
    return { static_cast<int32_t>(key), VX3_VALUE_INT32, name, double(fallback), double(lowest), double(highest) };
}

constexpr VX3Preference SwitchRow(Preference key, const char* name, int32_t fallback)
{
    return NumberRow(key, name, fallback, 0, 1);
}

constexpr VX3Preference FloatRow(Preference key, const char* name, double fallback, double lowest, double highest)
{
    return { static_cast<int32_t>(key), VX3_VALUE_FLOAT, name, fallback, lowest, highest };
}

constexpr VX3Preference ZoomRow(Preference key, const char* name)
{
    return FloatRow(key, name, 0.25, 0, 1);
}

constexpr VX3Preference WeightRow(Preference key, const char* name, double fallback)
{
    return FloatRow(key, name, fallback, 0, 100000); // Some hosts store pixels.
}

// A text or a container: empty by default.
constexpr VX3Preference PlainRow(Preference key, const char* name, int32_t type)
{
    return { static_cast<int32_t>(key), type, name, 0, 0, 0 };
}

// In the order of the keys, without a gap.
inline constexpr VX3Preference preferenceRows[] = {
    PlainRow(Preference::StartUrl, "startUrl", VX3_VALUE_TEXT),
    ZoomRow(Preference::Zoom, "zoom"),
    PlainRow(Preference::HomeUrl, "homeUrl", VX3_VALUE_TEXT),
    NumberRow(Preference::SortKey, "sortKey", 0, 0, 5),
    SwitchRow(Preference::ShowUnknown, "showUnknown", 1),
    NumberRow(Preference::PreviewWidth, "previewWidth", 256, 128, 1024),
    NumberRow(Preference::PreviewHeight, "previewHeight", 256, 128, 1024),
    SwitchRow(Preference::PreviewFromFile, "previewFromFile", 1),
    SwitchRow(Preference::BackgroundEnabled, "backgroundEnabled", 1),
    SwitchRow(Preference::FoldersFirst, "foldersFirst", 1),
    SwitchRow(Preference::PreviewAlways, "previewAlways", 0),
    PlainRow(Preference::LastPlace, "lastPlace", VX3_VALUE_TEXT),
    NumberRow(Preference::BackgroundTimeLimit, "backgroundTimeLimit", 30, 1, 3600),
    NumberRow(Preference::PreviewQuality, "previewQuality", 90, 1, 100),
    NumberRow(Preference::ViewMode, "viewMode", 1, 1, 2),
    NumberRow(Preference::WindowWidth, "windowWidth", 800, 1, 32768),
    NumberRow(Preference::WindowHeight, "windowHeight", 750, 1, 32768),
    PlainRow(Preference::WindowState, "windowState", VX3_VALUE_CONTAINER),
    ZoomRow(Preference::FolderZoom, "folderZoom"),
    NumberRow(Preference::FolderSortKey, "folderSortKey", 0, 0, 5),
    NumberRow(Preference::FolderViewMode, "folderViewMode", 2, 1, 2),
    WeightRow(Preference::FirstSplitterBefore, "firstSplitterBefore", 60),
    WeightRow(Preference::FirstSplitterBehind, "firstSplitterBehind", 40),
    WeightRow(Preference::SecondSplitterBefore, "secondSplitterBefore", 40),
    WeightRow(Preference::SecondSplitterBehind, "secondSplitterBehind", 60),
    ZoomRow(Preference::WindowZoom, "windowZoom"),
    ZoomRow(Preference::HitsZoom, "hitsZoom"),
    NumberRow(Preference::WindowOption28, "windowOption28", 0, INT32_MIN, INT32_MAX),
    NumberRow(Preference::HitsSortKey, "hitsSortKey", 0, 0, 5),
    NumberRow(Preference::WindowOption30, "windowOption30", 1, INT32_MIN, INT32_MAX),
    NumberRow(Preference::HitsViewMode, "hitsViewMode", 1, 1, 2),
    SwitchRow(Preference::FoundOrder, "foundOrder", 0),
    SwitchRow(Preference::ShowImages, "showImages", 1),
    SwitchRow(Preference::ShowMovies, "showMovies", 1),
    SwitchRow(Preference::ShowNative, "showNative", 1),
    SwitchRow(Preference::ShowOther3d, "showOther3d", 1),
    SwitchRow(Preference::ShowKnown, "showKnown", 1),
};

constexpr bool AreKeysInOrder()
{
    for (size_t i = 0; i < std::size(preferenceRows); i++)
        if (preferenceRows[i].key != static_cast<int32_t>(i) + 1)
            return false;
    return true;
}
static_assert(AreKeysInOrder(), "a key is the place of its row and 1");

// None for a key that is none of ours.
constexpr const VX3Preference* FindPreference(int32_t key)
{
    return key >= 1 && key <= static_cast<int32_t>(std::size(preferenceRows)) ? &preferenceRows[key - 1] : nullptr;
}

constexpr const VX3Preference& RowOf(Preference key)
{
    return preferenceRows[static_cast<int32_t>(key) - 1];
}

} // namespace browser
