/* A whole host in one file: it loads the content browser and lists a folder through it.
 *
 *     minimalhost MODULE FOLDER
 *
 * Written for the reader who is about to make a host of his own: docs/hostguide.md goes
 * the same way in words. It stands on nothing but the public headers, C11 and POSIX.
 *
 * What it offers: memory, text, paths, containers, reading of folders, locks, threads,
 * resource texts, the console, the registry, the run. What it does not offer answers
 * as the headers let it fail: an object that cannot be made is none, a change that is not
 * made is 0. So the browser lists, and decodes no picture, stores no setting and changes
 * no file.
 *
 * C wants what is used to stand in front: the sections of the table come first, one after
 * the other and each for itself, then the table, and at the end what a host does with it.
 * In a hurry, begin at "The table" and read on from there.
 *
 * Budget: file, one file on purpose: it is read from top to bottom
 */
#define _XOPEN_SOURCE 700

#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <inttypes.h>
#include <limits.h>
#include <math.h>
#include <pthread.h>
#include <sched.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "vx3/browser.h"
#include "vx3/entry.h"

enum { EXIT_NOT_LISTED = 1, EXIT_USAGE = 2, EXIT_NO_MODULE = 3 };

static pthread_t mainThread;

/* --- Memory --------------------------------------------------------------------------
 *
 * malloc aligns to 16 bytes on the systems that this is for. A larger host notes `file`
 * and `line`, and tells at the end what was not given back. */

static void* AllocMemory(size_t size, int32_t line, const char* file, VX3Bool clear)
{
    size_t wanted = size > 0 ? size : 1; /* a size of 0 has a block of its own, too */
    return clear ? calloc(1, wanted) : malloc(wanted);
}

static void FreeMemory(void* block)
{
    free(block);
}

static const VX3MemoryServices memoryServices = { AllocMemory, FreeMemory };

/* --- Units: what stands behind a text or a path --------------------------------------
 *
 * A value is one pointer to a block of units, and none while it is empty: memory that is
 * all zero is an empty text. Copies are copies; a larger host would share and count. */

typedef struct Units {
    int32_t count;
    VX3Unit units[];
} Units;

typedef struct Span {
    const VX3Unit* units;
    int32_t count;
} Span;

static const VX3Unit noUnits[1];
static const Span noSpan = { noUnits, 0 };
static const VX3Unit slashUnits[1] = { '/' };
static const Span slash = { slashUnits, 1 };

static Span SpanOf(void* body)
{
    Units* units = body;
    return units ? (Span){ units->units, units->count } : noSpan;
}

static Span TextSpan(const VX3String* text)
{
    return SpanOf(text->opaque);
}

static int32_t Clamp(int32_t position, int32_t highest)
{
    return position < 0 ? 0 : position > highest ? highest : position;
}

/* Positions outside go to the nearer end; a negative count is all that is left. */
static Span Cut(Span span, int32_t position, int32_t count)
{
    int32_t start = Clamp(position, span.count);
    int32_t left = span.count - start;
    return (Span){ span.units + start, count < 0 || count > left ? left : count };
}

static Units* MakeUnits(int64_t count)
{
    const int64_t mostUnits = (int64_t)1 << 30;
    Units* made = count > mostUnits ? NULL : malloc(sizeof(Units) + (size_t)count * sizeof(VX3Unit));
    if (made)
        made->count = (int32_t)count;
    return made;
}

/* Gives the value a new block; one without units is not kept. */
static void Adopt(void** value, Units* made)
{
    free(*value);
    *value = made;
    if (made && made->count == 0) {
        free(made);
        *value = NULL;
    }
}

static VX3Unit* Append(VX3Unit* end, Span span)
{
    memcpy(end, span.units, (size_t)span.count * sizeof(VX3Unit));
    return end + span.count;
}

/* Everything that builds a text is this: three pieces one behind the other. The pieces may
 * lie in the old value, which goes last. */
static VX3Bool SetPieces(void** value, Span first, Span second, Span third)
{
    Units* made = MakeUnits((int64_t)first.count + second.count + third.count);
    if (!made)
        return 0;
    Append(Append(Append(made->units, first), second), third);
    Adopt(value, made);
    return 1;
}

static VX3Bool SetSpan(void** value, Span span)
{
    return SetPieces(value, span, noSpan, noSpan);
}

/* --- Lower case ----------------------------------------------------------------------
 *
 * Not towlower: that looks at the locale, and what lies on the disk is found by hashes of
 * lower-case text. These are all simple mappings of the Basic Multilingual Plane: each
 * `step`-th unit from `first` to `last` moves by `offset`. */

typedef struct CaseRange {
    uint16_t first;
    uint16_t last;
    uint16_t step;
    int32_t offset;
} CaseRange;

/* clang-format off */
static const CaseRange caseRanges[] = {
    { 0x0041, 0x005A, 1, 32 }, { 0x00C0, 0x00D6, 1, 32 }, { 0x00D8, 0x00DE, 1, 32 }, { 0x0100, 0x012E, 2, 1 },
    { 0x0130, 0x0130, 1, -199 }, { 0x0132, 0x0136, 2, 1 }, { 0x0139, 0x0147, 2, 1 }, { 0x014A, 0x0176, 2, 1 },
    { 0x0178, 0x0178, 1, -121 }, { 0x0179, 0x017D, 2, 1 }, { 0x0181, 0x0181, 1, 210 }, { 0x0182, 0x0184, 2, 1 },
    { 0x0186, 0x0186, 1, 206 }, { 0x0187, 0x0187, 1, 1 }, { 0x0189, 0x018A, 1, 205 }, { 0x018B, 0x018B, 1, 1 }, { 0x018E, 0x018E, 1, 79 },
    { 0x018F, 0x018F, 1, 202 }, { 0x0190, 0x0190, 1, 203 }, { 0x0191, 0x0191, 1, 1 }, { 0x0193, 0x0193, 1, 205 },
    { 0x0194, 0x0194, 1, 207 }, { 0x0196, 0x0196, 1, 211 }, { 0x0197, 0x0197, 1, 209 }, { 0x0198, 0x0198, 1, 1 },
    { 0x019C, 0x019C, 1, 211 }, { 0x019D, 0x019D, 1, 213 }, { 0x019F, 0x019F, 1, 214 }, { 0x01A0, 0x01A4, 2, 1 },
    { 0x01A6, 0x01A6, 1, 218 }, { 0x01A7, 0x01A7, 1, 1 }, { 0x01A9, 0x01A9, 1, 218 }, { 0x01AC, 0x01AC, 1, 1 },
    { 0x01AE, 0x01AE, 1, 218 }, { 0x01AF, 0x01AF, 1, 1 }, { 0x01B1, 0x01B2, 1, 217 }, { 0x01B3, 0x01B5, 2, 1 },
    { 0x01B7, 0x01B7, 1, 219 }, { 0x01B8, 0x01B8, 1, 1 }, { 0x01BC, 0x01BC, 1, 1 }, { 0x01C4, 0x01C4, 1, 2 }, { 0x01C5, 0x01C5, 1, 1 },
    { 0x01C7, 0x01C7, 1, 2 }, { 0x01C8, 0x01C8, 1, 1 }, { 0x01CA, 0x01CA, 1, 2 }, { 0x01CB, 0x01DB, 2, 1 }, { 0x01DE, 0x01EE, 2, 1 },
    { 0x01F1, 0x01F1, 1, 2 }, { 0x01F2, 0x01F4, 2, 1 }, { 0x01F6, 0x01F6, 1, -97 }, { 0x01F7, 0x01F7, 1, -56 }, { 0x01F8, 0x021E, 2, 1 },
    { 0x0220, 0x0220, 1, -130 }, { 0x0222, 0x0232, 2, 1 }, { 0x023A, 0x023A, 1, 10795 }, { 0x023B, 0x023B, 1, 1 },
    { 0x023D, 0x023D, 1, -163 }, { 0x023E, 0x023E, 1, 10792 }, { 0x0241, 0x0241, 1, 1 }, { 0x0243, 0x0243, 1, -195 },
    { 0x0244, 0x0244, 1, 69 }, { 0x0245, 0x0245, 1, 71 }, { 0x0246, 0x024E, 2, 1 }, { 0x0370, 0x0372, 2, 1 }, { 0x0376, 0x0376, 1, 1 },
    { 0x037F, 0x037F, 1, 116 }, { 0x0386, 0x0386, 1, 38 }, { 0x0388, 0x038A, 1, 37 }, { 0x038C, 0x038C, 1, 64 },
    { 0x038E, 0x038F, 1, 63 }, { 0x0391, 0x03A1, 1, 32 }, { 0x03A3, 0x03AB, 1, 32 }, { 0x03CF, 0x03CF, 1, 8 }, { 0x03D8, 0x03EE, 2, 1 },
    { 0x03F4, 0x03F4, 1, -60 }, { 0x03F7, 0x03F7, 1, 1 }, { 0x03F9, 0x03F9, 1, -7 }, { 0x03FA, 0x03FA, 1, 1 },
    { 0x03FD, 0x03FF, 1, -130 }, { 0x0400, 0x040F, 1, 80 }, { 0x0410, 0x042F, 1, 32 }, { 0x0460, 0x0480, 2, 1 }, { 0x048A, 0x04BE, 2, 1 },
    { 0x04C0, 0x04C0, 1, 15 }, { 0x04C1, 0x04CD, 2, 1 }, { 0x04D0, 0x052E, 2, 1 }, { 0x0531, 0x0556, 1, 48 }, { 0x10A0, 0x10C5, 1, 7264 },
    { 0x10C7, 0x10C7, 1, 7264 }, { 0x10CD, 0x10CD, 1, 7264 }, { 0x13A0, 0x13EF, 1, 38864 }, { 0x13F0, 0x13F5, 1, 8 },
    { 0x1C90, 0x1CBA, 1, -3008 }, { 0x1CBD, 0x1CBF, 1, -3008 }, { 0x1E00, 0x1E94, 2, 1 }, { 0x1E9E, 0x1E9E, 1, -7615 },
    { 0x1EA0, 0x1EFE, 2, 1 }, { 0x1F08, 0x1F0F, 1, -8 }, { 0x1F18, 0x1F1D, 1, -8 }, { 0x1F28, 0x1F2F, 1, -8 }, { 0x1F38, 0x1F3F, 1, -8 },
    { 0x1F48, 0x1F4D, 1, -8 }, { 0x1F59, 0x1F5F, 2, -8 }, { 0x1F68, 0x1F6F, 1, -8 }, { 0x1F88, 0x1F8F, 1, -8 }, { 0x1F98, 0x1F9F, 1, -8 },
    { 0x1FA8, 0x1FAF, 1, -8 }, { 0x1FB8, 0x1FB9, 1, -8 }, { 0x1FBA, 0x1FBB, 1, -74 }, { 0x1FBC, 0x1FBC, 1, -9 },
    { 0x1FC8, 0x1FCB, 1, -86 }, { 0x1FCC, 0x1FCC, 1, -9 }, { 0x1FD8, 0x1FD9, 1, -8 }, { 0x1FDA, 0x1FDB, 1, -100 },
    { 0x1FE8, 0x1FE9, 1, -8 }, { 0x1FEA, 0x1FEB, 1, -112 }, { 0x1FEC, 0x1FEC, 1, -7 }, { 0x1FF8, 0x1FF9, 1, -128 },
    { 0x1FFA, 0x1FFB, 1, -126 }, { 0x1FFC, 0x1FFC, 1, -9 }, { 0x2126, 0x2126, 1, -7517 }, { 0x212A, 0x212A, 1, -8383 },
    { 0x212B, 0x212B, 1, -8262 }, { 0x2132, 0x2132, 1, 28 }, { 0x2160, 0x216F, 1, 16 }, { 0x2183, 0x2183, 1, 1 },
    { 0x24B6, 0x24CF, 1, 26 }, { 0x2C00, 0x2C2F, 1, 48 }, { 0x2C60, 0x2C60, 1, 1 }, { 0x2C62, 0x2C62, 1, -10743 },
    { 0x2C63, 0x2C63, 1, -3814 }, { 0x2C64, 0x2C64, 1, -10727 }, { 0x2C67, 0x2C6B, 2, 1 }, { 0x2C6D, 0x2C6D, 1, -10780 },
    { 0x2C6E, 0x2C6E, 1, -10749 }, { 0x2C6F, 0x2C6F, 1, -10783 }, { 0x2C70, 0x2C70, 1, -10782 }, { 0x2C72, 0x2C72, 1, 1 },
    { 0x2C75, 0x2C75, 1, 1 }, { 0x2C7E, 0x2C7F, 1, -10815 }, { 0x2C80, 0x2CE2, 2, 1 }, { 0x2CEB, 0x2CED, 2, 1 }, { 0x2CF2, 0x2CF2, 1, 1 },
    { 0xA640, 0xA66C, 2, 1 }, { 0xA680, 0xA69A, 2, 1 }, { 0xA722, 0xA72E, 2, 1 }, { 0xA732, 0xA76E, 2, 1 }, { 0xA779, 0xA77B, 2, 1 },
    { 0xA77D, 0xA77D, 1, -35332 }, { 0xA77E, 0xA786, 2, 1 }, { 0xA78B, 0xA78B, 1, 1 }, { 0xA78D, 0xA78D, 1, -42280 },
    { 0xA790, 0xA792, 2, 1 }, { 0xA796, 0xA7A8, 2, 1 }, { 0xA7AA, 0xA7AA, 1, -42308 }, { 0xA7AB, 0xA7AB, 1, -42319 },
    { 0xA7AC, 0xA7AC, 1, -42315 }, { 0xA7AD, 0xA7AD, 1, -42305 }, { 0xA7AE, 0xA7AE, 1, -42308 }, { 0xA7B0, 0xA7B0, 1, -42258 },
    { 0xA7B1, 0xA7B1, 1, -42282 }, { 0xA7B2, 0xA7B2, 1, -42261 }, { 0xA7B3, 0xA7B3, 1, 928 }, { 0xA7B4, 0xA7C2, 2, 1 },
    { 0xA7C4, 0xA7C4, 1, -48 }, { 0xA7C5, 0xA7C5, 1, -42307 }, { 0xA7C6, 0xA7C6, 1, -35384 }, { 0xA7C7, 0xA7C9, 2, 1 },
    { 0xA7D0, 0xA7D0, 1, 1 }, { 0xA7D6, 0xA7D8, 2, 1 }, { 0xA7F5, 0xA7F5, 1, 1 }, { 0xFF21, 0xFF3A, 1, 32 },
};
/* clang-format on */

static VX3Unit LowerUnit(VX3Unit unit)
{
    size_t low = 0;
    size_t high = sizeof(caseRanges) / sizeof(caseRanges[0]);
    while (low < high) {
        size_t middle = (low + high) / 2;
        if (unit > caseRanges[middle].last)
            low = middle + 1;
        else
            high = middle;
    }
    const CaseRange* range = &caseRanges[low];
    if (low == sizeof(caseRanges) / sizeof(caseRanges[0]) || unit < range->first || (unit - range->first) % range->step != 0)
        return unit;
    return (VX3Unit)(unit + range->offset);
}

static void LowerUnits(const VX3Unit* in, VX3Unit* out, int32_t count)
{
    for (int32_t i = 0; i < count; i++)
        out[i] = LowerUnit(in[i]);
}

/* --- Bytes and units -----------------------------------------------------------------
 *
 * A name on the disk is any bytes. What is not UTF-8 in it, and a backslash, becomes a lone
 * surrogate on the way in and itself again on the way out. */

typedef enum Form { FORM_PLAIN = VX3_ENCODING_PLAIN, FORM_UTF8 = VX3_ENCODING_UTF8, FORM_NAME } Form;

enum {
    REPLACEMENT = 0xFFFD,
    HIGH_SURROGATE = 0xD800,
    LOW_SURROGATE = 0xDC00,
    SURROGATE_END = 0xE000,
    FIRST_PAIR = 0x10000,
    LAST_CHARACTER = 0x10FFFF,
    SURROGATE_BITS = 10
};

/* The length of the character that `bytes` begins with, or 0 if it is not well-formed. */
static int32_t DecodeUtf8(const unsigned char* bytes, size_t left, uint32_t* character)
{
    static const uint32_t lowest[] = { 0, 0, 0x80, 0x800, FIRST_PAIR };
    unsigned char lead = bytes[0];
    int32_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || (size_t)length > left)
        return 0;
    uint32_t value = length == 1 ? lead : lead & (0x7Fu >> length);
    for (int32_t i = 1; i < length; i++) {
        if ((bytes[i] & 0xC0) != 0x80)
            return 0;
        value = value << 6 | (bytes[i] & 0x3Fu);
    }
    if (value < lowest[length] || value > LAST_CHARACTER || (value >= HIGH_SURROGATE && value < SURROGATE_END))
        return 0;
    *character = value;
    return length;
}

static VX3Unit* AppendCharacter(VX3Unit* end, uint32_t character)
{
    if (character < FIRST_PAIR) {
        *end++ = (VX3Unit)character;
        return end;
    }
    *end++ = (VX3Unit)(HIGH_SURROGATE + ((character - FIRST_PAIR) >> SURROGATE_BITS));
    *end++ = (VX3Unit)(LOW_SURROGATE + ((character - FIRST_PAIR) & 0x3FF));
    return end;
}

/* The character at `bytes` as the form has it, and its length. */
static int32_t DecodeCharacter(const unsigned char* bytes, size_t left, Form form, uint32_t* character)
{
    int32_t length = form == FORM_PLAIN ? 0 : DecodeUtf8(bytes, left, character);
    if (length == 0)
        *character = form == FORM_PLAIN ? bytes[0] : form == FORM_UTF8 ? REPLACEMENT : LOW_SURROGATE + (uint32_t)bytes[0];
    else if (form == FORM_NAME && *character == '\\')
        *character = LOW_SURROGATE + '\\';
    return length > 0 ? length : 1;
}

static VX3Bool SetBytes(void** value, const char* bytes, size_t length, Form form)
{
    Units* made = MakeUnits((int64_t)length); /* no byte makes more than one unit */
    if (!made)
        return 0;
    VX3Unit* end = made->units;
    for (size_t at = 0; at < length;) {
        uint32_t character;
        at += (size_t)DecodeCharacter((const unsigned char*)bytes + at, length - at, form, &character);
        end = AppendCharacter(end, character);
    }
    made->count = (int32_t)(end - made->units);
    Adopt(value, made);
    return 1;
}

/* The character at `*at`, which moves behind it. */
static uint32_t NextCharacter(Span span, int32_t* at)
{
    uint32_t unit = span.units[(*at)++];
    if (unit < HIGH_SURROGATE || unit >= LOW_SURROGATE || *at == span.count)
        return unit;
    uint32_t second = span.units[*at];
    if (second < LOW_SURROGATE || second >= SURROGATE_END)
        return unit;
    ++*at;
    return FIRST_PAIR + ((unit - HIGH_SURROGATE) << SURROGATE_BITS) + (second - LOW_SURROGATE);
}

static int32_t EncodeCharacter(uint32_t character, Form form, char* bytes)
{
    if (character >= HIGH_SURROGATE && character < SURROGATE_END) {
        if (form == FORM_NAME && character >= LOW_SURROGATE && character <= LOW_SURROGATE + 0xFF) {
            bytes[0] = (char)(character - LOW_SURROGATE);
            return 1;
        }
        character = REPLACEMENT;
    }
    int32_t length = character < 0x80 ? 1 : character < 0x800 ? 2 : character < FIRST_PAIR ? 3 : 4;
    static const unsigned char leads[] = { 0, 0, 0xC0, 0xE0, 0xF0 };
    for (int32_t i = length - 1; i > 0; i--) {
        bytes[i] = (char)(0x80 | (character & 0x3F));
        character >>= 6;
    }
    bytes[0] = (char)(leads[length] | character);
    return length;
}

/* Writes whole characters as long as they fit with a zero behind them; returns what all need. */
static int64_t EncodeUnits(Span span, Form form, char* bytes, int64_t capacity)
{
    int64_t needed = 0;
    int64_t written = 0;
    for (int32_t at = 0; at < span.count;) {
        char one[4];
        int32_t length = EncodeCharacter(NextCharacter(span, &at), form, one);
        if (needed + length < capacity) {
            memcpy(bytes + needed, one, (size_t)length);
            written = needed + length;
        }
        needed += length;
    }
    if (capacity > 0)
        bytes[written] = 0;
    return needed;
}

/* The bytes of a span, or none; to be freed. */
static char* MakeBytes(Span span, Form form)
{
    int64_t length = EncodeUnits(span, form, NULL, 0);
    char* bytes = malloc((size_t)length + 1);
    if (bytes)
        EncodeUnits(span, form, bytes, length + 1);
    return bytes;
}

static int32_t CompareSpans(Span a, Span b)
{
    for (int32_t i = 0; i < a.count && i < b.count; i++)
        if (a.units[i] != b.units[i])
            return (int32_t)a.units[i] - (int32_t)b.units[i];
    return a.count - b.count;
}

static VX3Bool BeginsWith(Span span, Span other, VX3Bool fold)
{
    if (span.count < other.count)
        return 0;
    for (int32_t i = 0; i < other.count; i++) {
        VX3Unit a = span.units[i];
        VX3Unit b = other.units[i];
        if (fold ? LowerUnit(a) != LowerUnit(b) : a != b)
            return 0;
    }
    return 1;
}

/* What a name on the disk is called, or none if no name there is called so. Coding it back
 * finds the units that stand for no bytes: a zero, surrogates of other meanings. */
static char* MakeName(Span span)
{
    char* name = MakeBytes(span, FORM_NAME);
    void* back = NULL;
    VX3Bool isSame = name && SetBytes(&back, name, strlen(name), FORM_NAME) && CompareSpans(SpanOf(back), span) == 0;
    free(back);
    if (isSame)
        return name;
    free(name);
    return NULL;
}

/* --- Text ---------------------------------------------------------------------------- */

static void DestructText(VX3String* text)
{
    free(text->opaque);
    text->opaque = NULL;
}

static VX3Bool CopyText(VX3String* to, const VX3String* from)
{
    return SetSpan(&to->opaque, TextSpan(from));
}

static VX3Bool SetText(VX3String* text, const char* bytes, int32_t length, int32_t encoding)
{
    return SetBytes(&text->opaque, bytes, length < 0 ? strlen(bytes) : (size_t)length,
                    encoding == VX3_ENCODING_UTF8 ? FORM_UTF8 : FORM_PLAIN);
}

static VX3Bool SetTextUnits(VX3String* text, const VX3Unit* units, int32_t count)
{
    return SetSpan(&text->opaque, count > 0 ? (Span){ units, count } : noSpan);
}

static int32_t TextToUtf8(const VX3String* text, char* bytes, int32_t capacity)
{
    int64_t needed = EncodeUnits(TextSpan(text), FORM_UTF8, bytes, capacity);
    return needed > INT32_MAX ? INT32_MAX : (int32_t)needed;
}

static int32_t TextLength(const VX3String* text)
{
    return TextSpan(text).count;
}

static const VX3Unit* ViewText(const VX3String* text, int32_t* length)
{
    *length = TextSpan(text).count;
    return TextSpan(text).units;
}

static int32_t ReadText(const VX3String* text, int32_t from, VX3Unit* units, int32_t count)
{
    Span read = Cut(TextSpan(text), from, count < 0 ? 0 : count);
    Append(units, read);
    return read.count;
}

static VX3Bool InsertText(VX3String* text, int32_t position, const VX3String* inserted)
{
    Span span = TextSpan(text);
    return SetPieces(&text->opaque, Cut(span, 0, Clamp(position, span.count)), TextSpan(inserted), Cut(span, position, -1));
}

static VX3Bool EraseText(VX3String* text, int32_t position, int32_t count)
{
    Span span = TextSpan(text);
    int32_t start = Clamp(position, span.count);
    Span erased = Cut(span, start, count < 0 ? 0 : count);
    return SetPieces(&text->opaque, Cut(span, 0, start), Cut(span, start + erased.count, -1), noSpan);
}

static VX3Bool PartOfText(const VX3String* text, int32_t position, int32_t count, VX3String* part)
{
    return SetSpan(&part->opaque, Cut(TextSpan(text), position, count));
}

static int32_t CompareTexts(const VX3String* a, const VX3String* b)
{
    return CompareSpans(TextSpan(a), TextSpan(b));
}

static int32_t CompareTextsFolding(const VX3String* a, const VX3String* b)
{
    Span first = TextSpan(a);
    Span second = TextSpan(b);
    for (int32_t i = 0; i < first.count && i < second.count; i++) {
        int32_t difference = (int32_t)LowerUnit(first.units[i]) - (int32_t)LowerUnit(second.units[i]);
        if (difference != 0)
            return difference;
    }
    return first.count - second.count;
}

/* The key of `order` is the lower-case form: the comparison folds unit by unit, too. */
static int32_t MakeOrderKey(const VX3String* text, VX3Unit* units, int32_t capacity)
{
    Span span = TextSpan(text);
    for (int32_t i = 0; i < span.count && i < capacity; i++)
        units[i] = LowerUnit(span.units[i]);
    return span.count;
}

static int32_t OrderTexts(const VX3String* a, const VX3String* b)
{
    int32_t folded = CompareTextsFolding(a, b);
    return folded != 0 ? folded : CompareTexts(a, b);
}

static VX3Bool TextMatchesAt(const VX3String* text, int32_t position, const VX3String* other, VX3Bool fold)
{
    return BeginsWith(Cut(TextSpan(text), position, -1), TextSpan(other), fold);
}

static VX3Bool TextToLower(const VX3String* text, VX3String* lower)
{
    VX3Bool isCopied = CopyText(lower, text);
    Units* made = lower->opaque;
    if (isCopied && made)
        LowerUnits(made->units, made->units, made->count);
    return isCopied;
}

/* The first place of `what` on the way from `from` by `step`, or -1. */
static int32_t Search(Span span, Span what, int32_t from, int32_t step)
{
    for (int32_t at = from; what.count > 0 && at >= 0 && at <= span.count - what.count; at += step)
        if (BeginsWith(Cut(span, at, -1), what, 0))
            return at;
    return -1;
}

static int32_t FindInText(const VX3String* text, const VX3String* what, int32_t from)
{
    return Search(TextSpan(text), TextSpan(what), Clamp(from, TextLength(text)), 1);
}

static int32_t FindBackwardInText(const VX3String* text, const VX3String* what, int32_t from)
{
    int32_t last = TextLength(text) - TextLength(what);
    return Search(TextSpan(text), TextSpan(what), from == -1 ? last : Clamp(from, last), -1);
}

enum { NUMBER_BYTES = 512, MOST_DIGITS = 100, EXACT_DIGITS = 17 };

/* These follow the locale of the program, which this one never sets: its point is a point. */
static VX3Bool SetInteger(VX3String* text, int64_t number, int32_t digits)
{
    char bytes[NUMBER_BYTES];
    snprintf(bytes, sizeof(bytes), "%.*" PRId64, (int)(Clamp(digits - 1, MOST_DIGITS) + 1), number);
    return SetText(text, bytes, -1, VX3_ENCODING_PLAIN);
}

static VX3Bool SetFloat(VX3String* text, double number, int32_t decimals)
{
    char bytes[NUMBER_BYTES];
    if (decimals >= 0)
        snprintf(bytes, sizeof(bytes), "%.*f", (int)Clamp(decimals, MOST_DIGITS), number);
    for (int digits = 1; decimals < 0 && digits <= EXACT_DIGITS; digits++) {
        snprintf(bytes, sizeof(bytes), "%.*g", digits, number);
        if (strtod(bytes, NULL) == number)
            break;
    }
    return SetText(text, bytes, -1, VX3_ENCODING_PLAIN);
}

/* The text as bytes if it has only characters of `allowed` and is neither empty nor too long. */
static VX3Bool ReadNumber(const VX3String* text, const char* allowed, char* bytes)
{
    int32_t length = TextToUtf8(text, bytes, NUMBER_BYTES);
    return length > 0 && length < NUMBER_BYTES && strlen(bytes) == (size_t)length && strspn(bytes, allowed) == (size_t)length;
}

static VX3Bool TextToInteger(const VX3String* text, int64_t* number)
{
    char bytes[NUMBER_BYTES];
    char* end = bytes;
    if (!ReadNumber(text, "+-0123456789", bytes))
        return 0;
    errno = 0;
    long long value = strtoll(bytes, &end, 10);
    if (end == bytes || *end != 0 || errno != 0)
        return 0;
    *number = value;
    return 1;
}

static VX3Bool TextToFloat(const VX3String* text, double* number)
{
    char bytes[NUMBER_BYTES];
    char* end = bytes;
    if (!ReadNumber(text, "+-.0123456789eE", bytes))
        return 0;
    double value = strtod(bytes, &end);
    if (end == bytes || *end != 0 || value == HUGE_VAL || value == -HUGE_VAL)
        return 0;
    *number = value;
    return 1;
}

static const VX3TextServices textServices = {
    DestructText, CopyText,   SetText,    SetTextUnits,       TextToUtf8,          TextLength, ViewText,      ReadText,
    InsertText,   EraseText,  PartOfText, CompareTexts,       CompareTextsFolding, OrderTexts, MakeOrderKey,  TextMatchesAt,
    TextToLower,  LowerUnits, FindInText, FindBackwardInText, SetInteger,          SetFloat,   TextToInteger, TextToFloat
};

/* --- Paths ---------------------------------------------------------------------------
 *
 * A path is its whole text in the first pointer; the second is not used. There are no
 * memory paths: this host opens no files, so nothing could read one. */

static Span PathSpan(const VX3Path* path)
{
    return SpanOf(path->opaque[0]);
}

static VX3Bool IsSeparator(VX3Unit unit)
{
    return unit == '/' || unit == '\\';
}

/* Makes double separators one and drops the last, if it is not all there is. */
static void TidySeparators(Units* units)
{
    int32_t kept = 0;
    for (int32_t i = 0; units && i < units->count; i++) {
        VX3Bool isSeparator = IsSeparator(units->units[i]);
        if (!isSeparator || kept == 0 || units->units[kept - 1] != '/')
            units->units[kept++] = isSeparator ? '/' : units->units[i];
    }
    if (units)
        units->count = kept > 1 && units->units[kept - 1] == '/' ? kept - 1 : kept;
}

static VX3Bool SetPathPieces(VX3Path* path, Span first, Span second, Span third)
{
    void* made = NULL;
    if (!SetPieces(&made, first, second, third))
        return 0;
    TidySeparators(made);
    Adopt(&path->opaque[0], made);
    return 1;
}

static VX3Bool JoinSpans(VX3Path* path, Span directory, Span last)
{
    return SetPathPieces(path, directory, directory.count > 0 ? slash : noSpan, last);
}

static Span LastPart(Span path)
{
    int32_t start = path.count;
    while (start > 0 && path.units[start - 1] != '/')
        start--;
    return Cut(path, start, -1);
}

/* `/` is its own directory here, so that `/` and a last part make a path again. */
static Span DirectoryPart(Span path)
{
    int32_t length = path.count - LastPart(path).count;
    return Cut(path, 0, length > 1 ? length - 1 : length);
}

static Span SuffixPart(Span path)
{
    Span last = LastPart(path);
    for (int32_t at = last.count; at > 0; at--)
        if (last.units[at - 1] == '.')
            return Cut(last, at, -1);
    return noSpan;
}

static void DestructPath(VX3Path* path)
{
    free(path->opaque[0]);
    path->opaque[0] = NULL;
}

static VX3Bool CopyPath(VX3Path* to, const VX3Path* from)
{
    return SetSpan(&to->opaque[0], PathSpan(from));
}

static VX3Bool PathIsEmpty(const VX3Path* path)
{
    return PathSpan(path).count == 0;
}

static VX3Bool PathsAreEqual(const VX3Path* a, const VX3Path* b)
{
    return CompareSpans(PathSpan(a), PathSpan(b)) == 0;
}

static VX3Bool SetPathText(VX3Path* path, const VX3String* text)
{
    return SetPathPieces(path, TextSpan(text), noSpan, noSpan);
}

static VX3Bool GetPathText(const VX3Path* path, VX3String* text)
{
    return SetSpan(&text->opaque, PathSpan(path));
}

/* Asked of ASCII alone: the Kelvin sign is a `k` in lower case, and no drive. */
static VX3Bool BeginsWithDrive(Span tail)
{
    if (tail.count < 2 || tail.units[1] != ':')
        return 0;
    VX3Unit letter = tail.units[0];
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

static VX3Bool SetUrlTail(VX3Path* path, const VX3String* tail)
{
    Span span = TextSpan(tail);
    return SetPathPieces(path, BeginsWithDrive(span) ? noSpan : slash, span, noSpan);
}

/* The `/` stays in front of what would come back as a drive. */
static VX3Bool GetUrlTail(const VX3Path* path, VX3String* tail)
{
    Span span = PathSpan(path);
    VX3Bool isRooted = span.count > 0 && span.units[0] == '/' && !BeginsWithDrive(Cut(span, 1, -1));
    return SetSpan(&tail->opaque, Cut(span, isRooted ? 1 : 0, -1));
}

static VX3Bool GetDirectory(const VX3Path* path, VX3Path* directory)
{
    Span span = PathSpan(path);
    return SetSpan(&directory->opaque[0], LastPart(span).count > 0 ? DirectoryPart(span) : noSpan);
}

static VX3Bool SetDirectory(VX3Path* path, const VX3Path* directory)
{
    return JoinSpans(path, PathSpan(directory), LastPart(PathSpan(path)));
}

static VX3Bool GetLast(const VX3Path* path, VX3String* last)
{
    return SetSpan(&last->opaque, LastPart(PathSpan(path)));
}

static VX3Bool SetLast(VX3Path* path, const VX3String* last)
{
    return JoinSpans(path, DirectoryPart(PathSpan(path)), TextSpan(last));
}

static VX3Bool JoinPath(const VX3Path* folder, const VX3String* name, VX3Path* joined)
{
    return JoinSpans(joined, PathSpan(folder), TextSpan(name));
}

static VX3Bool GetSuffix(const VX3Path* path, VX3String* suffix)
{
    return SetSpan(&suffix->opaque, SuffixPart(PathSpan(path)));
}

static VX3Bool SetSuffix(VX3Path* path, const VX3String* suffix)
{
    static const VX3Unit dotUnits[1] = { '.' };
    Span span = PathSpan(path);
    Span old = SuffixPart(span);
    VX3Bool hasDot = old.units != noUnits;
    Span stem = Cut(span, 0, span.count - (hasDot ? old.count + 1 : 0));
    return SetPathPieces(path, stem, TextLength(suffix) > 0 ? (Span){ dotUnits, 1 } : noSpan, TextSpan(suffix));
}

static VX3Bool HasSuffix(const VX3Path* path, const VX3String* suffix)
{
    Span span = SuffixPart(PathSpan(path));
    return span.count == TextLength(suffix) && BeginsWith(span, TextSpan(suffix), 1);
}

static VX3Bool IsNameAllowed(const VX3String* text)
{
    Span span = TextSpan(text);
    for (int32_t i = 0; i < span.count; i++)
        if (IsSeparator(span.units[i]))
            return 0;
    char* name = MakeName(span);
    VX3Bool isAllowed = name && *name && strcmp(name, ".") != 0 && strcmp(name, "..") != 0 && strlen(name) <= NAME_MAX;
    free(name);
    return isAllowed;
}

static VX3Bool SetMemoryReading(VX3Path* path, const void* bytes, int64_t length)
{
    return 0;
}

static VX3Bool SetMemoryWriting(VX3Path* path)
{
    return 0;
}

static VX3Bool TakeMemory(VX3Path* path, void** bytes, int64_t* length)
{
    return 0;
}

static const VX3PathServices pathServices = { DestructPath, CopyPath,      PathIsEmpty,      PathsAreEqual,    SetPathText,
                                              GetPathText,  SetUrlTail,    GetUrlTail,       GetDirectory,     SetDirectory,
                                              GetLast,      SetLast,       JoinPath,         GetSuffix,        SetSuffix,
                                              HasSuffix,    IsNameAllowed, SetMemoryReading, SetMemoryWriting, TakeMemory };

/* --- Containers ----------------------------------------------------------------------
 *
 * A list in the order of first setting. An entry keeps its place in memory when others
 * come and go, and with it the nested container inside. */

typedef union Value {
    int64_t integer; /* both integers, and the truth values */
    double number;
    void* pointer; /* a pointer, and bytes, which are owned */
    VX3String text;
    VX3Container nested;
} Value;

typedef struct Entry {
    struct Entry* next;
    int32_t key;
    int32_t type;
    int64_t length; /* of bytes */
    Value value;
} Entry;

typedef struct Entries {
    int32_t id;
    Entry* first;
} Entries;

static void ClearContainer(VX3Container* container);

static void DestructContainer(VX3Container* container)
{
    ClearContainer(container);
    free(container->opaque);
    container->opaque = NULL;
}

static void FreeValue(int32_t type, Value* value)
{
    if (type == VX3_VALUE_TEXT)
        DestructText(&value->text);
    else if (type == VX3_VALUE_CONTAINER)
        DestructContainer(&value->nested);
    else if (type == VX3_VALUE_BYTES)
        free(value->pointer);
}

static Entry* FirstEntry(const VX3Container* container)
{
    const Entries* entries = container->opaque;
    return entries ? entries->first : NULL;
}

static Entry* FindEntry(const VX3Container* container, int32_t key)
{
    Entry* entry = FirstEntry(container);
    while (entry && entry->key != key)
        entry = entry->next;
    return entry;
}

static Entry* FindTyped(const VX3Container* container, int32_t key, int32_t type)
{
    Entry* entry = FindEntry(container, key);
    return entry && entry->type == type ? entry : NULL;
}

static Entries* MakeEntries(VX3Container* container)
{
    if (!container->opaque)
        container->opaque = calloc(1, sizeof(Entries));
    return container->opaque;
}

static Entry* FindOrAppend(VX3Container* container, int32_t key)
{
    Entry* entry = FindEntry(container, key);
    Entries* entries = entry ? NULL : MakeEntries(container);
    if (!entries)
        return entry;
    Entry** end = &entries->first;
    while (*end)
        end = &(*end)->next;
    *end = calloc(1, sizeof(Entry));
    if (*end)
        (*end)->key = key;
    return *end;
}

/* Takes the value over, also when it fails. */
static VX3Bool SetValue(VX3Container* container, int32_t key, int32_t type, Value value, int64_t length)
{
    Entry* entry = FindOrAppend(container, key);
    if (!entry) {
        FreeValue(type, &value);
        return 0;
    }
    Value old = entry->value;
    int32_t oldType = entry->type;
    entry->value = value;
    entry->type = type;
    entry->length = length;
    FreeValue(oldType, &old);
    return 1;
}

static int32_t GetContainerId(const VX3Container* container)
{
    const Entries* entries = container->opaque;
    return entries ? entries->id : 0;
}

static VX3Bool SetContainerId(VX3Container* container, int32_t id)
{
    if (!MakeEntries(container))
        return 0;
    ((Entries*)container->opaque)->id = id;
    return 1;
}

static int64_t GetInteger(const VX3Container* container, int32_t key, int32_t type, int64_t fallback)
{
    const Entry* entry = FindTyped(container, key, type);
    return entry ? entry->value.integer : fallback;
}

static int32_t GetInt32(const VX3Container* container, int32_t key, int32_t fallback)
{
    return (int32_t)GetInteger(container, key, VX3_VALUE_INT32, fallback);
}

static int64_t GetInt64(const VX3Container* container, int32_t key, int64_t fallback)
{
    return GetInteger(container, key, VX3_VALUE_INT64, fallback);
}

static double GetFloat(const VX3Container* container, int32_t key, double fallback)
{
    const Entry* entry = FindTyped(container, key, VX3_VALUE_FLOAT);
    return entry ? entry->value.number : fallback;
}

static VX3Bool GetBool(const VX3Container* container, int32_t key, VX3Bool fallback)
{
    return (VX3Bool)GetInteger(container, key, VX3_VALUE_BOOL, fallback);
}

static void* GetPointer(const VX3Container* container, int32_t key, void* fallback)
{
    const Entry* entry = FindTyped(container, key, VX3_VALUE_POINTER);
    return entry ? entry->value.pointer : fallback;
}

static VX3Bool GetText(const VX3Container* container, int32_t key, VX3String* text)
{
    const Entry* entry = FindTyped(container, key, VX3_VALUE_TEXT);
    return entry && CopyText(text, &entry->value.text);
}

static const void* GetBytes(const VX3Container* container, int32_t key, int64_t* length)
{
    const Entry* entry = FindTyped(container, key, VX3_VALUE_BYTES);
    if (!entry)
        return NULL;
    *length = entry->length;
    return entry->value.pointer;
}

static VX3Container* GetContainer(const VX3Container* container, int32_t key)
{
    Entry* entry = FindTyped(container, key, VX3_VALUE_CONTAINER);
    return entry ? &entry->value.nested : NULL;
}

static VX3Bool SetInt32(VX3Container* container, int32_t key, int32_t value)
{
    return SetValue(container, key, VX3_VALUE_INT32, (Value){ .integer = value }, 0);
}

static VX3Bool SetInt64(VX3Container* container, int32_t key, int64_t value)
{
    return SetValue(container, key, VX3_VALUE_INT64, (Value){ .integer = value }, 0);
}

static VX3Bool SetNumber(VX3Container* container, int32_t key, double value)
{
    return SetValue(container, key, VX3_VALUE_FLOAT, (Value){ .number = value }, 0);
}

static VX3Bool SetBool(VX3Container* container, int32_t key, VX3Bool value)
{
    return SetValue(container, key, VX3_VALUE_BOOL, (Value){ .integer = value != 0 }, 0);
}

static VX3Bool SetPointer(VX3Container* container, int32_t key, void* value)
{
    return SetValue(container, key, VX3_VALUE_POINTER, (Value){ .pointer = value }, 0);
}

static VX3Bool SetTextValue(VX3Container* container, int32_t key, const VX3String* text)
{
    Value value = { 0 };
    return CopyText(&value.text, text) && SetValue(container, key, VX3_VALUE_TEXT, value, 0);
}

static VX3Bool SetBytesValue(VX3Container* container, int32_t key, const void* bytes, int64_t length)
{
    Value value = { .pointer = malloc(length > 0 ? (size_t)length : 1) };
    if (value.pointer && length > 0)
        memcpy(value.pointer, bytes, (size_t)length);
    return value.pointer && SetValue(container, key, VX3_VALUE_BYTES, value, length);
}

static VX3Bool CopyContainer(VX3Container* to, const VX3Container* from);

static VX3Bool SetContainer(VX3Container* container, int32_t key, const VX3Container* nested)
{
    Value value = { 0 };
    if (nested && !CopyContainer(&value.nested, nested))
        return 0;
    return SetValue(container, key, VX3_VALUE_CONTAINER, value, 0);
}

static VX3Bool CopyEntry(VX3Container* to, const Entry* from)
{
    switch (from->type) {
    case VX3_VALUE_TEXT: return SetTextValue(to, from->key, &from->value.text);
    case VX3_VALUE_BYTES: return SetBytesValue(to, from->key, from->value.pointer, from->length);
    case VX3_VALUE_CONTAINER: return SetContainer(to, from->key, &from->value.nested);
    default: return SetValue(to, from->key, from->type, from->value, 0);
    }
}

/* Made aside, so that a copy that fails half-way leaves the old one. */
static VX3Bool CopyContainer(VX3Container* to, const VX3Container* from)
{
    VX3Container made = { 0 };
    VX3Bool isCopied = !from->opaque || SetContainerId(&made, GetContainerId(from));
    for (const Entry* entry = FirstEntry(from); isCopied && entry; entry = entry->next)
        isCopied = CopyEntry(&made, entry);
    DestructContainer(isCopied ? to : &made);
    if (isCopied)
        *to = made;
    return isCopied;
}

static int32_t TypeOfValue(const VX3Container* container, int32_t key)
{
    const Entry* entry = FindEntry(container, key);
    return entry ? entry->type : VX3_VALUE_NONE;
}

static void RemoveEntry(Entry** place)
{
    Entry* entry = *place;
    *place = entry->next;
    FreeValue(entry->type, &entry->value);
    free(entry);
}

static VX3Bool RemoveKey(VX3Container* container, int32_t key)
{
    if (!FindEntry(container, key))
        return 0;
    Entry** place = &((Entries*)container->opaque)->first;
    while ((*place)->key != key)
        place = &(*place)->next;
    RemoveEntry(place);
    return 1;
}

static void ClearContainer(VX3Container* container)
{
    Entries* entries = container->opaque;
    while (entries && entries->first)
        RemoveEntry(&entries->first);
}

static int32_t CountKeys(const VX3Container* container)
{
    int32_t count = 0;
    for (const Entry* entry = FirstEntry(container); entry; entry = entry->next)
        count++;
    return count;
}

static VX3Bool GetEntryAt(const VX3Container* container, int32_t place, int32_t* key, int32_t* type)
{
    const Entry* entry = place < 0 ? NULL : FirstEntry(container);
    for (; entry && place > 0; place--)
        entry = entry->next;
    if (!entry)
        return 0;
    *key = entry->key;
    *type = entry->type;
    return 1;
}

static VX3Bool ContainersAreEqual(const VX3Container* a, const VX3Container* b);

static VX3Bool EntriesAreEqual(const Entry* a, const Entry* b)
{
    if (a->key != b->key || a->type != b->type || a->length != b->length)
        return 0;
    switch (a->type) {
    case VX3_VALUE_FLOAT: return a->value.number == b->value.number;
    case VX3_VALUE_TEXT: return CompareTexts(&a->value.text, &b->value.text) == 0;
    case VX3_VALUE_CONTAINER: return ContainersAreEqual(&a->value.nested, &b->value.nested);
    case VX3_VALUE_POINTER: return a->value.pointer == b->value.pointer;
    case VX3_VALUE_BYTES: return memcmp(a->value.pointer, b->value.pointer, (size_t)a->length) == 0;
    default: return a->value.integer == b->value.integer;
    }
}

static VX3Bool ContainersAreEqual(const VX3Container* a, const VX3Container* b)
{
    const Entry* first = FirstEntry(a);
    const Entry* second = FirstEntry(b);
    for (; first && second && EntriesAreEqual(first, second); second = second->next)
        first = first->next;
    return GetContainerId(a) == GetContainerId(b) && !first && !second;
}

static const VX3ContainerServices containerServices = { DestructContainer, CopyContainer, GetContainerId, SetContainerId, GetInt32,
                                                        GetInt64,          GetFloat,      GetBool,        GetPointer,     GetText,
                                                        GetBytes,          GetContainer,  SetInt32,       SetInt64,       SetNumber,
                                                        SetBool,           SetPointer,    SetTextValue,   SetBytesValue,  SetContainer,
                                                        TypeOfValue,       RemoveKey,     ClearContainer, CountKeys,      GetEntryAt,
                                                        ContainersAreEqual };

/* --- Folders -------------------------------------------------------------------------
 *
 * Reading only. Every change answers 0, which the browser reports as a failed change. */

static char* MakeNativePath(const VX3Path* path)
{
    return MakeName(PathSpan(path));
}

static void FillDate(VX3FileDate* date, time_t seconds)
{
    const int firstYear = 1900;
    struct tm parts;
    memset(date, 0, sizeof(*date));
    if (!localtime_r(&seconds, &parts))
        return;
    date->year = (uint16_t)(parts.tm_year + firstYear);
    date->month = (uint16_t)(parts.tm_mon + 1);
    date->day = (uint16_t)parts.tm_mday;
    date->hour = (uint16_t)parts.tm_hour;
    date->minute = (uint16_t)parts.tm_min;
    date->second = (uint16_t)parts.tm_sec;
}

/* 1 if a link leads to a folder that holds it: whoever followed it would walk in a ring. */
static VX3Bool LeadsBack(const char* link)
{
    char* target = realpath(link, NULL);
    char* holder = malloc(strlen(link) + sizeof("/.."));
    if (holder) {
        strcpy(holder, link);
        char* end = strrchr(holder, '/');
        end[end == holder] = 0;
    }
    char* folder = holder ? realpath(holder, NULL) : NULL;
    VX3Bool leadsBack = 1; /* without memory the careful answer */
    if (target && folder) {
        size_t length = strcmp(target, "/") == 0 ? 0 : strlen(target);
        leadsBack = strncmp(folder, target, length) == 0 && (folder[length] == 0 || folder[length] == '/');
    }
    free(target);
    free(holder);
    free(folder);
    return leadsBack;
}

/* Fills all but the name. access() is a second call for each entry; a host for large folders
 * reckons its answer from the mode instead. */
static VX3Bool InspectNative(const char* path, VX3FolderEntry* entry)
{
    struct stat status;
    struct stat target;
    if (lstat(path, &status) != 0)
        return 0;
    uint32_t flags = 0;
    if (S_ISLNK(status.st_mode)) {
        VX3Bool isSound = stat(path, &target) == 0 && !(S_ISDIR(target.st_mode) && LeadsBack(path));
        flags = isSound ? VX3_ENTRY_LINK : VX3_ENTRY_LINK | VX3_ENTRY_BROKEN;
        if (isSound)
            status = target;
    }
    if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
        flags |= S_ISDIR(status.st_mode) ? VX3_ENTRY_FOLDER : VX3_ENTRY_SPECIAL;
    if (!S_ISLNK(status.st_mode) && ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || access(path, W_OK) != 0))
        flags |= VX3_ENTRY_READONLY;
    if (strrchr(path, '/')[1] == '.')
        flags |= VX3_ENTRY_HIDDEN;
    entry->flags = flags;
    entry->size = S_ISREG(status.st_mode) ? (int64_t)status.st_size : 0;
    FillDate(&entry->modified, status.st_mtime);
    entry->created = entry->modified; /* POSIX keeps no other */
    return 1;
}

static VX3Bool PathExists(const VX3Path* path)
{
    struct stat status;
    char* native = MakeNativePath(path);
    VX3Bool exists = native && lstat(native, &status) == 0;
    free(native);
    return exists;
}

static VX3Bool InspectPath(const VX3Path* path, VX3FolderEntry* entry)
{
    char* native = MakeNativePath(path);
    VX3Bool isFilled = native && *native == '/' && InspectNative(native, entry);
    free(native);
    return isFilled;
}

static VX3Bool GetPathDate(const VX3Path* path, int32_t kind, VX3FileDate* date)
{
    struct stat status;
    char* native = MakeNativePath(path);
    VX3Bool isThere = native && stat(native, &status) == 0;
    memset(date, 0, sizeof(*date));
    if (isThere)
        FillDate(date, status.st_mtime);
    free(native);
    return isThere;
}

static VX3Bool RefuseCreate(const VX3Path* path)
{
    return 0;
}

static VX3Bool RefuseMove(const VX3Path* from, const VX3Path* to)
{
    return 0;
}

static VX3Bool RefuseCopy(const VX3Path* from, const VX3Path* to, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user,
                          VX3Bool* cancelled)
{
    return 0;
}

static VX3Bool RefuseRemove(const VX3Path* path, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user, VX3Bool* cancelled)
{
    return 0;
}

/* The device of a path, or of the directory of a path that does not exist. */
static VX3Bool GetDevice(const VX3Path* path, dev_t* device)
{
    struct stat status;
    char* native = MakeNativePath(path);
    VX3Bool isThere = native && stat(native, &status) == 0;
    char* end = native && !isThere ? strrchr(native, '/') : NULL;
    if (end) {
        end[end == native] = 0;
        isThere = stat(native, &status) == 0;
    }
    if (isThere)
        *device = status.st_dev;
    free(native);
    return isThere;
}

static VX3Bool IsSameVolume(const VX3Path* a, const VX3Path* b)
{
    dev_t first;
    dev_t second;
    return GetDevice(a, &first) && GetDevice(b, &second) && first == second;
}

static VX3Bool ProbeVolume(const VX3Path* path)
{
    struct stat status;
    char* native = MakeNativePath(path);
    VX3Bool answers = native && stat(native, &status) == 0;
    free(native);
    return answers;
}

struct VX3FolderWalk {
    DIR* directory;
    char* folder;
    uint32_t options;
    VX3Bool isSound;
};

static void EndWalk(VX3FolderWalk* walk)
{
    if (walk->directory)
        closedir(walk->directory);
    free(walk->folder);
    free(walk);
}

static VX3FolderWalk* StartWalk(const VX3Path* folder, uint32_t options)
{
    VX3FolderWalk* walk = calloc(1, sizeof(*walk));
    if (!walk)
        return NULL;
    walk->folder = MakeNativePath(folder);
    walk->directory = walk->folder ? opendir(walk->folder) : NULL;
    walk->options = options;
    walk->isSound = 1;
    if (walk->directory)
        return walk;
    EndWalk(walk);
    return NULL;
}

static VX3Bool FillEntry(VX3FolderWalk* walk, const char* name, VX3FolderEntry* entry)
{
    char* whole = malloc(strlen(walk->folder) + strlen(name) + sizeof("/"));
    VX3Bool isFilled = 0;
    if (whole) {
        strcat(strcat(strcpy(whole, walk->folder), "/"), name);
        errno = 0;
        isFilled = InspectNative(whole, entry) && SetBytes(&entry->name.opaque, name, strlen(name), FORM_NAME);
    }
    if (!isFilled && errno != ENOENT) /* what has gone meanwhile is no fault of the listing */
        walk->isSound = 0;
    free(whole);
    return isFilled;
}

/* Entries of these kinds are left out unless the walk was asked for them. */
static VX3Bool IsWanted(uint32_t flags, uint32_t options)
{
    VX3Bool isLeftOut =
        ((flags & VX3_ENTRY_HIDDEN) && !(options & VX3_WALK_HIDDEN)) || ((flags & VX3_ENTRY_READONLY) && !(options & VX3_WALK_READONLY));
    return !isLeftOut;
}

static VX3Bool NextEntry(VX3FolderWalk* walk, VX3FolderEntry* entry)
{
    for (;;) {
        errno = 0;
        struct dirent* found = readdir(walk->directory);
        if (!found) {
            walk->isSound = walk->isSound && errno == 0;
            return 0;
        }
        if (strcmp(found->d_name, ".") == 0 || strcmp(found->d_name, "..") == 0)
            continue;
        if (FillEntry(walk, found->d_name, entry) && IsWanted(entry->flags, walk->options))
            return 1;
    }
}

static VX3Bool WalkIsSound(VX3FolderWalk* walk)
{
    return walk->isSound;
}

/* One volume, `/`, which holds all the others. */
struct VX3VolumeWalk {
    VX3Bool isGiven;
};

static VX3VolumeWalk* StartVolumes(void)
{
    return calloc(1, sizeof(VX3VolumeWalk));
}

static VX3Bool NextVolume(VX3VolumeWalk* walk, VX3Volume* volume)
{
    if (walk->isGiven || !SetSpan(&volume->path.opaque[0], slash) || !SetSpan(&volume->name.opaque, slash))
        return 0;
    DestructText(&volume->label);
    volume->attributes = 0;
    volume->reserved = 0;
    walk->isGiven = 1;
    return 1;
}

static void EndVolumes(VX3VolumeWalk* walk)
{
    free(walk);
}

/* A browser that cannot watch a folder looks when it is asked to. */
static VX3FolderWatch* WatchNoFolder(const VX3Path* folder, void (*changed)(void* user), void* user)
{
    return NULL;
}

static void UnwatchNoFolder(VX3FolderWatch* watch)
{
}

static const VX3FolderServices folderServices = { PathExists, InspectPath, GetPathDate,   RefuseCreate,   RefuseMove,
                                                  RefuseMove, RefuseCopy,  RefuseRemove,  IsSameVolume,   ProbeVolume,
                                                  StartWalk,  NextEntry,   WalkIsSound,   EndWalk,        StartVolumes,
                                                  NextVolume, EndVolumes,  WatchNoFolder, UnwatchNoFolder };

/* --- Locks ---------------------------------------------------------------------------
 *
 * The word of the caller's structure is an atomic one here. Waiting is trying again:
 * simple and right, and good enough where locks are held for moments. */

VX3_STATIC_ASSERT(sizeof(_Atomic uint32_t) == sizeof(uint32_t), "an atomic word has the layout of a word");
VX3_STATIC_ASSERT(sizeof(_Atomic uint64_t) == sizeof(uint64_t), "an atomic word has the layout of a word");

#define WORD32(word) ((_Atomic uint32_t*)(word))
#define WORD64(word) ((_Atomic uint64_t*)(word))

static VX3Bool Try32(uint32_t* word, int32_t rank)
{
    uint32_t expected = 0;
    return atomic_compare_exchange_strong_explicit(WORD32(word), &expected, 1, memory_order_acquire, memory_order_relaxed);
}

static void Lock32(uint32_t* word, int32_t rank)
{
    while (!Try32(word, rank))
        sched_yield();
}

static void Unlock32(uint32_t* word)
{
    atomic_store_explicit(WORD32(word), 0, memory_order_release);
}

static VX3Bool Try64(uint64_t* word, int32_t rank)
{
    uint64_t expected = 0;
    return atomic_compare_exchange_strong_explicit(WORD64(word), &expected, 1, memory_order_acquire, memory_order_relaxed);
}

static void Lock64(uint64_t* word, int32_t rank)
{
    while (!Try64(word, rank))
        sched_yield();
}

static void Unlock64(uint64_t* word)
{
    atomic_store_explicit(WORD64(word), 0, memory_order_release);
}

/* The reader-writer lock: a bit for the writer inside, a bit for writers outside, and below
 * them the number of readers. A writer that comes in takes the second bit away; others that
 * wait set it again in their next round. */
#define WRITER_INSIDE 0x80000000u
#define WRITER_WAITS 0x40000000u

static void LockShared(uint32_t* word, int32_t rank)
{
    for (;;) {
        uint32_t seen = atomic_load_explicit(WORD32(word), memory_order_relaxed);
        if ((seen & (WRITER_INSIDE | WRITER_WAITS)) == 0
            && atomic_compare_exchange_weak_explicit(WORD32(word), &seen, seen + 1, memory_order_acquire, memory_order_relaxed))
            return;
        sched_yield();
    }
}

static void UnlockShared(uint32_t* word)
{
    atomic_fetch_sub_explicit(WORD32(word), 1, memory_order_release);
}

static void LockExclusive(uint32_t* word, int32_t rank)
{
    for (;;) {
        uint32_t seen = atomic_load_explicit(WORD32(word), memory_order_relaxed);
        if ((seen & ~WRITER_WAITS) == 0
            && atomic_compare_exchange_weak_explicit(WORD32(word), &seen, WRITER_INSIDE, memory_order_acquire, memory_order_relaxed))
            return;
        atomic_fetch_or_explicit(WORD32(word), WRITER_WAITS, memory_order_relaxed);
        sched_yield();
    }
}

static void UnlockExclusive(uint32_t* word)
{
    atomic_fetch_and_explicit(WORD32(word), ~WRITER_INSIDE, memory_order_release);
}

struct VX3Semaphore {
    pthread_mutex_t mutex;
    pthread_cond_t raised;
    int32_t count;
};

static VX3Semaphore* CreateSemaphore(int32_t count)
{
    VX3Semaphore* semaphore = malloc(sizeof(*semaphore));
    if (!semaphore)
        return NULL;
    pthread_mutex_init(&semaphore->mutex, NULL);
    pthread_cond_init(&semaphore->raised, NULL);
    semaphore->count = count;
    return semaphore;
}

static void FreeSemaphore(VX3Semaphore* semaphore)
{
    if (!semaphore)
        return;
    pthread_cond_destroy(&semaphore->raised);
    pthread_mutex_destroy(&semaphore->mutex);
    free(semaphore);
}

static void TakeSemaphore(VX3Semaphore* semaphore)
{
    pthread_mutex_lock(&semaphore->mutex);
    while (semaphore->count <= 0)
        pthread_cond_wait(&semaphore->raised, &semaphore->mutex);
    semaphore->count--;
    pthread_mutex_unlock(&semaphore->mutex);
}

static void GiveSemaphore(VX3Semaphore* semaphore)
{
    pthread_mutex_lock(&semaphore->mutex);
    semaphore->count++;
    pthread_cond_signal(&semaphore->raised);
    pthread_mutex_unlock(&semaphore->mutex);
}

static const VX3LockServices lockServices = { Lock32,          Try32,         Unlock32,      Lock64,        Try64,
                                              Unlock64,        LockShared,    UnlockShared,  LockExclusive, UnlockExclusive,
                                              CreateSemaphore, FreeSemaphore, TakeSemaphore, GiveSemaphore };

/* --- Threads ------------------------------------------------------------------------- */

typedef enum ThreadState { THREAD_FRESH, THREAD_RUNS, THREAD_ENDED } ThreadState;

struct VX3Thread {
    void* object;
    const VX3ThreadTable* table;
    atomic_bool endAsked;
    pthread_mutex_t mutex;
    pthread_cond_t changed;
    ThreadState state; /* under `mutex` */
    VX3Bool hasThread; /* set by start, for free */
    pthread_t thread;
};

static VX3Thread* CreateThread(void* object, const VX3ThreadTable* table)
{
    VX3Thread* thread = calloc(1, sizeof(*thread));
    if (!thread)
        return NULL;
    thread->object = object;
    thread->table = table;
    pthread_mutex_init(&thread->mutex, NULL);
    pthread_cond_init(&thread->changed, NULL);
    return thread;
}

static void EnterState(VX3Thread* thread, ThreadState state)
{
    pthread_mutex_lock(&thread->mutex);
    thread->state = state;
    pthread_cond_broadcast(&thread->changed);
    pthread_mutex_unlock(&thread->mutex);
}

static ThreadState StateOf(VX3Thread* thread)
{
    pthread_mutex_lock(&thread->mutex);
    ThreadState state = thread->state;
    pthread_mutex_unlock(&thread->mutex);
    return state;
}

static void* RunBody(void* argument)
{
    VX3Thread* thread = argument;
    thread->table->main(thread->object);
    EnterState(thread, THREAD_ENDED);
    return NULL;
}

/* The priority is a wish, which this host does not fulfil. */
static VX3Bool StartThread(VX3Thread* thread, VX3Bool background, int32_t priority)
{
    if (StateOf(thread) != THREAD_FRESH)
        return 0;
    EnterState(thread, THREAD_RUNS);
    if (!background) {
        RunBody(thread);
        return 1;
    }
    thread->hasThread = pthread_create(&thread->thread, NULL, RunBody, thread) == 0;
    if (!thread->hasThread)
        EnterState(thread, THREAD_FRESH);
    return thread->hasThread;
}

static void EndThread(VX3Thread* thread)
{
    atomic_store(&thread->endAsked, 1);
}

static void WaitForThread(VX3Thread* thread)
{
    pthread_mutex_lock(&thread->mutex);
    while (thread->state == THREAD_RUNS)
        pthread_cond_wait(&thread->changed, &thread->mutex);
    pthread_mutex_unlock(&thread->mutex);
}

static void FreeThread(VX3Thread* thread)
{
    if (!thread)
        return;
    EndThread(thread);
    if (thread->hasThread)
        pthread_join(thread->thread, NULL);
    if (thread->table->destruct)
        thread->table->destruct(thread->object);
    pthread_cond_destroy(&thread->changed);
    pthread_mutex_destroy(&thread->mutex);
    free(thread);
}

static VX3Bool ThreadShouldStop(VX3Thread* thread)
{
    return atomic_load(&thread->endAsked) || (thread->table->testBreak && thread->table->testBreak(thread->object));
}

static VX3Bool ThreadIsRunning(VX3Thread* thread)
{
    return StateOf(thread) == THREAD_RUNS;
}

enum { MILLISECONDS = 1000, NANOSECONDS = 1000000 };

static void SleepThread(int32_t milliseconds)
{
    struct timespec time = { milliseconds / MILLISECONDS, (long)(milliseconds % MILLISECONDS) * NANOSECONDS };
    if (milliseconds > 0)
        nanosleep(&time, NULL);
}

static VX3Bool IsMainThread(void)
{
    return pthread_equal(pthread_self(), mainThread) != 0;
}

static const VX3ThreadServices threadServices = { CreateThread,     FreeThread,      StartThread, EndThread,   WaitForThread,
                                                  ThreadShouldStop, ThreadIsRunning, SleepThread, IsMainThread };

/* --- Console and messages ------------------------------------------------------------ */

static void WriteLine(const VX3String* text)
{
    char* bytes = MakeBytes(TextSpan(text), FORM_UTF8);
    fprintf(stderr, "%s\n", bytes ? bytes : "");
    free(bytes);
}

static void ReportStop(const char* file, int32_t line)
{
    fprintf(stderr, "A state that must not be: %s:%" PRId32 "\n", file, line);
}

static const VX3ConsoleServices consoleServices = { WriteLine, ReportStop, ReportStop, WriteLine };

/* There are no open dialogs, so a message has reached all of them. */
static VX3Bool PostCore(int32_t id, int64_t first, int64_t second, const VX3Container* data)
{
    return 1;
}

static void NoteDocumentChange(void)
{
}

static const VX3MessageServices messageServices = { PostCore, WriteLine, NoteDocumentChange };

/* --- Resources -----------------------------------------------------------------------
 *
 * res/strings/us.txt beside the module's binary, and no other language. */

typedef struct ResourceText {
    struct ResourceText* next;
    int32_t number;
    VX3String text;
} ResourceText;

struct VX3Resources {
    ResourceText* first;
};

static void FreeResources(VX3Resources* resources)
{
    while (resources && resources->first) {
        ResourceText* text = resources->first;
        resources->first = text->next;
        DestructText(&text->text);
        free(text);
    }
    free(resources);
}

/* Replaces \n and \\ in place, and ends at the end of the line. */
static void Unescape(char* line)
{
    char* out = line;
    for (; *line && *line != '\n' && *line != '\r'; line++) {
        VX3Bool isEscape = line[0] == '\\' && (line[1] == 'n' || line[1] == '\\');
        if (isEscape)
            line++;
        *out++ = isEscape && *line == 'n' ? '\n' : *line;
    }
    *out = 0;
}

static char* SkipBlanks(char* line)
{
    return line + strspn(line, " \t");
}

/* A line that is not a number, `=` and a text says nothing. */
static VX3Bool ReadResourceLine(VX3Resources* resources, char* line)
{
    char* end = line;
    errno = 0;
    long number = *line >= '0' && *line <= '9' ? strtol(line, &end, 10) : -1;
    char* sign = SkipBlanks(end);
    if (number < 0 || number > INT32_MAX || errno || *sign != '=')
        return 1;
    char* content = SkipBlanks(sign + 1);
    ResourceText* text = calloc(1, sizeof(*text));
    if (!text)
        return 0;
    text->next = resources->first;
    text->number = (int32_t)number;
    resources->first = text;
    Unescape(content);
    return SetText(&text->text, content, -1, VX3_ENCODING_UTF8);
}

static VX3Resources* ReadResources(FILE* file)
{
    VX3Resources* resources = calloc(1, sizeof(*resources));
    char* line = NULL;
    size_t capacity = 0;
    VX3Bool isRead = resources != NULL;
    while (isRead && getline(&line, &capacity, file) >= 0)
        isRead = ReadResourceLine(resources, line);
    free(line);
    if (isRead)
        return resources;
    FreeResources(resources);
    return NULL;
}

static VX3Resources* LoadResources(const VX3Path* module)
{
    VX3String name = { 0 };
    VX3Path path = { 0 };
    VX3Bool isNamed =
        GetDirectory(module, &path) && SetText(&name, "res/strings/us.txt", -1, VX3_ENCODING_PLAIN) && JoinPath(&path, &name, &path);
    char* native = isNamed ? MakeNativePath(&path) : NULL;
    FILE* file = native ? fopen(native, "r") : NULL;
    VX3Resources* resources = file ? ReadResources(file) : NULL;
    if (file)
        fclose(file);
    free(native);
    DestructText(&name);
    DestructPath(&path);
    return resources;
}

static VX3Bool GetResourceText(VX3Resources* resources, int32_t number, VX3String* text)
{
    ResourceText* found = resources ? resources->first : NULL;
    char mark[16];
    while (found && found->number != number)
        found = found->next;
    if (found)
        return CopyText(text, &found->text);
    snprintf(mark, sizeof(mark), "#%" PRId32, number);
    if (resources)
        SetText(text, mark, -1, VX3_ENCODING_PLAIN);
    else
        DestructText(text);
    return 0;
}

static VX3Bool GetLanguage(int32_t index, VX3String* name, VX3String* code, VX3Bool* isCurrent)
{
    if (index != 0 || (name && !SetText(name, "English", -1, VX3_ENCODING_PLAIN)) || (code && !SetText(code, "us", -1, VX3_ENCODING_PLAIN)))
        return 0;
    if (isCurrent)
        *isCurrent = 1;
    return 1;
}

static VX3Bool GetKeyword(int32_t index, VX3String* text)
{
    return 0;
}

static const VX3ResourceServices resourceServices = { LoadResources, FreeResources, GetResourceText, GetLanguage, GetKeyword };

/* --- Registry ------------------------------------------------------------------------
 *
 * One published table, for one module is loaded. There are no menus, no preference
 * window and no icons to register for, and no settings are kept. */

static struct {
    int32_t id;
    int32_t version;
    int32_t size;
    const void* table;
} published;

static VX3Bool RefuseCommand(int32_t id, const VX3String* name, uint32_t flags, int32_t icon, const VX3String* help, void* object,
                             const VX3CommandTable* table)
{
    return 0;
}

static VX3Bool RefusePrefsPage(int32_t id, const VX3String* name, const char* description, int32_t sort, void* object,
                               const VX3PrefsPageTable* table)
{
    return 0;
}

static VX3Bool RefuseIcon(int32_t id, const VX3Bitmap* bitmap)
{
    return 0;
}

static VX3Bool RefuseMenu(int32_t id, const VX3String* name)
{
    return 0;
}

static VX3Bool Publish(int32_t id, int32_t version, int32_t size, const void* table)
{
    if (published.table)
        return 0;
    published.id = id;
    published.version = version;
    published.size = size;
    published.table = table;
    return 1;
}

static void Withdraw(int32_t id)
{
    if (published.id == id)
        published.table = NULL;
}

static const void* FindPublished(int32_t id, int32_t version, int32_t size)
{
    VX3Bool fits = published.table && published.id == id && published.version >= version && published.size >= size;
    return fits ? published.table : NULL;
}

static VX3Container* GetPreferences(int32_t id)
{
    return NULL;
}

static const VX3RegistryServices registryServices = { RefuseCommand, RefusePrefsPage, RefuseIcon,     Publish,
                                                      Withdraw,      FindPublished,   GetPreferences, RefuseMenu };

/* --- The run ------------------------------------------------------------------------- */

static int32_t GetRunMode(void)
{
    return VX3_RUN_COMMAND_LINE;
}

/* Nothing can be changed here, so libraries cannot either. */
static VX3Bool AnswerEdition(int32_t question, const VX3Path* path)
{
    return question == VX3_EDITION_LIBRARIES_FIXED;
}

static VX3Bool GetHostFolder(int32_t number, VX3Path* path)
{
    DestructPath(path);
    return 0;
}

static VX3Bool SetNativePath(VX3Path* path, const char* bytes)
{
    VX3String text = { 0 };
    VX3Bool isSet = SetBytes(&text.opaque, bytes, strlen(bytes), FORM_NAME) && SetPathText(path, &text);
    DestructText(&text);
    return isSet;
}

static VX3Bool GetPlace(int32_t number, VX3Path* path)
{
    const char* home = getenv("HOME");
    if (number == VX3_PLACE_HOME && home && *home == '/')
        return SetNativePath(path, home);
    DestructPath(path);
    return 0;
}

static VX3Bool GetEnvironment(const char* name, VX3String* value)
{
    const char* bytes = getenv(name);
    if (bytes)
        return SetBytes(&value->opaque, bytes, strlen(bytes), FORM_UTF8);
    DestructText(value);
    return 0;
}

static uint32_t GetClock(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (uint32_t)((uint64_t)now.tv_sec * MILLISECONDS + (uint64_t)now.tv_nsec / NANOSECONDS);
}

static void GetCurrentDate(VX3FileDate* date)
{
    FillDate(date, time(NULL));
}

static const VX3RunServices runServices = { GetRunMode, AnswerEdition, GetHostFolder, GetPlace, GetEnvironment, GetClock, GetCurrentDate };

/* --- What is not offered -------------------------------------------------------------
 *
 * Whoever is given none for an object makes no call with it: entries that need an object
 * are left none. Those that free one allow none, and must be there. */

static VX3BinaryFile* CreateNoFile(void)
{
    return NULL;
}

static void FreeNoFile(VX3BinaryFile* file)
{
}

static const VX3FileServices fileServices = { .create = CreateNoFile, .free = FreeNoFile };

static VX3DataFile* OpenNoDataFile(const VX3Path* path, int32_t mode, uint32_t ident)
{
    return NULL;
}

static const VX3DataFileServices dataFileServices = { .open = OpenNoDataFile };

static VX3Compressor* CreateNoCompressor(int32_t library)
{
    return NULL;
}

static void FreeNoCompressor(VX3Compressor* compressor)
{
}

static const VX3CompressorServices compressorServices = { .create = CreateNoCompressor, .free = FreeNoCompressor };

static VX3Bitmap* CreateNoBitmap(int32_t width, int32_t height, int32_t depth)
{
    return NULL;
}

static void FreeNoBitmap(VX3Bitmap* bitmap)
{
}

static VX3Bool InspectNoImage(const VX3Path* path, VX3ImageInfo* info)
{
    return 0;
}

static VX3Bool ShowNoImage(const VX3Path* path)
{
    return 0;
}

static const VX3BitmapServices bitmapServices = {
    .create = CreateNoBitmap, .free = FreeNoBitmap, .inspect = InspectNoImage, .show = ShowNoImage
};

static uint32_t Classify(const VX3Path* path, const void* header, int32_t length, uint32_t flags)
{
    return 0;
}

static const VX3ClassifyServices classifyServices = { Classify };

/* --- The table ----------------------------------------------------------------------- */

static const VX3Host hostTable = {
    .version = VX3_HOST_VERSION,
    .size = sizeof(VX3Host),
    .memory = &memoryServices,
    .text = &textServices,
    .path = &pathServices,
    .container = &containerServices,
    .dataFile = &dataFileServices,
    .file = &fileServices,
    .compressor = &compressorServices,
    .folder = &folderServices,
    .bitmap = &bitmapServices,
    .classify = &classifyServices,
    .lock = &lockServices,
    .thread = &threadServices,
    .message = &messageServices,
    .resource = &resourceServices,
    .console = &consoleServices,
    .registry = &registryServices,
    .run = &runServices,
};

/* --- The list ------------------------------------------------------------------------ */

/* d: a folder, r: read-only. */
static void PrintNode(const VX3Browser* browser, VX3Node* node)
{
    VX3String name = { 0 };
    VX3FileDate date = { 0 };
    int64_t size = 0;
    uint32_t attributes = browser->nodes->getAttributes(node, &size);
    browser->nodes->getName(node, &name);
    browser->nodes->getDate(node, VX3_DATE_MODIFIED, &date);
    char* bytes = MakeBytes(TextSpan(&name), FORM_UTF8);
    printf("%c%c %12" PRId64 " ", attributes & VX3_NODE_FOLDER ? 'd' : '-', attributes & VX3_NODE_READONLY ? 'r' : '-', size);
    printf("%04u-%02u-%02u %02u:%02u:%02u %s\n", date.year, date.month, date.day, date.hour, date.minute, date.second, bytes ? bytes : "");
    free(bytes);
    DestructText(&name);
}

static void PrintChildren(const VX3Browser* browser, VX3Node* folder)
{
    VX3Node* first = NULL;
    browser->nodes->getFirstChild(folder, &first);
    if (!first)
        return;
    int32_t count = 0;
    VX3Node** children = browser->tools->sortedChildren(VX3_SORT_NAME, first, &count); /* `first` is consumed */
    for (int32_t i = 0; i < count; i++)
        PrintNode(browser, children[i]);
    browser->tools->freeNodes(children);
}

static int ListFolder(const VX3Browser* browser, const char* folder)
{
    VX3Path path = { 0 };
    VX3Url url = { 0 };
    VX3Node* node = NULL;
    if (SetNativePath(&path, folder)) {
        browser->urls->setFile(&url, &path);
        browser->tree->findNodeByUrl(&url, VX3_FIND_PLAIN | VX3_FIND_POPULATE, NULL, &node);
        browser->urls->destruct(&url);
    }
    DestructPath(&path);
    VX3Bool isFolder = node && (browser->nodes->getAttributes(node, NULL) & VX3_NODE_FOLDER) != 0;
    if (isFolder)
        PrintChildren(browser, node);
    else
        fprintf(stderr, node ? "minimalhost: %s is not a folder\n" : "minimalhost: the browser does not reach %s\n", folder);
    browser->references->release(node);
    return isFolder ? EXIT_SUCCESS : EXIT_NOT_LISTED;
}

/* --- The life of a module ------------------------------------------------------------ */

static int32_t Send(VX3EntryFunction entry, intptr_t message, void* data)
{
    return entry(VX3_ACTION_MESSAGE, (void*)message, data, NULL);
}

/* From action 1 to the time when the module is up. */
static VX3Bool StartModule(VX3EntryFunction entry, VX3Path* binary)
{
    if (entry(VX3_ACTION_LOAD, (void*)&hostTable, NULL, binary) != VX3_RESULT_OK) {
        fprintf(stderr, "minimalhost: the module refuses this host\n");
        return 0;
    }
    VX3ResourceRequest request = { 1 };
    Send(entry, VX3_MESSAGE_RESOURCES, &request);
    if (request.pending != 0)
        fprintf(stderr, "minimalhost: the module has found no texts\n"); /* it works without, namelessly */
    if (entry(VX3_ACTION_START, NULL, NULL, NULL) != VX3_RESULT_OK) {
        fprintf(stderr, "minimalhost: the module does not take part\n");
        return 0;
    }
    uint32_t startOfRun = 0;
    Send(entry, VX3_MESSAGE_RUN_TIMING, &startOfRun);
    Send(entry, VX3_MESSAGE_ALL_LOADED, NULL);
    return 1;
}

static int UseModule(const char* folder)
{
    const VX3Browser* browser = FindPublished(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof(VX3Browser));
    if (browser)
        return ListFolder(browser, folder);
    fprintf(stderr, "minimalhost: the module is not a content browser\n");
    return EXIT_NO_MODULE;
}

/* Action 3 is called in any case: it gives back what action 1 has begun. */
static int RunModule(VX3EntryFunction entry, const char* binary, const char* folder)
{
    VX3Path path = { 0 };
    int result = EXIT_NO_MODULE;
    if (SetNativePath(&path, binary)) {
        VX3Bool isUp = StartModule(entry, &path);
        if (isUp) {
            result = UseModule(folder);
            Send(entry, VX3_MESSAGE_ENDING, NULL);
        }
        entry(VX3_ACTION_END, NULL, NULL, NULL);
    }
    DestructPath(&path);
    return result;
}

static int LoadAndRun(const char* binary, const char* folder)
{
    void* library = dlopen(binary, RTLD_NOW | RTLD_LOCAL);
    void* symbol = library ? dlsym(library, "vx3_main") : NULL;
    int result = EXIT_NO_MODULE;
    if (symbol) {
        VX3EntryFunction entry;
        memcpy(&entry, &symbol, sizeof(entry)); /* C has no cast from a pointer to data to one to a function */
        result = RunModule(entry, binary, folder);
    } else {
        fprintf(stderr, "minimalhost: this is no module: %s\n", dlerror());
    }
    if (library)
        dlclose(library);
    return result;
}

int main(int count, char** arguments)
{
    if (count != 3) {
        fprintf(stderr, "usage: minimalhost MODULE FOLDER\n");
        return EXIT_USAGE;
    }
    mainThread = pthread_self();
    char* binary = realpath(arguments[1], NULL);
    char* folder = realpath(arguments[2], NULL);
    int result = binary ? EXIT_NOT_LISTED : EXIT_NO_MODULE;
    if (binary && folder)
        result = LoadAndRun(binary, folder);
    else
        fprintf(stderr, "minimalhost: there is no %s %s\n", binary ? "folder" : "module", arguments[binary ? 2 : 1]);
    free(binary);
    free(folder);
    return result;
}
