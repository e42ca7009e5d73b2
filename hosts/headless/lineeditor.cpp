#include "headless/lineeditor.h"

#include <algorithm>

#include "vx3/guitypes.h"

namespace vx3::headless {

void LineEditor::ClampTo(const std::u16string& text)
{
    caret = std::min(caret, text.size());
    anchor = std::min(anchor, text.size());
}

void LineEditor::Select(const std::u16string& text, int from, int count)
{
    anchor = static_cast<size_t>(std::max(0, from));
    caret = count < 0 ? text.size() : anchor + static_cast<size_t>(count);
    ClampTo(text);
}

void LineEditor::SelectAll(const std::u16string& text)
{
    Select(text, 0, -1);
}

bool LineEditor::Move(const std::u16string& text, int32_t code, bool keepsAnchor)
{
    switch (code) {
    case VX3_KEY_LEFT: caret -= caret > 0; break;
    case VX3_KEY_RIGHT: caret += caret < text.size(); break;
    case VX3_KEY_HOME: caret = 0; break;
    case VX3_KEY_END: caret = text.size(); break;
    default: return false;
    }
    if (!keepsAnchor)
        anchor = caret;
    return true;
}

LineEditor::Result LineEditor::Replace(std::u16string& text, const std::u16string& typed)
{
    const size_t from = std::min(caret, anchor);
    text.replace(from, std::max(caret, anchor) - from, typed);
    caret = anchor = from + typed.size();
    return Result::Changed;
}

LineEditor::Result LineEditor::Erase(std::u16string& text, int32_t code)
{
    if (caret == anchor)
        Move(text, code == VX3_KEY_BACKSPACE ? VX3_KEY_LEFT : VX3_KEY_RIGHT, true);
    return caret == anchor ? Result::Ignored : Replace(text, {});
}

LineEditor::Result LineEditor::Key(std::u16string& text, int32_t code, uint32_t qualifiers, std::u16string typed, bool hasLines,
                                   bool isReadOnly)
{
    ClampTo(text);
    if ((qualifiers & VX3_QUALIFIER_CTRL) && code == 'A') {
        SelectAll(text);
        return Result::Moved;
    }
    if (Move(text, code, (qualifiers & VX3_QUALIFIER_SHIFT) != 0))
        return Result::Moved;
    if (code == VX3_KEY_ENTER && !hasLines)
        return Result::Entered;
    if (code == VX3_KEY_ESCAPE)
        return Result::Cancelled;
    if (isReadOnly || (qualifiers & (VX3_QUALIFIER_CTRL | VX3_QUALIFIER_ALT)))
        return Result::Ignored;
    if (code == VX3_KEY_BACKSPACE || code == VX3_KEY_DELETE)
        return Erase(text, code);
    if (code == VX3_KEY_ENTER)
        typed = u"\n";
    return typed.empty() || code == VX3_KEY_TAB ? Result::Ignored : Replace(text, typed);
}

} // namespace vx3::headless
