// A whole host, pictures of its windows, and windows that stand over each other.
#include "headless/galleryfixture.h"

#include <filesystem>

#include "core/services.h"
#include "core/values.h"
#include "headless/palette.h"
#include "headless/raster.h"
#include "testing/testhost.h"

namespace {

using vx3::gui::Colour;
using vx3::gui::Point;
using vx3::tests::GalleryTest;

// A picture from a file, as far as a test looks at it.
class Loaded
{
public:
    explicit Loaded(const std::string& file)
        : bitmap(vx3::core::BitmapServices()->create(1, 1, 24))
    {
        result = vx3::core::BitmapServices()->load(bitmap, vx3::core::Path(file).Get(), 0);
    }
    ~Loaded() { vx3::core::BitmapServices()->free(bitmap); }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;

    Colour At(Point point) const
    {
        uint8_t pixel[4] = {};
        vx3::core::BitmapServices()->readPixels(bitmap, point.x, point.y, 1, pixel);
        return { pixel[0], pixel[1], pixel[2] };
    }
    int CountOf(Colour colour) const
    {
        int count = 0;
        for (int y = 0; y < vx3::core::BitmapServices()->height(bitmap); ++y)
            for (int x = 0; x < vx3::core::BitmapServices()->width(bitmap); ++x)
                count += At({ x, y }) == colour;
        return count;
    }

    VX3Bitmap* bitmap;
    int32_t result = 0;
};

TEST_F(GalleryTest, APictureShowsWhatTheModuleDrawsWhereItStands)
{
    const std::string file = testHost.Folder() + "/areas.png";
    ASSERT_EQ(Play("open\nsize 420 460\nset 10 1\nshot " + file + "\n"), "");
    const Loaded picture(file);
    ASSERT_EQ(picture.result, VX3_IMAGE_OK);
    vx3::gui::Dialog& window = *gui.GetDesk().Windows().front();
    EXPECT_EQ(vx3::core::BitmapServices()->width(picture.bitmap), vx3::headless::FrameOf(window).width);
    const vx3::gui::Gadget& area = *gui.GetDesk().FindGadget(window, vx3::tests::idBandArea);
    const Point inside = vx3::headless::InsideCornerOf(window) - vx3::headless::FrameOf(window).Corner();
    const Point corner = inside + area.place.Corner();
    constexpr Colour square = { 0xD0, 0xD0, 0xFF };
    EXPECT_EQ(picture.At(corner + Point{ 9, 20 }), vx3::headless::PaletteColour(VX3_COLOUR_BACKGROUND));
    EXPECT_EQ(picture.At(corner + Point{ 10, 20 }), square);
    EXPECT_EQ(picture.At(corner + Point{ 69, 20 }), square);
    EXPECT_EQ(picture.At(corner + Point{ 70, 20 }), vx3::headless::PaletteColour(VX3_COLOUR_BACKGROUND));
}

// The lower two squares are scrolled out of the view: nothing of them may stand on the buttons.
TEST_F(GalleryTest, APictureCutsWhatIsScrolledAway)
{
    constexpr Colour square = { 0xD0, 0xD0, 0xFF };
    const std::string file = testHost.Folder() + "/cut.png";
    ASSERT_EQ(Play("open\nset 10 1\nshot " + file + "\n"), "");
    const int all = Loaded(file).CountOf(square);
    ASSERT_EQ(Play("wheel 42 20 20 -1\nshot " + file + "\n"), "");
    const int cut = Loaded(file).CountOf(square);
    EXPECT_LT(cut, all);
    EXPECT_GT(cut, all / 3);
    EXPECT_NE(Play("shot " + testHost.Folder() + "/nowhere/a.png\n").find("could not be written"), std::string::npos);
}

TEST_F(GalleryTest, AWindowBehindAModalOneStaysThere)
{
    ASSERT_EQ(Play("open\ndump list\npush 70\nwindow 1\ndump focus\nwindow 2\ndump focus\npush 81\n").find("FAILED"), std::string::npos);
    EXPECT_EQ(Play("dump focus\n"), "focus button 70 \"Modal\"\n"); // it comes back
}

TEST_F(GalleryTest, APageThatGoesTakesTheFocusWithIt)
{
    EXPECT_EQ(Play("open\nclick 21 10 10\nset 10 1\ndump focus\n"), "focus nowhere\n");
}

TEST_F(GalleryTest, AFieldOverTheWindowEndsWhenAnotherGetsTheFocus)
{
    const std::string lines = Play("open\npush 71\ntype x\ncommand 9\ndump list\ndump focus\n");
    EXPECT_NE(lines.find("popup edit closed \"x\""), lines.npos) << lines;
    EXPECT_NE(lines.find("focus edit 21"), lines.npos) << lines;
}

TEST(WindowStack, OnlyOnePlaceMeansNone)
{
    vx3::headless::WindowStack stack;
    const struct {
        int32_t x;
        int32_t y;
        bool isTaken;
    } cases[] = { { -1, -1, false }, { -200, -50, true }, { -1, 7, true }, { 0, 0, true } };
    for (const auto& row : cases) {
        vx3::gui::Dialog other;
        other.opened = { 1, 0, row.x, row.y, 10, 10 };
        stack.Add(other);
        EXPECT_EQ(vx3::headless::FrameOf(other).Corner() == (Point{ row.x, row.y }), row.isTaken) << row.x << " " << row.y;
        stack.Remove(other);
    }
}

TEST(HeadlessHost, TextsOfAModuleAreBoxesAndWindowsAreInTheTable)
{
    const std::string folder = vx3::testing::MakeTemporaryFolder();
    {
        vx3::headless::HeadlessHost host(vx3::core::SettingsBelow(folder));
        ASSERT_TRUE(host.Table()->gui);
        EXPECT_EQ(host.Table()->run->runMode(), vx3::headless::runModeWithWindows);
        host.Gui().GetDriver().Answer("ok");
        host.Table()->message->showText(vx3::core::Text(std::string_view("paint")).Get());
        EXPECT_EQ(host.Gui().GetDriver().DumpMenu(), "information: paint");
        EXPECT_TRUE(host.Gui().GetToolkit().User().Failures().empty());
        host.Table()->message->showText(vx3::core::Text(std::string_view("brush")).Get());
        EXPECT_EQ(host.Gui().GetToolkit().User().Failures().size(), 1u); // nobody expected it
    }
    std::filesystem::remove_all(folder);
}

} // namespace
