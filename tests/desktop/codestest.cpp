// The words of the boundary and those of Qt, the colours, and the command line.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPalette>

#include "desktop/qtcodes.h"
#include "desktop/qtcolours.h"
#include "desktop/qtlook.h"

namespace {

using namespace vx3::desktop;

TEST(Codes, OfKeysGoToQtAndBack)
{
    const int codes[] = { VX3_KEY_BACKSPACE, VX3_KEY_TAB,  VX3_KEY_ENTER,  VX3_KEY_ESCAPE, VX3_KEY_SPACE,   VX3_KEY_DELETE,
                          VX3_KEY_UP,        VX3_KEY_DOWN, VX3_KEY_LEFT,   VX3_KEY_RIGHT,  VX3_KEY_PAGE_UP, VX3_KEY_PAGE_DOWN,
                          VX3_KEY_HOME,      VX3_KEY_END,  VX3_KEY_F1 + 0, VX3_KEY_F1 + 11 };
    for (int code : codes)
        EXPECT_EQ(CodeOf(KeyOf(code), {}), code) << std::hex << code;
    EXPECT_EQ(CodeOf(Qt::Key_A, QStringLiteral("a")), 'A');
    EXPECT_EQ(CodeOf(Qt::Key_A, QStringLiteral("\x01")), 'A') << "with ctrl a key writes no letter";
    EXPECT_EQ(CodeOf(0, QStringLiteral("ß")), 'S') << "the first unit of what it is in upper case";
    EXPECT_EQ(CodeOf(Qt::Key_Shift, {}), 0) << "a modifier alone is no key";
}

TEST(Codes, OfAKeyEventTellWhatItWritesAndNothingElse)
{
    const vx3::gui::Input letter = InputOf(QKeyEvent(QEvent::KeyPress, Qt::Key_Q, Qt::ShiftModifier, QStringLiteral("Q")));
    EXPECT_EQ(letter.text, u"Q");
    EXPECT_EQ(letter.qualifiers, static_cast<uint32_t>(VX3_QUALIFIER_SHIFT));
    const vx3::gui::Input erase = InputOf(QKeyEvent(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier, QStringLiteral("\b")));
    EXPECT_EQ(erase.text, u"");
    EXPECT_EQ(InputOf(QKeyEvent(QEvent::KeyPress, Qt::Key_Backtab, Qt::NoModifier)).qualifiers, static_cast<uint32_t>(VX3_QUALIFIER_SHIFT));
}

TEST(Codes, KeepEveryUnitOfAText)
{
    const char16_t units[] = { 0xFEFF, u'a', 0xDC80, 0xD83D, 0xDE00, 0 };
    EXPECT_EQ(ToUnits(ToQt(units)), units);
}

class ColoursTest : public ::testing::TestWithParam<Brightness>
{
protected:
    ColoursTest()
    {
        SetLook(GetParam());
        colours = Colours(QApplication::palette());
    }
    ~ColoursTest() override { SetLook(Brightness::Light); }

    Colours colours;
};

TEST_P(ColoursTest, TextsCanBeReadWhereTheyStand)
{
    struct Row {
        int32_t text;
        int32_t ground;
    };
    constexpr Row rows[] = {
        { VX3_COLOUR_TEXT, VX3_COLOUR_BACKGROUND },
        { VX3_COLOUR_SELECTED_TEXT, VX3_COLOUR_SELECTION },
        { VX3_COLOUR_SELECTED_TEXT_UNFOCUSED, VX3_COLOUR_SELECTION_UNFOCUSED },
        { VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_BACKGROUND },
        { VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_SELECTION },
        { VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_SELECTION_UNFOCUSED },
    };
    for (const Row& row : rows)
        EXPECT_GE(ContrastOf(colours.Of(row.text), colours.Of(row.ground)), readableContrast) << row.text << " on " << row.ground;
}

TEST_P(ColoursTest, TellTheFocusAndWhatIsSelected)
{
    EXPECT_NE(colours.Of(VX3_COLOUR_SELECTION), colours.Of(VX3_COLOUR_SELECTION_UNFOCUSED));
    EXPECT_NE(colours.Of(VX3_COLOUR_BACKGROUND), colours.Of(VX3_COLOUR_SELECTION_UNFOCUSED));
    EXPECT_NE(colours.Of(VX3_COLOUR_TEXT), colours.Of(VX3_COLOUR_SPECIAL_TEXT));
    EXPECT_EQ(colours.Of(4711), QColor(Qt::black));
}

INSTANTIATE_TEST_SUITE_P(Looks, ColoursTest, ::testing::Values(Brightness::Light, Brightness::Dark));

} // namespace
