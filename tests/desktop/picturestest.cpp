// Pictures and texts are made once, for the dots of the screen, and kept within bounds.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "core/services.h"
#include "desktop/qtcanvas.h"
#include "desktop/qticons.h"
#include "desktop/qtpictures.h"
#include "desktop/qttexts.h"

namespace {

using namespace vx3;
using desktop::Pictures;
using desktop::Texts;

struct FreeBitmap {
    void operator()(VX3Bitmap* bitmap) const { core::BitmapServices()->free(bitmap); }
};
using Bitmap = std::unique_ptr<VX3Bitmap, FreeBitmap>;

enum class Alpha { None, Straight };

Bitmap MakeBitmap(int side, QRgb colour, Alpha alpha = Alpha::None)
{
    const VX3BitmapServices& bitmaps = *core::BitmapServices();
    Bitmap bitmap(bitmaps.create(side, side, 24));
    if (alpha == Alpha::Straight)
        bitmaps.addAlpha(bitmap.get());
    std::vector<uint8_t> row;
    for (int x = 0; x < side; ++x)
        for (int channel : { qRed(colour), qGreen(colour), qBlue(colour), qAlpha(colour) })
            row.push_back(static_cast<uint8_t>(channel));
    for (int y = 0; y < side; ++y)
        bitmaps.writePixels(bitmap.get(), 0, y, side, row.data());
    return bitmap;
}

constexpr gui::Place whole = { 0, 0, 8, 8 };

TEST(Pictures, AreScaledOncePerSizeAndAgainWhenTheBitmapHasChanged)
{
    Pictures pictures;
    const Bitmap bitmap = MakeBitmap(8, qRgb(200, 100, 50));
    for (int frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(pictures.Get(*bitmap, whole, QSize(4, 4), true).size(), QSize(4, 4));
        EXPECT_EQ(pictures.Get(*bitmap, whole, QSize(12, 12), true).size(), QSize(12, 12));
    }
    EXPECT_EQ(pictures.MadeCount(), 2u);
    const uint8_t green[] = { 0, 255, 0, 255 };
    core::BitmapServices()->writePixels(bitmap.get(), 0, 0, 1, green);
    EXPECT_EQ(pictures.Get(*bitmap, whole, QSize(8, 8), true).pixel(0, 0), qRgb(0, 255, 0));
    EXPECT_EQ(pictures.Get(*bitmap, whole, QSize(4, 4), true).size(), QSize(4, 4));
    EXPECT_EQ(pictures.MadeCount(), 4u);
}

// Two bitmaps may get the same address, one after the other.
TEST(Pictures, OfAFreedBitmapAreNotTakenForThoseOfTheNext)
{
    Pictures pictures;
    for (int shade = 0; shade < 50; ++shade) {
        const Bitmap bitmap = MakeBitmap(8, qRgb(shade, 0, 0));
        ASSERT_EQ(pictures.Get(*bitmap, whole, QSize(8, 8), true).pixel(3, 3), qRgb(shade, 0, 0));
    }
}

TEST(Pictures, LookAtAlphaOnlyWhereItIsWanted)
{
    Pictures pictures;
    const Bitmap bitmap = MakeBitmap(8, qRgba(200, 100, 50, 0), Alpha::Straight);
    EXPECT_EQ(qAlpha(pictures.Get(*bitmap, whole, QSize(8, 8), true).pixel(2, 2)), 0);
    EXPECT_EQ(pictures.Get(*bitmap, whole, QSize(8, 8), false).pixel(2, 2), qRgb(200, 100, 50));
}

TEST(Pictures, OfAPartOutsideAreNone)
{
    Pictures pictures;
    const Bitmap bitmap = MakeBitmap(8, qRgb(1, 2, 3));
    for (const gui::Place& part : { gui::Place{ 0, 0, 9, 8 }, gui::Place{ -1, 0, 4, 4 }, gui::Place{ 2, 2, 0, 4 } })
        EXPECT_TRUE(pictures.Get(*bitmap, part, QSize(4, 4), true).isNull());
}

TEST(Pictures, StayWithinBounds)
{
    Pictures pictures;
    constexpr int side = 1000; // 4 MB each
    constexpr int count = 120;
    const Bitmap bitmap = MakeBitmap(8, qRgb(9, 9, 9));
    size_t most = 0;
    for (int picture = 0; picture < count; ++picture) {
        pictures.Get(*bitmap, whole, QSize(side, side + picture), true);
        most = std::max(most, pictures.Bytes());
    }
    EXPECT_LT(most, size_t(200) << 20);
    EXPECT_GT(pictures.Count(), 20u);
    EXPECT_LT(pictures.Count(), 60u);
}

TEST(Pictures, ThatAreTooLargeToBeKeptAreDrawnAsFarAsTheyAreSeen)
{
    Pictures pictures;
    desktop::Texts texts;
    const Bitmap bitmap = MakeBitmap(8, qRgb(40, 80, 120));
    EXPECT_TRUE(pictures.Get(*bitmap, whole, QSize(9000, 9000), false).isNull());
    QImage screen(50, 40, QImage::Format_RGB32);
    screen.fill(Qt::white);
    {
        QPainter painter(&screen);
        desktop::QtCanvas canvas(painter, pictures, texts);
        canvas.DrawBitmap(bitmap.get(), { -4000, -4000, 9000, 9000 }, whole, false);
        canvas.DrawBitmap(bitmap.get(), { 0, 0, 9000, 9000 }, { 4, 4, 9, 9 }, false); // a part outside
    }
    EXPECT_EQ(screen.pixel(0, 0), qRgb(40, 80, 120));
    EXPECT_EQ(screen.pixel(49, 39), qRgb(40, 80, 120));
    EXPECT_EQ(pictures.Bytes(), 0u);
}

TEST(Pictures, ThatAreSignsTakeTheColourOfTheTexts)
{
    Pictures pictures;
    const QColor ink(10, 200, 30);
    const Bitmap sign = MakeBitmap(32, qRgba(0, 0, 0, 255), Alpha::Straight);
    const Bitmap picture = MakeBitmap(32, qRgba(90, 0, 0, 255), Alpha::Straight);
    EXPECT_EQ(pictures.GetIcon(*sign, QSize(16, 16), ink).pixelColor(8, 8), ink);
    EXPECT_EQ(pictures.GetIcon(*picture, QSize(16, 16), ink).pixelColor(8, 8), QColor(90, 0, 0));
    EXPECT_EQ(pictures.GetIcon(*sign, QSize(20, 10), ink).size(), QSize(10, 10)) << "a shape is kept";
}

TEST(HostIcons, AreAllSignsWithSomethingToSee)
{
    desktop::RegisterHostIcons();
    for (int32_t number : { 300000250, 300000251, 300000252, 300000253, 300000254, 300000255, 300000256, 300000258, 300000259 }) {
        const VX3Bitmap* icon = core::FindIcon(number);
        ASSERT_TRUE(icon) << number;
        EXPECT_TRUE(desktop::IsSign(core::ViewOf(*icon))) << number;
    }
    core::TakeOutEverything();
}

QImage Drawn(Texts& texts, std::u16string_view text)
{
    QImage image(200, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    texts.Draw(painter, QPointF(4, 4), text);
    return image;
}

// The row of the lowest dark pixel.
int LowestInk(const QImage& image)
{
    for (int y = image.height() - 1; y >= 0; --y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < 128)
                return y;
    return -1;
}

TEST(Texts, AreLaidOutOnceAndMeasuredAsTheyAreDrawn)
{
    Texts texts;
    texts.SetFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    const QImage first = Drawn(texts, u"kitchen");
    EXPECT_EQ(Drawn(texts, u"kitchen"), first);
    EXPECT_EQ(texts.LayoutCount(), 1u);
    EXPECT_GT(texts.WidthOf(u"kitchen"), texts.WidthOf(u"kitche"));
    EXPECT_EQ(texts.WidthOf(u""), 0);
    texts.SetFont(QFont(QStringLiteral("DejaVu Sans"), 20));
    EXPECT_NE(Drawn(texts, u"kitchen"), first) << "another font, another picture";
}

// Another font that lends a letter is higher, which must not push the line down.
TEST(Texts, KeepTheirBaseLineWithLettersOfOtherFonts)
{
    Texts texts;
    texts.SetFont(QFont(QStringLiteral("Nimbus Sans"), 12));
    EXPECT_EQ(LowestInk(Drawn(texts, u"xHx")), LowestInk(Drawn(texts, u"xHx\u2318")));
}

TEST(Texts, OfEveryKindAreDrawn)
{
    Texts texts;
    texts.SetFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    for (const char16_t* text : { u"שלום (2).png", u"cafe\u0301", u"a\u2028b", u"\U0001F600.png" })
        EXPECT_GE(LowestInk(Drawn(texts, text)), 0);
    const char16_t half[] = { u'a', 0xDC80, u'b', 0 }; // a byte that is no UTF-8
    EXPECT_GT(texts.WidthOf(half), texts.WidthOf(u"ab"));
    EXPECT_GE(LowestInk(Drawn(texts, half)), 0);
}

TEST(Texts, InCellsAreAsWideAsTheyAreLong)
{
    Texts texts;
    texts.SetCells(7, 13);
    EXPECT_EQ(texts.WidthOf(u"iiMM"), 28);
    EXPECT_EQ(texts.Height(), 13);
    texts.SetCells(0, 0);
    EXPECT_LT(texts.WidthOf(u"iiii"), texts.WidthOf(u"MMMM"));
}

} // namespace
