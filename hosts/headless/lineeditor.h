// What keys do to a text that is being edited: of a field, of several lines, of the popup
// edit. The text itself is its owner's.
#pragma once

#include <cstdint>
#include <string>

namespace vx3::headless {

struct LineEditor {
    enum class Result { Ignored, Moved, Changed, Entered, Cancelled };

    size_t caret = 0;  // before this unit
    size_t anchor = 0; // the other end of what is selected

    void Select(const std::u16string& text, int from, int count); // -1: all that follow
    void SelectAll(const std::u16string& text);
    // A key by its code and by what it writes. Enter and Escape are the owner's to act on;
    // in several lines Enter begins a new one.
    Result Key(std::u16string& text, int32_t code, uint32_t qualifiers, std::u16string typed, bool hasLines, bool isReadOnly);

private:
    void ClampTo(const std::u16string& text);
    bool Move(const std::u16string& text, int32_t code, bool keepsAnchor);
    Result Replace(std::u16string& text, const std::u16string& typed);
    Result Erase(std::u16string& text, int32_t code);
};

} // namespace vx3::headless
