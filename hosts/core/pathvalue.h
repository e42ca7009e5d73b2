// What a path value holds, and the parts of the path section by the file that they live in.
//
// A path is two counted buffers, the text of its directory and its last part. `/a/b` is "/a" and
// "b", `/a` is "/" and "a", `/` is "/" and nothing, and a name alone has no directory. The
// last part of a path made by `join` is the buffer of the name itself.
//
// The paths of the entries of a folder share its text. Their first `join` makes it from
// the folder's two parts and leaves it in the buffer of its last part (TextBuffer::joined),
// where the further ones find it. It is written there once, by whoever is first, and is
// used only if it fits the directory of the folder at hand, since a name may be the last
// part of several folders; a folder that comes late makes a buffer for itself at each
// call, unless the path that it is asked to set has the right one already.
//
// A path whose first word is odd stands for a block of memory.
#pragma once

#include "memoryblock.h"
#include "textbuffer.h"

namespace vx3::core {

MemoryBlock* MemoryOf(const VX3Path& path); // none for a path of the disk

inline TextBuffer* DirectoryOf(const VX3Path& path)
{
    return static_cast<TextBuffer*>(path.opaque[0]);
}

inline TextBuffer* LastOf(const VX3Path& path)
{
    return static_cast<TextBuffer*>(path.opaque[1]);
}

// Gives the path two parts in place of its own; both references are handed over.
void ReplaceParts(VX3Path& path, TextBuffer* directory, TextBuffer* last);
void ReplaceMemory(VX3Path& path, MemoryBlock* block);
void DestructPath(VX3Path& path);

// path.cpp
bool SetPathUnits(VX3Path& path, UnitSpan units); // brings it into shape; the units may be those of the path
bool CopyPath(VX3Path& to, const VX3Path& from);
bool PathText(const VX3Path& path, VX3String& text);
bool JoinPath(const VX3Path& folder, TextBuffer* name, VX3Path& joined);

// pathurl.cpp
VX3Bool SetPathUrlTail(VX3Path* path, const VX3String* tail);
VX3Bool GetPathUrlTail(const VX3Path* path, VX3String* tail);

// pathsuffix.cpp
VX3Bool GetPathSuffix(const VX3Path* path, VX3String* suffix);
VX3Bool SetPathSuffix(VX3Path* path, const VX3String* suffix);
VX3Bool PathHasSuffix(const VX3Path* path, const VX3String* suffix);

// pathmemory.cpp
VX3Bool SetPathMemoryReading(VX3Path* path, const void* bytes, int64_t length);
VX3Bool SetPathMemoryWriting(VX3Path* path);
VX3Bool TakePathMemory(VX3Path* path, void** bytes, int64_t* length);

} // namespace vx3::core
