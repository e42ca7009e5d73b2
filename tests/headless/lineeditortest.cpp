#include <gtest/gtest.h>

#include "headless/lineeditor.h"
#include "vx3/guitypes.h"

namespace {

using vx3::headless::LineEditor;

constexpr int32_t letter = 'X';

struct KeyCase {
    const char* name;
    std::u16string before; // [ and ] stand around what is selected, | at the caret if nothing is
    int32_t code;
    uint32_t qualifiers;
    std::u16string typed;
    LineEditor::Result result;
    std::u16string after;
};

// The caret stands at the closing bracket.
LineEditor Read(const std::u16string& marked, std::u16string& text)
{
    LineEditor editor;
    for (char16_t unit : marked) {
        if (unit == u'[' || unit == u'|')
            editor.anchor = text.size();
        if (unit == u']' || unit == u'|')
            editor.caret = text.size();
        if (unit != u'[' && unit != u']' && unit != u'|')
            text += unit;
    }
    return editor;
}

std::u16string Write(const LineEditor& editor, std::u16string text)
{
    if (editor.caret == editor.anchor)
        return text.insert(editor.caret, u"|");
    const size_t first = std::min(editor.caret, editor.anchor);
    text.insert(std::max(editor.caret, editor.anchor), u"]");
    return text.insert(first, u"[");
}

const KeyCase cases[] = {
    { "a letter replaces the selection", u"a[bc]d", letter, 0, u"x", LineEditor::Result::Changed, u"ax|d" },
    { "ctrl and a letter types nothing", u"ab|", letter, VX3_QUALIFIER_CTRL, u"x", LineEditor::Result::Ignored, u"ab|" },
    { "backspace takes the unit before", u"ab|c", VX3_KEY_BACKSPACE, 0, u"", LineEditor::Result::Changed, u"a|c" },
    { "backspace at the start has no use", u"|abc", VX3_KEY_BACKSPACE, 0, u"", LineEditor::Result::Ignored, u"|abc" },
    { "delete takes the unit behind", u"a|bc", VX3_KEY_DELETE, 0, u"", LineEditor::Result::Changed, u"a|c" },
    { "delete takes the selection", u"[abc]", VX3_KEY_DELETE, 0, u"", LineEditor::Result::Changed, u"|" },
    { "left drops the selection", u"a[b]c", VX3_KEY_LEFT, 0, u"", LineEditor::Result::Moved, u"a|bc" },
    { "shift extends it", u"a|bc", VX3_KEY_END, VX3_QUALIFIER_SHIFT, u"", LineEditor::Result::Moved, u"a[bc]" },
    { "ctrl and A select all", u"a|b", 'A', VX3_QUALIFIER_CTRL, u"", LineEditor::Result::Moved, u"[ab]" },
    { "enter is the owner's", u"ab|", VX3_KEY_ENTER, 0, u"", LineEditor::Result::Entered, u"ab|" },
    { "escape is the owner's", u"ab|", VX3_KEY_ESCAPE, 0, u"", LineEditor::Result::Cancelled, u"ab|" },
    { "a function key has no use", u"ab|", VX3_KEY_F1, 0, u"", LineEditor::Result::Ignored, u"ab|" },
    { "the tabulator is not typed", u"ab|", VX3_KEY_TAB, 0, u"\t", LineEditor::Result::Ignored, u"ab|" },
};

TEST(LineEditor, KeysOfOneLine)
{
    for (const KeyCase& row : cases) {
        std::u16string text;
        LineEditor editor = Read(row.before, text);
        EXPECT_EQ(editor.Key(text, row.code, row.qualifiers, row.typed, false, false), row.result) << row.name;
        EXPECT_EQ(Write(editor, text), row.after) << row.name;
    }
}

TEST(LineEditor, EnterBeginsALineWhereThereAreSeveral)
{
    std::u16string text;
    LineEditor editor = Read(u"ab|", text);
    EXPECT_EQ(editor.Key(text, VX3_KEY_ENTER, 0, u"", true, false), LineEditor::Result::Changed);
    EXPECT_EQ(text, u"ab\n");
}

TEST(LineEditor, ReadOnlyMovesAndSelectsButChangesNothing)
{
    std::u16string text;
    LineEditor editor = Read(u"a[b]", text);
    EXPECT_EQ(editor.Key(text, letter, 0, u"x", false, true), LineEditor::Result::Ignored);
    EXPECT_EQ(editor.Key(text, VX3_KEY_DELETE, 0, u"", false, true), LineEditor::Result::Ignored);
    EXPECT_EQ(editor.Key(text, VX3_KEY_HOME, 0, u"", false, true), LineEditor::Result::Moved);
    EXPECT_EQ(Write(editor, text), u"|ab");
}

TEST(LineEditor, ATextThatWasCutBehindTheCaretIsNoHarm)
{
    std::u16string text = u"a";
    LineEditor editor;
    editor.caret = 7;
    editor.anchor = 3;
    EXPECT_EQ(editor.Key(text, letter, 0, u"x", false, false), LineEditor::Result::Changed);
    EXPECT_EQ(text, u"ax");
}

} // namespace
