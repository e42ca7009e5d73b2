// The words of scripts: splitting lines, and what verbs take.
#pragma once

#include <deque>

#include "gui/script.h"

namespace vx3::gui {

// Why a line cannot be understood, or did not do what it should; without its number.
struct ScriptError {
    std::string message;
};

struct ScriptVerb;

// Throws ScriptError with the number of the line in front.
std::deque<ScriptLine> ParseScript(const std::string& text);

// Throws ScriptError if the words behind the verb are not what it takes. The pattern has a letter
// for each: `g` number of a gadget, `c` coordinate, `i` whole number, `f` decimal number, `k` key,
// `w` any word, `d` something to dump, `=` the word "to"; the last one may be `?` for one word or none,
// `*` for any words, `+` for at least one, `F` for decimal numbers, `Q` for qualifiers, `B` for
// qualifiers and a button, `N` for qualifiers and "no-drop".
void CheckArguments(const ScriptLine& line, std::string_view pattern);

// --- Single words; each throws ScriptError if it is something else ---

int32_t WholeWord(const std::string& word);
double DecimalWord(const std::string& word);

struct Coordinate {
    int value = 0;
    bool isPercent = false;
};
Coordinate CoordinateWord(const std::string& word);

struct KeyWord {
    int32_t code = 0;
    std::u16string text;
};
KeyWord ParseKey(const std::string& word); // a name, one letter, or a number
KeyWord KeyOfUnits(std::u16string text);   // of one character

uint32_t QualifierOf(const std::string& word); // 0: none
int32_t ChannelOf(const std::string& word);    // 0: no button

} // namespace vx3::gui
