#include "textbuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "livecounts.h"

namespace vx3::core {
namespace {

constexpr VX3Unit noUnits[1] = {};

// Allocators hand out what is 8 above a multiple of 16 without waste.
size_t RoundedSize(size_t size)
{
    constexpr size_t step = 16;
    constexpr size_t overhead = 8;
    return (size + overhead + step - 1) / step * step - overhead;
}

void CopyUnits(VX3Unit* to, const VX3Unit* from, int32_t count)
{
    if (count > 0)
        std::memmove(to, from, static_cast<size_t>(count) * sizeof(VX3Unit));
}

LiveCounter& CounterOf(bool ofPath)
{
    return ofPath ? liveCounters.paths : liveCounters.texts;
}

bool CanHold(TextBuffer* buffer, int32_t length)
{
    return buffer && buffer->capacity >= static_cast<uint32_t>(length) && buffer->IsUnique();
}

bool LiesIn(const TextBuffer* buffer, const VX3Unit* units)
{
    const auto address = reinterpret_cast<uintptr_t>(units);
    const auto start = reinterpret_cast<uintptr_t>(buffer->Units());
    return address >= start && address < start + buffer->capacity * sizeof(VX3Unit);
}

void SpliceInPlace(TextBuffer& buffer, int32_t position, int32_t removed, UnitSpan inserted)
{
    buffer.DropJoined();
    VX3Unit* units = buffer.Units();
    const int32_t tail = buffer.length - position - removed;
    if (inserted.length != removed)
        CopyUnits(units + position + inserted.length, units + position + removed, tail);
    CopyUnits(units + position, inserted.units, inserted.length);
    buffer.length = position + inserted.length + tail;
}

TextBuffer* SplicedCopy(UnitSpan old, int32_t position, int32_t removed, UnitSpan inserted)
{
    const int32_t tail = old.length - position - removed;
    const int32_t length = position + inserted.length + tail;
    const bool grows = position > 0 && length > old.length;
    TextBuffer* made = TextBuffer::Make(length, grows ? std::min(length / 2, maximalTextLength - length) : 0);
    if (!made)
        return nullptr;
    CopyUnits(made->Units(), old.units, position);
    CopyUnits(made->Units() + position, inserted.units, inserted.length);
    CopyUnits(made->Units() + position + inserted.length, old.units + position + removed, tail);
    return made;
}

} // namespace

TextBuffer* TextBuffer::Make(int32_t length, int32_t spare, bool ofPath)
{
    if (length < 0 || length > maximalTextLength - spare)
        return nullptr;
    const size_t wanted = static_cast<size_t>(length) + static_cast<size_t>(spare);
    const size_t size = RoundedSize(sizeof(TextBuffer) + wanted * sizeof(VX3Unit));
    void* memory = std::malloc(size);
    if (!memory)
        return nullptr;
    auto* buffer = ::new (memory) TextBuffer;
    buffer->length = length;
    buffer->capacity = static_cast<uint32_t>((size - sizeof(TextBuffer)) / sizeof(VX3Unit)) & INT32_MAX;
    buffer->ofPath = ofPath ? 1 : 0;
    CounterOf(ofPath).Add();
    return buffer;
}

TextBuffer* TextBuffer::MakeCopy(const VX3Unit* units, int32_t length)
{
    TextBuffer* buffer = Make(length);
    if (buffer)
        CopyUnits(buffer->Units(), units, length);
    return buffer;
}

void TextBuffer::Release()
{
    if (references.load(std::memory_order_acquire) != 1 && references.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    DropJoined();
    CounterOf(ofPath).Subtract();
    this->~TextBuffer();
    std::free(this);
}

void TextBuffer::DropJoined()
{
    if (!joined.load(std::memory_order_relaxed))
        return;
    if (TextBuffer* held = joined.exchange(nullptr, std::memory_order_acquire))
        held->Release();
}

UnitSpan SpanOf(const TextBuffer* buffer)
{
    return buffer ? UnitSpan{ buffer->Units(), buffer->length } : UnitSpan{ noUnits, 0 };
}

UnitSpan SpanOf(const VX3String& text)
{
    return SpanOf(BufferOf(text));
}

TextBuffer* ShareBuffer(TextBuffer* buffer)
{
    if (!buffer || buffer->length == 0)
        return nullptr;
    buffer->Retain();
    return buffer;
}

TextBuffer* ShareBuffer(const VX3String& text)
{
    return ShareBuffer(BufferOf(text));
}

void ReleaseBuffer(TextBuffer* buffer)
{
    if (buffer)
        buffer->Release();
}

void ReplaceBuffer(VX3String& text, TextBuffer* buffer)
{
    TextBuffer* old = BufferOf(text);
    text.opaque = buffer;
    ReleaseBuffer(old);
}

VX3Unit* PrepareText(VX3String& text, int32_t length)
{
    TextBuffer* old = BufferOf(text);
    if (CanHold(old, length)) {
        old->DropJoined();
        old->length = length;
        return old->Units();
    }
    TextBuffer* made = TextBuffer::Make(length);
    if (!made)
        return nullptr;
    ReplaceBuffer(text, made);
    return made->Units();
}

bool AssignUnits(VX3String& text, const VX3Unit* units, int32_t length)
{
    return SpliceUnits(text, 0, SpanOf(text).length, { units, length });
}

bool SpliceUnits(VX3String& text, int32_t position, int32_t removed, UnitSpan inserted)
{
    TextBuffer* buffer = BufferOf(text);
    const UnitSpan old = SpanOf(buffer);
    const int64_t length = static_cast<int64_t>(old.length) - removed + inserted.length;
    if (inserted.length < 0 || length > maximalTextLength)
        return false;
    // Moving the tail would overwrite units that are still to be inserted.
    const bool tailMoves = position + removed < old.length;
    const bool spoilsInserted = buffer && tailMoves && LiesIn(buffer, inserted.units);
    if (!spoilsInserted && CanHold(buffer, static_cast<int32_t>(length))) {
        SpliceInPlace(*buffer, position, removed, inserted);
        return true;
    }
    if (length == 0) {
        ReplaceBuffer(text, nullptr);
        return true;
    }
    TextBuffer* made = SplicedCopy(old, position, removed, inserted);
    if (!made)
        return false;
    ReplaceBuffer(text, made);
    return true;
}

} // namespace vx3::core
