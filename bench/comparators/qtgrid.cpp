// A grid of pictures as a program on Qt shows it.
//
//   qtgrid list COUNT SIDE      QListView in icon mode over a model in memory, pictures at hand
//   qtgrid folder FOLDER SIDE   the same over QFileSystemModel, from setting the root to the first frame
//   qtgrid direct COUNT SIDE    no view: the same pictures and captions painted with QPainter

#include <QAbstractFileIconProvider>
#include <QAbstractListModel>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileSystemModel>
#include <QIcon>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QStaticText>
#include <cstring>
#include <vector>

#include "gridscene.h"
#include "measure.h"

namespace {

using namespace vx3::bench;

std::vector<QPixmap> Pictures(int side)
{
    std::vector<QPixmap> pictures;
    for (int i = 0; i < pictureCount; i++) {
        QImage image(side, side * 3 / 4, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); y++)
            for (int x = 0; x < image.width(); x++) {
                const PictureColour colour = ColourAt(i, x, y);
                image.setPixel(x, y, qRgb(colour.red, colour.green, colour.blue));
            }
        pictures.push_back(QPixmap::fromImage(image));
    }
    return pictures;
}

class Model : public QAbstractListModel
{
public:
    Model(int wanted, int side)
        : count(wanted)
    {
        for (const QPixmap& picture : Pictures(side))
            icons.emplace_back(picture);
    }
    int rowCount(const QModelIndex&) const override { return count; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::DisplayRole)
            return QString::fromStdString(CaptionOf(index.row()));
        if (role == Qt::DecorationRole)
            return icons[size_t(index.row()) % icons.size()];
        return {};
    }

private:
    int count;
    std::vector<QIcon> icons;
};

// A median over the frames of one kind.
class Frames
{
public:
    void Add(double start) { times.push_back((NowSeconds() - start) * 1e3); }
    void Print(const char* name, size_t count) { PrintCaseOf(name, count, MedianOf(times.data(), times.size()), "ms"); }

private:
    std::vector<double> times;
};

void SetUp(QListView& view, int side)
{
    view.setViewMode(QListView::IconMode);
    view.setIconSize({ side, side });
    view.setGridSize({ side + 4, side + 4 + view.fontMetrics().height() });
    view.setUniformItemSizes(true);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.resize(gridWidth, gridHeight);
}

void ShowFirstFrame(QListView& view)
{
    view.show();
    QApplication::processEvents();
    view.viewport()->repaint();
}

void MeasureFrames(QListView& view, size_t count)
{
    Frames full, scroll;
    QScrollBar* bar = view.verticalScrollBar();
    for (int i = 0; i < frameCount; i++) {
        bar->setValue(bar->maximum() / frameCount * i);
        QApplication::processEvents();
        const double start = NowSeconds();
        view.viewport()->repaint();
        full.Add(start);
    }
    bar->setValue(0);
    QApplication::processEvents();
    for (int i = 0; i < frameCount; i++) {
        const double start = NowSeconds();
        bar->setValue(bar->value() + scrollStep); // The view moves what it has and paints what appears.
        QApplication::processEvents();
        scroll.Add(start);
    }
    full.Print("full_frame_ms", count);
    scroll.Print("scroll_frame_ms", count);
}

void MeasureList(int count, int side)
{
    Model model(count, side);
    QListView view;
    SetUp(view, side);
    view.setModel(&model);
    ShowFirstFrame(view);
    MeasureFrames(view, size_t(count));
    view.setModel(nullptr);
}

// One icon for every kind of file: looking for themes is not what is measured.
class OneIcon : public QAbstractFileIconProvider
{
public:
    OneIcon()
        : one(Pictures(48).front())
    {
    }
    QIcon icon(IconType) const override { return one; }
    QIcon icon(const QFileInfo&) const override { return one; }
    QString type(const QFileInfo&) const override { return QStringLiteral("File"); }

private:
    QIcon one;
};

void MeasureFolder(const QString& path, int side)
{
    OneIcon icons;
    QFileSystemModel model;
    QListView view;
    QEventLoop loop;
    model.setOptions(QFileSystemModel::DontUseCustomDirectoryIcons | QFileSystemModel::DontWatchForChanges);
    model.setIconProvider(&icons);
    SetUp(view, side);
    view.show();
    QApplication::processEvents();
    QObject::connect(&model, &QFileSystemModel::directoryLoaded, &loop, [&](const QString& loaded) {
        if (loaded == path)
            loop.quit();
    });
    const double start = NowSeconds();
    const QModelIndex root = model.setRootPath(path);
    view.setModel(&model);
    view.setRootIndex(root);
    loop.exec();
    QApplication::processEvents();
    view.viewport()->repaint();
    PrintCaseOf("show_ms", size_t(model.rowCount(root)), (NowSeconds() - start) * 1e3, "ms");
    view.setModel(nullptr);
}

std::vector<QStaticText> Captions(const QFontMetrics& metrics, const QFont& font, int limit)
{
    std::vector<QStaticText> captions;
    for (int i = 0; i < captionCount; i++) {
        QString text = QString::fromStdString(CaptionOf(i));
        while (text.size() > 2 && metrics.horizontalAdvance(text) > limit)
            text = text.left(text.size() - 3) + QStringLiteral("..");
        QStaticText made(text);
        made.setTextFormat(Qt::PlainText);
        made.prepare({}, font);
        captions.push_back(made);
    }
    return captions;
}

void MeasureDirect(int count, int side)
{
    const QFont font = QApplication::font();
    const QFontMetrics metrics(font);
    const int cellWidth = side + 2, cellHeight = side + 2 + metrics.height(), columns = gridWidth / cellWidth;
    const std::vector<QPixmap> pictures = Pictures(side - 4);
    const std::vector<QStaticText> captions = Captions(metrics, font, side - 4);
    QImage target(gridWidth, gridHeight, QImage::Format_RGB32);
    Frames frames;
    for (int frame = 0; frame < frameCount; frame++) {
        const double start = NowSeconds();
        const int top = frame * scrollStep;
        QPainter painter(&target);
        painter.fillRect(target.rect(), Qt::white);
        painter.setPen(Qt::black);
        for (int index = top / cellHeight * columns; index < count && index / columns * cellHeight < top + gridHeight; index++) {
            const int x = index % columns * cellWidth, y = index / columns * cellHeight - top;
            painter.drawPixmap(x + 3, y + 3 + side / 8, pictures[size_t(index) % pictures.size()]);
            painter.drawStaticText(x + 1, y + side - 1, captions[size_t(index) % captions.size()]);
        }
        painter.end();
        frames.Add(start);
    }
    frames.Print("direct_frame_ms", size_t(count));
}

} // namespace

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    if (count != 4) {
        std::fprintf(stderr, "usage: qtgrid list|direct COUNT SIDE\n       qtgrid folder FOLDER SIDE\n");
        return 2;
    }
    const int side = std::atoi(arguments[3]);
    if (std::strcmp(arguments[1], "list") == 0)
        MeasureList(std::atoi(arguments[2]), side);
    else if (std::strcmp(arguments[1], "direct") == 0)
        MeasureDirect(std::atoi(arguments[2]), side);
    else
        MeasureFolder(QDir(QString::fromLocal8Bit(arguments[2])).absolutePath(), side);
}
