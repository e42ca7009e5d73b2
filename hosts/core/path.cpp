#include <algorithm>
#include <cstring>

#include "pathplatform.h"
#include "pathvalue.h"
#include "services.h"
#include "textvalue.h"

namespace vx3::core {
namespace {

bool HasSeparator(UnitSpan span)
{
    return std::any_of(span.units, span.units + span.length, IsSeparator);
}

void Append(VX3Unit*& out, UnitSpan span)
{
    if (span.length > 0)
        std::memcpy(out, span.units, static_cast<size_t>(span.length) * sizeof(VX3Unit));
    out += span.length;
}

// Between the two parts of a path, unless the directory is a root and ends in one.
int32_t SeparatorsBetween(UnitSpan directory, UnitSpan last)
{
    if (directory.length == 0 || last.length == 0)
        return 0;
    return IsSeparator(directory.units[directory.length - 1]) ? 0 : 1;
}

int64_t JoinedLength(UnitSpan directory, UnitSpan last)
{
    return static_cast<int64_t>(directory.length) + SeparatorsBetween(directory, last) + last.length;
}

void WriteJoined(VX3Unit* out, UnitSpan directory, UnitSpan last)
{
    const int32_t separators = SeparatorsBetween(directory, last);
    Append(out, directory);
    if (separators > 0)
        *out++ = pathSeparator;
    Append(out, last);
}

TextBuffer* MakeJoined(UnitSpan directory, UnitSpan last, bool ofPath)
{
    const int64_t length = JoinedLength(directory, last);
    TextBuffer* made = length > maximalTextLength ? nullptr : TextBuffer::Make(static_cast<int32_t>(length), 0, ofPath);
    if (made)
        WriteJoined(made->Units(), directory, last);
    return made;
}

bool IsJoined(const TextBuffer* text, UnitSpan directory, UnitSpan last)
{
    if (!text || text->length != JoinedLength(directory, last))
        return false;
    const UnitSpan whole = SpanOf(text);
    if (SeparatorsBetween(directory, last) > 0 && whole.units[directory.length] != pathSeparator)
        return false;
    const int32_t lastStart = whole.length - last.length;
    return SpansEqual({ whole.units, directory.length }, directory) && SpansEqual({ whole.units + lastStart, last.length }, last);
}

// Leaves the text of a folder in the buffer of its last part, if that holds none yet. The
// reference that it keeps is its own.
void RememberJoined(TextBuffer& last, TextBuffer* text)
{
    TextBuffer* none = nullptr;
    text->Retain();
    if (!last.joined.compare_exchange_strong(none, text, std::memory_order_acq_rel))
        text->Release();
}

// The text of the folder as the directory of its entries, with a reference for the caller.
// `earlier` is a directory that may be the right one by chance. None without memory.
TextBuffer* ShareFolderText(const VX3Path& folder, TextBuffer* earlier)
{
    TextBuffer* last = LastOf(folder);
    if (!last)
        return ShareBuffer(DirectoryOf(folder));
    const UnitSpan directorySpan = SpanOf(DirectoryOf(folder));
    for (TextBuffer* present : { last->joined.load(std::memory_order_acquire), earlier }) {
        if (IsJoined(present, directorySpan, SpanOf(last)))
            return ShareBuffer(present);
    }
    TextBuffer* made = MakeJoined(directorySpan, SpanOf(last), true);
    if (made)
        RememberJoined(*last, made);
    return made;
}

// Joins through the text, where a name has separators of its own.
bool JoinText(UnitSpan folder, UnitSpan name, VX3Path& joined)
{
    TextBuffer* text = MakeJoined(folder, name, false);
    if (!text)
        return false;
    const bool done = SetPathUnits(joined, SpanOf(text));
    text->Release();
    return done;
}

bool JoinSeparated(const VX3Path& folder, TextBuffer* name, VX3Path& joined)
{
    VX3String text = {};
    const bool done = PathText(folder, text) && JoinText(SpanOf(text), SpanOf(name), joined);
    ReplaceBuffer(text, nullptr);
    return done;
}

// Drops double separators behind the root, and those at the end. Works in place.
int32_t TidySeparators(VX3Unit* units, int32_t length)
{
    int32_t out = 0;
    for (int32_t at = 0; at < length; ++at) {
        const bool isSeparator = IsSeparator(units[at]);
        if (isSeparator && out > 0 && units[out - 1] == pathSeparator)
            continue;
        units[out++] = isSeparator ? pathSeparator : units[at];
    }
    const int32_t root = RootLength({ units, out });
    while (out > root && units[out - 1] == pathSeparator)
        --out;
    return out;
}

// Where the last part begins.
int32_t LastStart(UnitSpan path)
{
    int32_t start = path.length;
    const int32_t root = RootLength(path);
    while (start > root && !IsSeparator(path.units[start - 1]))
        --start;
    return start;
}

// The directory in front of a last part that begins at `start`.
UnitSpan DirectoryAt(UnitSpan path, int32_t start)
{
    const int32_t root = RootLength(path);
    return { path.units, start > root ? start - 1 : root };
}

bool SetTidyUnits(VX3Path& path, UnitSpan units)
{
    const int32_t start = LastStart(units);
    const UnitSpan directorySpan = DirectoryAt(units, start);
    const UnitSpan lastSpan = { units.units + start, units.length - start };
    TextBuffer* directory = directorySpan.length > 0 ? TextBuffer::Make(directorySpan.length, 0, true) : nullptr;
    TextBuffer* last = lastSpan.length > 0 ? TextBuffer::MakeCopy(lastSpan.units, lastSpan.length) : nullptr;
    if ((directorySpan.length > 0 && !directory) || (lastSpan.length > 0 && !last)) {
        ReleaseBuffer(directory);
        ReleaseBuffer(last);
        return false;
    }
    if (directory)
        std::memcpy(directory->Units(), directorySpan.units, static_cast<size_t>(directorySpan.length) * sizeof(VX3Unit));
    ReplaceParts(path, directory, last);
    return true;
}

void Destruct(VX3Path* path)
{
    DestructPath(*path);
}

VX3Bool Copy(VX3Path* to, const VX3Path* from)
{
    return CopyPath(*to, *from);
}

VX3Bool IsEmpty(const VX3Path* path)
{
    return !path->opaque[0] && !path->opaque[1];
}

VX3Bool Equals(const VX3Path* a, const VX3Path* b)
{
    if (MemoryOf(*a) || MemoryOf(*b))
        return a->opaque[0] == b->opaque[0];
    return SpansEqual(SpanOf(LastOf(*a)), SpanOf(LastOf(*b))) && SpansEqual(SpanOf(DirectoryOf(*a)), SpanOf(DirectoryOf(*b)));
}

VX3Bool SetPathText(VX3Path* path, const VX3String* text)
{
    return SetPathUnits(*path, SpanOf(*text));
}

VX3Bool GetPathText(const VX3Path* path, VX3String* text)
{
    return PathText(*path, *text);
}

VX3Bool GetDirectory(const VX3Path* path, VX3Path* directory)
{
    if (MemoryOf(*path) || !LastOf(*path)) {
        DestructPath(*directory);
        return 1;
    }
    return SetTidyUnits(*directory, SpanOf(DirectoryOf(*path)));
}

VX3Bool SetDirectory(VX3Path* path, const VX3Path* directory)
{
    if (MemoryOf(*path) || MemoryOf(*directory))
        return 0;
    TextBuffer* last = ShareBuffer(LastOf(*path));
    const bool done = JoinPath(*directory, last, *path);
    ReleaseBuffer(last);
    return done;
}

VX3Bool GetLast(const VX3Path* path, VX3String* last)
{
    ReplaceBuffer(*last, MemoryOf(*path) ? nullptr : ShareBuffer(LastOf(*path)));
    return 1;
}

VX3Bool SetLast(VX3Path* path, const VX3String* last)
{
    if (MemoryOf(*path))
        return 0;
    const UnitSpan name = SpanOf(*last);
    if (name.length == 0)
        return SetTidyUnits(*path, SpanOf(DirectoryOf(*path)));
    if (HasSeparator(name))
        return JoinText(SpanOf(DirectoryOf(*path)), name, *path);
    TextBuffer* directory = ShareBuffer(DirectoryOf(*path));
    ReplaceParts(*path, directory, ShareBuffer(*last));
    return 1;
}

VX3Bool Join(const VX3Path* folder, const VX3String* name, VX3Path* joined)
{
    return !MemoryOf(*folder) && JoinPath(*folder, BufferOf(*name), *joined);
}

VX3Bool IsPathNameAllowed(const VX3String* name)
{
    return IsNameAllowed(SpanOf(*name));
}

constexpr VX3PathServices pathServices = {
    Destruct,
    Copy,
    IsEmpty,
    Equals,
    SetPathText,
    GetPathText,
    SetPathUrlTail,
    GetPathUrlTail,
    GetDirectory,
    SetDirectory,
    GetLast,
    SetLast,
    Join,
    GetPathSuffix,
    SetPathSuffix,
    PathHasSuffix,
    IsPathNameAllowed,
    SetPathMemoryReading,
    SetPathMemoryWriting,
    TakePathMemory,
};

} // namespace

void ReplaceParts(VX3Path& path, TextBuffer* directory, TextBuffer* last)
{
    VX3Path old = path;
    path.opaque[0] = directory;
    path.opaque[1] = last;
    DestructPath(old);
}

void DestructPath(VX3Path& path)
{
    if (MemoryBlock* block = MemoryOf(path)) {
        block->Release();
    } else {
        ReleaseBuffer(DirectoryOf(path));
        ReleaseBuffer(LastOf(path));
    }
    path = {};
}

bool SetPathUnits(VX3Path& path, UnitSpan units)
{
    if (units.length == 0) {
        DestructPath(path);
        return true;
    }
    TextBuffer* tidy = TextBuffer::MakeCopy(units.units, units.length);
    if (!tidy)
        return false;
    tidy->length = TidySeparators(tidy->Units(), tidy->length);
    const bool done = SetTidyUnits(path, SpanOf(tidy));
    tidy->Release();
    return done;
}

bool CopyPath(VX3Path& to, const VX3Path& from)
{
    if (MemoryBlock* block = MemoryOf(from)) {
        block->Retain();
        ReplaceMemory(to, block);
        return true;
    }
    TextBuffer* directory = ShareBuffer(DirectoryOf(from));
    ReplaceParts(to, directory, ShareBuffer(LastOf(from)));
    return true;
}

bool PathText(const VX3Path& path, VX3String& text)
{
    if (MemoryOf(path) || (!DirectoryOf(path) && !LastOf(path)))
        return AssignUnits(text, nullptr, 0);
    const UnitSpan directory = SpanOf(DirectoryOf(path));
    const UnitSpan last = SpanOf(LastOf(path));
    const int64_t length = JoinedLength(directory, last);
    VX3Unit* units = length > maximalTextLength ? nullptr : PrepareText(text, static_cast<int32_t>(length));
    if (!units)
        return false;
    WriteJoined(units, directory, last);
    return true;
}

bool JoinPath(const VX3Path& folder, TextBuffer* name, VX3Path& joined)
{
    const UnitSpan nameSpan = SpanOf(name);
    if (nameSpan.length == 0)
        return CopyPath(joined, folder);
    const bool folderIsEmpty = !folder.opaque[0] && !folder.opaque[1];
    if (HasSeparator(nameSpan))
        return folderIsEmpty ? SetPathUnits(joined, nameSpan) : JoinSeparated(folder, name, joined);
    if (folderIsEmpty) {
        ReplaceParts(joined, nullptr, ShareBuffer(name));
        return true;
    }
    TextBuffer* directory = ShareFolderText(folder, MemoryOf(joined) ? nullptr : DirectoryOf(joined));
    if (!directory)
        return false;
    ReplaceParts(joined, directory, ShareBuffer(name));
    return true;
}

const VX3PathServices* PathServices()
{
    return &pathServices;
}

} // namespace vx3::core
