// The storage behind a text value and behind the parts of a path.
//
// A buffer is counted. While more than one value holds it nobody changes it; the one
// that holds it alone changes it in place. So a copy costs one addition, and a value
// that is set again and again keeps its buffer.
#pragma once

#include <atomic>
#include <cstdint>

#include "vx3/types.h"

namespace vx3::core {

constexpr int32_t maximalTextLength = 1 << 30; // units

struct TextBuffer {
    // Where this is the last part of a folder's path, the text of the whole folder, which
    // the paths of its entries share (path.cpp). Written once, held until the buffer ends
    // or is changed.
    std::atomic<TextBuffer*> joined{ nullptr };
    std::atomic<uint32_t> references{ 1 };
    int32_t length = 0;
    uint32_t capacity : 31; // in units
    uint32_t ofPath : 1;    // which live counter it is in

    // Room for `length` units, which is also set, or none. `spare` asks for more room.
    static TextBuffer* Make(int32_t length, int32_t spare = 0, bool ofPath = false);
    // One with a copy of the units.
    static TextBuffer* MakeCopy(const VX3Unit* units, int32_t length);

    VX3Unit* Units() { return reinterpret_cast<VX3Unit*>(this + 1); }
    const VX3Unit* Units() const { return reinterpret_cast<const VX3Unit*>(this + 1); }
    bool IsUnique() const { return references.load(std::memory_order_acquire) == 1; }
    void Retain() { references.fetch_add(1, std::memory_order_relaxed); }
    void Release(); // the last one frees
    void DropJoined();

private:
    TextBuffer() = default;
};

// Units that someone else holds.
struct UnitSpan {
    const VX3Unit* units = nullptr;
    int32_t length = 0;
};

inline TextBuffer* BufferOf(const VX3String& text)
{
    return static_cast<TextBuffer*>(text.opaque);
}

// The units of a buffer that may be none.
UnitSpan SpanOf(const TextBuffer* buffer);
UnitSpan SpanOf(const VX3String& text);

// A further reference to what the text holds; none for an empty text.
TextBuffer* ShareBuffer(const VX3String& text);
TextBuffer* ShareBuffer(TextBuffer* buffer);
void ReleaseBuffer(TextBuffer* buffer); // none is allowed

// Gives the text a buffer in place of its own; the reference is handed over.
void ReplaceBuffer(VX3String& text, TextBuffer* buffer);

// Room for a wholly new text of `length` units, to be filled at once. What is written there may
// be the old units: they are still valid only if the result is the old buffer. None
// without memory, and then nothing has changed.
VX3Unit* PrepareText(VX3String& text, int32_t length);

bool AssignUnits(VX3String& text, const VX3Unit* units, int32_t length);

// Puts units in place of `removed` units at `position`. The units may lie in the text.
bool SpliceUnits(VX3String& text, int32_t position, int32_t removed, UnitSpan inserted);

} // namespace vx3::core
