// The section for tools on library files: forwards to LibraryTool.

#include "host/librarytool.h"
#include "host/servicetable.h"

namespace browser {

namespace {

LibraryTool& FromC(VX3Library* library)
{
    return *reinterpret_cast<LibraryTool*>(library);
}

int32_t ToC(LibraryOutcome outcome)
{
    return static_cast<int32_t>(outcome);
}

// A block for the caller.
int32_t GiveOut(LibraryOutcome outcome, Block& block, void** bytes, int64_t* length)
{
    if (outcome != LibraryOutcome::Ok)
        return ToC(outcome);
    *length = block.Size();
    *bytes = block.Take();
    return VX3_LIBRARY_OK;
}

int32_t GiveText(const String& text, VX3String* out)
{
    return String::Of(out).Set(text) ? VX3_LIBRARY_OK : VX3_LIBRARY_NO_MEMORY;
}

int32_t Create(const VX3Path* file, const VX3String* name, VX3Library** library)
{
    LibraryTool* tool = nullptr;
    const LibraryOutcome outcome = LibraryTool::Create(FilePath::Of(file), name ? &String::Of(name) : nullptr, tool);
    if (outcome == LibraryOutcome::Ok)
        *library = reinterpret_cast<VX3Library*>(tool);
    return ToC(outcome);
}

int32_t Open(const VX3Path* file, int32_t access, VX3Library** library)
{
    LibraryTool* tool = nullptr;
    const LibraryAccess wanted = access == VX3_LIBRARY_CHANGE ? LibraryAccess::Change : LibraryAccess::Read;
    const LibraryOutcome outcome = LibraryTool::Open(FilePath::Of(file), wanted, tool);
    if (outcome == LibraryOutcome::Ok)
        *library = reinterpret_cast<VX3Library*>(tool);
    return ToC(outcome);
}

int32_t Close(VX3Library* library)
{
    return ToC(LibraryTool::Close(reinterpret_cast<LibraryTool*>(library)));
}

VX3Bool IsReadOnly(VX3Library* library)
{
    return FromC(library).Library().IsReadOnly();
}

VX3Bool IsDamaged(VX3Library* library)
{
    return FromC(library).Library().IsDamaged();
}

int32_t CountItems(VX3Library* library)
{
    return FromC(library).Library().CountItems();
}

int32_t GetAddress(VX3Library* library, VX3String* address)
{
    return GiveText(FromC(library).Library().GetLibraryName(), address);
}

int32_t GetName(VX3Library* library, VX3String* name)
{
    return GiveText(FromC(library).Library().GetDisplayName(false), name);
}

int32_t SetName(VX3Library* library, const VX3String* name)
{
    return ToC(FromC(library).SetName(String::Of(name)));
}

int32_t FindOne(VX3Library* library, const VX3String* path, VX3LibraryItem* item)
{
    return ToC(FromC(library).FindItem(String::Of(path), *item));
}

int32_t FindNext(VX3Library* library, int32_t* place, VX3LibraryItem* item)
{
    return ToC(FromC(library).NextItem(*place, *item));
}

int32_t PutData(VX3Library* library, const VX3String* path, int32_t type, const void* bytes, int64_t length)
{
    return ToC(FromC(library).PutData(String::Of(path), type, bytes, length));
}

int32_t GetData(VX3Library* library, const VX3String* path, void** bytes, int64_t* length)
{
    Block data;
    return GiveOut(FromC(library).GetData(String::Of(path), data), data, bytes, length);
}

int32_t RemoveItem(VX3Library* library, const VX3String* path)
{
    return ToC(FromC(library).RemoveItem(String::Of(path)));
}

int32_t MoveItem(VX3Library* library, const VX3String* from, const VX3String* to)
{
    return ToC(FromC(library).MoveItem(String::Of(from), String::Of(to)));
}

int32_t PutPreview(VX3Library* library, const VX3String* path, int32_t number, int32_t grade, const void* bytes, int64_t length)
{
    return ToC(FromC(library).PutPreview(String::Of(path), number, grade, bytes, length));
}

int32_t GetPreview(VX3Library* library, const VX3String* path, int32_t number, void** bytes, int64_t* length)
{
    Block picture;
    return GiveOut(FromC(library).GetPreview(String::Of(path), number, picture), picture, bytes, length);
}

int32_t PreviewAt(VX3Library* library, const VX3String* path, int32_t index, VX3LibraryPreview* preview)
{
    PreviewInfo info;
    const LibraryOutcome outcome = FromC(library).PreviewAt(String::Of(path), index, info);
    if (outcome == LibraryOutcome::Ok)
        *preview = { info.number, info.width, info.height, info.grade, info.date, 0 };
    return ToC(outcome);
}

int32_t Freeze(VX3Library* library)
{
    return ToC(FromC(library).Freeze());
}

int32_t Compact(VX3Library* library)
{
    return ToC(FromC(library).Compact());
}

} // namespace

constinit const VX3LibraryToolFunctions libraryToolSection = { Create,     Open,       Close,     IsReadOnly, IsDamaged,
                                                               CountItems, GetAddress, GetName,   SetName,    FindOne,
                                                               FindNext,   PutData,    GetData,   RemoveItem, MoveItem,
                                                               PutPreview, GetPreview, PreviewAt, Freeze,     Compact };

} // namespace browser
