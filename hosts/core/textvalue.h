// The functions of the text section, by the file that they live in. What they promise
// stands in vx3/text.h.
#pragma once

#include "textbuffer.h"

namespace vx3::core {

// textencoding.cpp
bool SetTextBytes(VX3String& text, const char* bytes, size_t length, int32_t encoding);
VX3Bool SetText(VX3String* text, const char* bytes, int32_t length, int32_t encoding);
int32_t TextToUtf8(const VX3String* text, char* bytes, int32_t capacity);

// textorder.cpp
VX3Bool LowerText(const VX3String* text, VX3String* lower);
void LowerTextUnits(const VX3Unit* in, VX3Unit* out, int32_t count);
int32_t CompareTexts(const VX3String* a, const VX3String* b);
int32_t CompareTextsFolding(const VX3String* a, const VX3String* b);
int32_t OrderTexts(const VX3String* a, const VX3String* b);
int32_t MakeOrderKey(const VX3String* text, VX3Unit* units, int32_t capacity);
bool SpansEqual(UnitSpan a, UnitSpan b);
bool SpansEqualFolding(UnitSpan a, UnitSpan b);

// textsearch.cpp
VX3Bool TextMatchesAt(const VX3String* text, int32_t position, const VX3String* other, VX3Bool fold);
int32_t FindText(const VX3String* text, const VX3String* what, int32_t from);
int32_t FindTextBackward(const VX3String* text, const VX3String* what, int32_t from);

// textnumber.cpp
VX3Bool SetTextInteger(VX3String* text, int64_t number, int32_t digits);
VX3Bool SetTextFloat(VX3String* text, double number, int32_t decimals);
VX3Bool TextToInteger(const VX3String* text, int64_t* number);
VX3Bool TextToFloat(const VX3String* text, double* number);

} // namespace vx3::core
