// The numbers of content: attribute bits, node types, error codes, modes, flags.
#pragma once

#include <cstdint>

#include "vx3/browser.h"

namespace browser {

namespace Attribute {
constexpr uint32_t folder = VX3_NODE_FOLDER;
constexpr uint32_t container = VX3_NODE_CONTAINER;
constexpr uint32_t canHoldChildren = folder | container;
constexpr uint32_t bundle = VX3_NODE_BUNDLE;
constexpr uint32_t link = VX3_NODE_LINK;
constexpr uint32_t readOnly = VX3_NODE_READONLY;
constexpr uint32_t removed = VX3_NODE_REMOVED;
constexpr uint32_t noPlugin = VX3_NODE_NO_PLUGIN;
constexpr uint32_t mark = 0x10000; // class-bound; of a directory: not yet met in this listing
constexpr uint32_t volume = VX3_NODE_VOLUME;
constexpr uint32_t dirty = VX3_NODE_DIRTY;
constexpr uint32_t quickPlugin = 0x80000; // the plugin was found by the URL alone
constexpr uint32_t neverProbed = 0x100000;
constexpr uint32_t addressChanging = 0x200000; // not told outside: no listing while it is set
constexpr uint32_t category = VX3_NODE_CATEGORY;
// What comes and goes while the content stays as it is.
constexpr uint32_t passing = noPlugin | mark | dirty | quickPlugin | addressChanging;
} // namespace Attribute

enum class NodeType : int32_t { Category = 1, Directory = 2, Preset = 3, Catalog = 4, BaseList = 6, Network = 7 };

enum class ChangeMode : int32_t { Ask = VX3_MODE_ASK, Walk = VX3_MODE_COUNT, Do = VX3_MODE_DO };

// Callers of the boundary may pass anything: only the low 16 bits are the mode.
constexpr ChangeMode ModeOf(int32_t number)
{
    return static_cast<ChangeMode>(number & 0xFFFF);
}

using ErrorCode = uint32_t;

namespace Error {
constexpr ErrorCode none = VX3_ERROR_NONE;
constexpr ErrorCode rename = VX3_ERROR_RENAME;
constexpr ErrorCode move = VX3_ERROR_MOVE;
constexpr ErrorCode copy = VX3_ERROR_COPY;
constexpr ErrorCode deletion = VX3_ERROR_DELETE;
constexpr ErrorCode newFolder = VX3_ERROR_NEW_FOLDER;
constexpr ErrorCode moveFailed = VX3_ERROR_MOVE_FAILED;
constexpr ErrorCode wrongType = VX3_ERROR_WRONG_TYPE;
constexpr ErrorCode cancelled = VX3_ERROR_CANCELLED;
} // namespace Error

// First values of the core message VX3_MESSAGE_BROWSER.
namespace CoreMessage {
constexpr int64_t presetsChanged = 1;
constexpr int64_t selectionChanged = 2; // or what else views show of a list: no data
} // namespace CoreMessage

enum class DateKind : int32_t { Created = 0, Modified = 1, ModifiedToo = 2 };

constexpr uint32_t URL_LINK_TARGET = VX3_URL_LINK_TARGET;
constexpr uint32_t PLUGIN_QUICK_TEST = VX3_PLUGIN_QUICK_TEST;
constexpr int32_t IDENTIFY_HEADER_BYTES = 512;

// Request bits of GetPreview.
namespace PreviewRequest {
constexpr uint32_t open = VX3_PREVIEW_OPEN;
constexpr uint32_t forLink = VX3_PREVIEW_FOR_LINK;
constexpr uint32_t stored = VX3_PREVIEW_STORED;
} // namespace PreviewRequest

// Detail of a type name: the general kind, or the specific one as by extension.
enum class TypeDetail : int32_t { General = 0, Specific = 2 };

// Numbers of the icon service.
enum class Icon : int32_t {
    Computer = 0,
    Drives = 1,
    Folder = 3,
    FolderOpen = 4,
    FolderPresets = 5,
    FolderCatalogs = 6,
    FolderSearch = 7,
    Document = 8,
    Scene = 9,
    Image = 10,
    Movie = 11,
    Favorites = 13,
    FolderNetwork = 15,
    Scripts = 18,
    FolderLocked = 21,
    FolderOpenLocked = 22,
    Audio = 24,
    Tonic = 25,
    Layout = 26,
    FirstProgressor = 28,
};

struct Progress {
    VX3ProgressFunction function = nullptr;
    void* user = nullptr;

    explicit operator bool() const { return function != nullptr; }
    // False if the caller wants to stop.
    bool Report(ChangeMode mode, int64_t size) const { return !function || function(user, static_cast<int32_t>(mode), 1, size, 0) >= 0; }
};

} // namespace browser
