// The caption of an icon: a name, or as much of its beginning as fits, with two dots.
#pragma once

#include "services/string.h"

namespace browser {

// Any callable that gives the width of a run of units in pixels. Borrowed: what it was
// made from must outlive it.
class TextWidth
{
public:
    template <class Measure>
    TextWidth(const Measure& measure)
        : object(&measure)
        , call([](const void* of, Units run) -> int32_t { return (*static_cast<const Measure*>(of))(run); })
    {
    }
    int32_t operator()(Units run) const { return call(object, run); }

private:
    const void* object;
    int32_t (*call)(const void*, Units);
};

// Borrows the name. Lives on the stack for the time of one drawing.
class CaptionText
{
public:
    CaptionText(Units name, int32_t limit, TextWidth measure);
    CaptionText(const CaptionText&) = delete;
    CaptionText& operator=(const CaptionText&) = delete;

    Units View() const { return text; }
    int32_t Width() const { return width; }

private:
    static constexpr size_t mostUnits = 1024; // of a shortened name

    Units text;
    int32_t width;
    VX3Unit shortened[mostUnits];
};

} // namespace browser
