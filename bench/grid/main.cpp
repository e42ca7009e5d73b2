// vx3-gridbench frames COUNT ZOOM | show FOLDER: a window of the browser on Qt, as the studio has it.
//
//   frames COUNT PERCENT   nodes with pictures at hand, at a zoom: painted whole, and scrolled
//   show FOLDER            from going to a folder that nobody has listed to its first frame

#include <QApplication>
#include <QWidget>
#include <cstring>
#include <vector>

#include "core/values.h"
#include "desktop/qtgadget.h"
#include "desktop/qttoolkit.h"
#include "measure.h"
#include "model/contenttree.h"
#include "nodes/categorynode.h"
#include "picturenode.h"
#include "scene.h"
#include "ui/browserdialog.h"
#include "ui/windowregistry.h"

namespace {

using namespace vx3::bench;
using namespace vx3::desktop;

constexpr int32_t areaGadget = 10122;
constexpr int32_t scrollGadget = 10120;

// Toolkit and desk, in the order in which they come and go.
struct Windows {
    Windows()
        : desk(toolkit)
    {
        toolkit.SetDesk(&desk);
    }
    ~Windows() { toolkit.SetDesk(nullptr); }

    QtToolkit toolkit;
    vx3::gui::Desk desk;
};

// The one window of the browser, with its area as large as the grid is to be.
class GridWindow
{
public:
    explicit GridWindow(Windows& windows)
        : desk(windows.desk)
    {
        browser::OpenBrowserWindow(browser::ContentRef());
        Dialog& window = *desk.Windows().front();
        const Gadget& shown = *desk.FindGadget(window, scrollGadget);
        windows.toolkit.ResizeWindow(
            window, { window.size.width + gridWidth - shown.place.width, window.size.height + gridHeight - shown.place.height });
        Turn();
    }

    browser::BrowserDialog& Browser() { return *browser::FindBrowserWindow(0); }
    Gadget& Find(int32_t id) { return *desk.FindGadget(*desk.Windows().front(), id); }
    QWidget& Surface() { return *NativeOf(Find(areaGadget))->Widget(); }

    static void Turn()
    {
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }

private:
    vx3::gui::Desk& desk;
};

class Frames
{
public:
    void Add(double start) { times.push_back((NowSeconds() - start) * 1e3); }
    void Print(const char* name, size_t count) { PrintCaseOf(name, count, MedianOf(times.data(), times.size()), "ms"); }

private:
    std::vector<double> times;
};

browser::HostBitmap MakePicture(int number, int side)
{
    browser::HostBitmap picture = browser::HostBitmap::Create(side, side * 3 / 4);
    std::vector<uint8_t> row(size_t(side) * 4);
    for (int y = 0; y < side * 3 / 4; y++) {
        for (int x = 0; x < side; x++) {
            const PictureColour colour = ColourAt(number, x, y);
            const uint8_t pixel[] = { colour.red, colour.green, colour.blue, 255 };
            std::memcpy(&row[size_t(x) * 4], pixel, sizeof pixel);
        }
        browser::host->bitmap->writePixels(picture.Get(), 0, y, side, row.data());
    }
    return picture;
}

void Fill(browser::BrowserContentNode& folder, int count, const std::vector<browser::HostBitmap>& pictures)
{
    for (int i = 0; i < count; i++) {
        vx3::core::Text name(CaptionOf(i));
        VX3Bitmap* picture = pictures[size_t(i) % pictures.size()].Get();
        browser::ContentRef node(browser::Make<PictureNode>()(browser::String::Of(name.Get()), picture));
        if (!node || !node->AttachTo(folder))
            std::exit(1);
    }
}

void MeasureFrames(Windows& windows, int count, int percent)
{
    constexpr int stored = 256; // pixels; what a preview is kept in
    std::vector<browser::HostBitmap> pictures;
    for (int i = 0; i < pictureCount; i++)
        pictures.push_back(MakePicture(i, stored));
    browser::ContentRef folder(browser::contentTree.indexedRoots[size_t(browser::RootIndex::Favourites)]);
    Fill(*folder, count, pictures);
    GridWindow window(windows);
    window.Browser().Pane().SetZoom(percent / 100.0);
    window.Browser().GoTo(folder);
    window.Turn();
    Gadget& scroll = window.Find(scrollGadget);
    Frames full, scrolled;
    const int most = scroll.content.height - scroll.place.height;
    for (int i = 0; i < frameCount; i++) {
        windows.desk.UserScrolled(scroll, { 0, most / frameCount * i });
        window.Turn();
        const double start = NowSeconds();
        window.Surface().repaint();
        full.Add(start);
    }
    windows.desk.UserScrolled(scroll, { 0, 0 });
    window.Turn();
    for (int i = 0; i < frameCount; i++) {
        const double start = NowSeconds();
        windows.desk.UserScrolled(scroll, { 0, scroll.scrolled.y + scrollStep });
        window.Turn();
        scrolled.Add(start);
    }
    full.Print("full_frame_ms", size_t(count));
    scrolled.Print("scroll_frame_ms", size_t(count));
}

void MeasureShow(Windows& windows, Scene& scene, const char* folder)
{
    GridWindow window(windows);
    window.Turn();
    browser::ContentRef node = scene.AddFolder(folder);
    const double start = NowSeconds();
    window.Browser().GoTo(node);
    window.Turn();
    window.Surface().repaint();
    const double taken = NowSeconds() - start;
    PrintCaseOf("show_ms", CountChildren(node), taken * 1e3, "ms");
}

} // namespace

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    const bool wantsFrames = count == 4 && std::strcmp(arguments[1], "frames") == 0;
    const bool wantsShow = count == 3 && std::strcmp(arguments[1], "show") == 0;
    if (!wantsFrames && !wantsShow) {
        std::fprintf(stderr, "usage: vx3-gridbench frames COUNT PERCENT | show FOLDER\n");
        return 2;
    }
    Windows windows;
    Scene scene(vx3::gui::Desk::Services());
    if (wantsFrames)
        MeasureFrames(windows, std::atoi(arguments[2]), std::atoi(arguments[3]));
    else
        MeasureShow(windows, scene, arguments[2]);
}
