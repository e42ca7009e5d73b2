// Keys in the icon grid, carried out: what is selected then, and what is in sight. Eleven
// entries in three rows of four, 66 by 79; a part of 160 is seen, so two rows and a bit.
//
//     a  b  c  d
//     e  f  g  h
//     i  j  k

#include "panefixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr uint32_t plain = 0, shift = VX3_QUALIFIER_SHIFT, ctrl = VX3_QUALIFIER_CTRL, alt = VX3_QUALIFIER_ALT;
constexpr int32_t bottom = 237 - 160; // as far down as can be scrolled

class ListKeys : public PaneTest
{
protected:
    // The selected letters.
    std::string Selected()
    {
        std::string letters;
        for (int32_t i = 0; i < pane->GetList().GetState().count; i++)
            if (pane->GetList().IsSelected(i))
                letters += Utf8(ContentOf(At(i))->GetNameRef());
        return letters;
    }
    // In this order, so that the first is the anchor.
    void SelectLetters(const std::string& letters)
    {
        pane->GetList().ClearSelection();
        for (char letter : letters)
            pane->GetList().SetSelected(letter - 'a', true);
        (void)window->Did();
    }
};

TEST_F(ListKeys, KeysSelectAndReveal)
{
    const struct {
        const char* before;
        int32_t from; // scrolled
        int32_t key;
        uint32_t qualifiers;
        const char* after;
        int32_t to;
    } rows[] = {
        // Without shift: the one entry that is the target.
        { "", 0, VX3_KEY_RIGHT, plain, "a", 0 },
        { "", 0, VX3_KEY_LEFT, plain, "k", bottom },
        { "", 0, VX3_KEY_UP, plain, "k", bottom },
        { "", bottom, VX3_KEY_DOWN, plain, "a", 0 },
        { "f", 0, VX3_KEY_RIGHT, plain, "g", 0 },
        { "h", 0, VX3_KEY_RIGHT, plain, "h", 0 },
        { "f", 0, VX3_KEY_LEFT, plain, "e", 0 },
        { "e", 0, VX3_KEY_LEFT, plain, "e", 0 },
        { "f", bottom, VX3_KEY_UP, plain, "b", 0 },
        { "b", 0, VX3_KEY_UP, plain, "b", 0 },
        { "f", 0, VX3_KEY_DOWN, plain, "j", bottom },
        { "h", 0, VX3_KEY_DOWN, plain, "h", 0 },
        { "fgj", 0, VX3_KEY_RIGHT, plain, "k", bottom },
        { "j", bottom, VX3_KEY_HOME, plain, "a", 0 },
        { "b", 0, VX3_KEY_END, plain, "k", bottom },
        { "j", bottom, VX3_KEY_PAGE_UP, plain, "b", 0 },
        { "b", 0, VX3_KEY_PAGE_DOWN, plain, "j", bottom },
        { "d", 0, VX3_KEY_PAGE_DOWN, plain, "k", bottom },
        { "", bottom, VX3_KEY_PAGE_UP, plain, "", 0 },
        { "", 0, VX3_KEY_PAGE_DOWN, shift, "", bottom },
        // With shift: a block that grows and shrinks at the side that is not the anchor's.
        { "f", 0, VX3_KEY_RIGHT, shift, "fg", 0 },
        { "fg", 0, VX3_KEY_RIGHT, shift, "fgh", 0 },
        { "fgh", 0, VX3_KEY_LEFT, shift, "fg", 0 },
        { "f", 0, VX3_KEY_LEFT, shift, "ef", 0 },
        { "fg", 0, VX3_KEY_DOWN, shift, "fgjk", bottom },
        { "fgjk", bottom, VX3_KEY_UP, shift, "fg", 77 },
        { "gf", 0, VX3_KEY_UP, shift, "bcfg", 0 },
        { "gbcf", 0, VX3_KEY_DOWN, shift, "fg", 0 },
        { "f", 0, VX3_KEY_HOME, shift, "abef", 0 },
        { "a", 0, VX3_KEY_END, shift, "abcefgijk", bottom },
        { "", 0, VX3_KEY_DOWN, shift, "", 0 },
        // Kept: a run over the end of a row is no block, and leaves nothing selected.
        { "dh", 0, VX3_KEY_END, shift, "", bottom },
        { "h", 0, VX3_KEY_END, shift, "", bottom },
    };
    AddLetters(11);
    Open();
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.before) + " " + std::to_string(row.key & 0xFF) + " " + std::to_string(row.qualifiers));
        SelectLetters(row.before);
        gui.Scroll(row.from);
        EXPECT_TRUE(gui.Key(row.key, row.qualifiers));
        EXPECT_EQ(Selected(), row.after);
        EXPECT_EQ(gui.scrolled, row.to);
        EXPECT_EQ(window->Did(), " update");
    }
}

TEST_F(ListKeys, KeysThatAct)
{
    const struct {
        const char* before;
        int32_t key;
        uint32_t qualifiers;
        const char* did;
    } rows[] = {
        { "c", VX3_KEY_BACKSPACE, plain, " show f/g update" },
        { "c", VX3_KEY_UP, ctrl, " show f/g update" },
        { "a", VX3_KEY_ENTER, plain, " show a update" },
        { "ac", VX3_KEY_DOWN, ctrl, " show a update" },
        { "", VX3_KEY_ENTER, plain, " update" },
        { "c", VX3_KEY_TAB, plain, " activate 10059 update" },
    };
    const ContentRef inside(&Add("g", Attribute::folder));
    Add(*inside, "a", Attribute::folder);
    Add(*inside, "b", Attribute::folder);
    Add(*inside, "c");
    Open(inside);
    for (const auto& row : rows) {
        SelectLetters(row.before);
        EXPECT_TRUE(gui.Key(row.key, row.qualifiers));
        EXPECT_EQ(window->Did(), row.did) << (row.key & 0xFF);
        EXPECT_EQ(Selected(), row.before);
    }
    using Pressed = std::pair<int32_t, uint32_t>;
    for (const auto& [key, qualifiers] : { Pressed(VX3_KEY_TAB, shift), Pressed(VX3_KEY_TAB, alt), Pressed(VX3_KEY_ESCAPE, plain),
                                           Pressed('A', ctrl), Pressed(VX3_KEY_SPACE, plain) })
        EXPECT_FALSE(gui.Key(key, qualifiers)) << key;
    EXPECT_EQ(window->Did(), "");
    window->hasTree = false;
    EXPECT_FALSE(gui.Key(VX3_KEY_TAB));
    EXPECT_EQ(window->Did(), " activate 10059") << "the key goes on to the next gadget";
}

TEST_F(ListKeys, AnEmptyFolderTakesAllKeys)
{
    Open();
    for (int32_t key : { VX3_KEY_HOME, VX3_KEY_END, VX3_KEY_UP, VX3_KEY_DOWN, VX3_KEY_LEFT, VX3_KEY_RIGHT, VX3_KEY_PAGE_UP,
                         VX3_KEY_PAGE_DOWN, VX3_KEY_ENTER })
        for (uint32_t qualifiers : { plain, shift }) {
            EXPECT_TRUE(gui.Key(key, qualifiers)) << key;
            EXPECT_EQ(Entries(), "");
        }
}

} // namespace
