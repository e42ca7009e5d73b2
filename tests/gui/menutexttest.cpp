// Menus as lines, and choosing from them by what stands there.
#include <gtest/gtest.h>

#include "gui/menutext.h"

namespace {

using vx3::gui::MenuItem;
using Kind = MenuItem::Kind;

const std::vector<MenuItem> menu = {
    { Kind::Item, 5, u"&Plain", 0, {} },
    { Kind::Command, 6, u"Salt && &Pepper", VX3_MENU_CHECKED, {} },
    { Kind::Separator, 0, u"", 0, {} },
    { Kind::Item, 7, u"Never", VX3_MENU_DISABLED | VX3_MENU_CHECKED, {} },
    { Kind::Menu, 0, u"&More", 0, { { Kind::Item, 8, u"Deep", VX3_MENU_CHECKED | VX3_MENU_RADIO, {} } } },
};

TEST(MenuText, ARowALine)
{
    EXPECT_EQ(vx3::gui::DescribeMenu(menu), "5 Plain\n6 [x] Salt & Pepper\n-\n7 [x] (Never)\nMore >\n  8 (o) Deep\n");
    EXPECT_EQ(vx3::gui::WithoutMnemonic(u"a&"), u"a&");
}

TEST(MenuText, ARowIsChosenByItsNumberOrItsText)
{
    struct Row {
        const char* answer;
        bool isThere;
        int32_t id;
    };
    for (const Row& row :
         { Row{ "5", true, 5 }, Row{ "Salt & Pepper", true, 6 }, Row{ "Deep", true, 8 }, Row{ "", true, 0 }, Row{ "0", true, 0 },
           Row{ "7", false, 0 }, Row{ "Never", false, 0 }, Row{ "More", false, 0 }, Row{ "9", false, 0 } }) {
        int32_t id = -1;
        EXPECT_EQ(vx3::gui::ChooseFromMenu(menu, row.answer, id), row.isThere) << row.answer;
        EXPECT_EQ(id, row.id) << row.answer;
    }
}

} // namespace
