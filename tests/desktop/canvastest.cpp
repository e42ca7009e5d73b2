// What is drawn, dot by dot, on screens of several scales.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "core/services.h"
#include "desktop/qtcanvas.h"

namespace {

using namespace vx3;
using desktop::QtCanvas;

constexpr int side = 24; // logical pixels of the picture

// A screen on which a drawing stands a little off its corner, as an area does in its window.
class CanvasTest : public ::testing::TestWithParam<double>
{
protected:
    CanvasTest()
        : image(qRound(side * GetParam()), qRound(side * GetParam()), QImage::Format_RGB32)
    {
        image.setDevicePixelRatio(GetParam());
        image.fill(Qt::white);
    }

    void Draw(const std::function<void(QtCanvas&)>& drawing)
    {
        QPainter painter(&image);
        painter.translate(3, 2);
        QtCanvas canvas(painter, pictures, texts);
        canvas.SetPen({ 255, 0, 0 });
        drawing(canvas);
    }
    // The dots that are not as they were.
    QRect Touched() const
    {
        QRect touched;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != qRgb(255, 255, 255))
                    touched |= QRect(x, y, 1, 1);
        return touched;
    }
    int Dots(double logical) const { return qRound(logical * GetParam()); }
    bool IsPure(const QRect& dots, QRgb colour) const
    {
        for (int y = dots.top(); y <= dots.bottom(); ++y)
            for (int x = dots.left(); x <= dots.right(); ++x)
                if (image.pixel(x, y) != colour)
                    return false;
        return true;
    }

    desktop::Pictures pictures;
    desktop::Texts texts;
    QImage image;
};

TEST_P(CanvasTest, FillsWholeDotsWithoutGapsBetweenNeighbours)
{
    Draw([](QtCanvas& canvas) {
        for (int x = 0; x < 5; ++x)
            canvas.Fill({ 1 + x, 1, 1, 4 });
    });
    const QRect filled(QPoint(Dots(4), Dots(3)), QPoint(Dots(9) - 1, Dots(7) - 1));
    EXPECT_EQ(Touched(), filled);
    EXPECT_TRUE(IsPure(filled, qRgb(255, 0, 0)));
}

TEST_P(CanvasTest, LinesHoldBothEndsAndAreAllAsThick)
{
    const int thickness = std::max(1, static_cast<int>(GetParam()));
    for (int y = 1; y < 6; ++y) {
        image.fill(Qt::white);
        Draw([y](QtCanvas& canvas) { canvas.Line({ 8, y }, { 2, y }); });
        EXPECT_EQ(Touched(), QRect(QPoint(Dots(5), Dots(y + 2)), QSize(Touched().width(), thickness)));
        EXPECT_GE(Touched().right(), Dots(12) - 2);
        EXPECT_TRUE(IsPure(Touched(), qRgb(255, 0, 0)));
    }
}

TEST_P(CanvasTest, ClipsAndLeavesTheClip)
{
    Draw([](QtCanvas& canvas) {
        canvas.SetClip({ 2, 2, 4, 4 });
        canvas.Fill({ 0, 0, 10, 10 });
    });
    EXPECT_EQ(Touched(), QRect(QPoint(Dots(5), Dots(4)), QPoint(Dots(9) - 1, Dots(8) - 1)));
    Draw([](QtCanvas& canvas) {
        canvas.SetClip({ 0, 0, 1, 1 });
        canvas.ClearClip();
        canvas.Fill({ 0, 0, 12, 12 });
    });
    EXPECT_EQ(Touched(), QRect(QPoint(Dots(3), Dots(2)), QPoint(Dots(15) - 1, Dots(14) - 1)));
}

// A bitmap that has as many pixels as there are dots is copied and not touched.
TEST_P(CanvasTest, BitmapsOfTheRightSizeStaySharp)
{
    const VX3BitmapServices& bitmaps = *core::BitmapServices();
    const int dots = Dots(8);
    VX3Bitmap* board = bitmaps.create(dots, dots, 24);
    for (int y = 0; y < dots; ++y)
        for (int x = 0; x < dots; ++x) {
            const uint8_t shade = (x + y) % 2 ? 250 : 5;
            const uint8_t pixel[] = { shade, shade, shade, 255 };
            bitmaps.writePixels(board, x, y, 1, pixel);
        }
    Draw([&](QtCanvas& canvas) {
        EXPECT_EQ(8 * canvas.Dots(), 100 * dots);
        canvas.DrawBitmap(board, { 5, 5, 8, 8 }, { 0, 0, dots, dots }, true);
    });
    EXPECT_EQ(Touched(), QRect(Dots(8), Dots(7), dots, dots));
    for (int y = 0; y < dots; ++y)
        for (int x = 0; x < dots; ++x)
            ASSERT_EQ(qRed(image.pixel(Dots(8) + x, Dots(7) + y)), (x + y) % 2 ? 250 : 5);
    bitmaps.free(board);
}

std::string TestName(const ::testing::TestParamInfo<double>& info)
{
    return "Scale" + std::to_string(static_cast<int>(info.param * 100));
}

INSTANTIATE_TEST_SUITE_P(Scales, CanvasTest, ::testing::Values(1.0, 1.25, 1.5, 1.75, 2.0, 3.0), TestName);

} // namespace
