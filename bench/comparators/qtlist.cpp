// One folder as a program on Qt lists it.
//
//   qtlist dir FOLDER       QDir::entryInfoList in the order of names
//   qtlist model FOLDER     QFileSystemModel until the folder is loaded, one icon for all

#include <QAbstractFileIconProvider>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFileSystemModel>
#include <QPixmap>
#include <cstring>

#include "measure.h"

namespace {

constexpr size_t repeats = 3;

class OneIcon : public QAbstractFileIconProvider
{
public:
    OneIcon()
    {
        QPixmap pixels(16, 16);
        pixels.fill(Qt::gray);
        one = pixels;
    }
    QIcon icon(IconType) const override { return one; }
    QIcon icon(const QFileInfo&) const override { return one; }
    QString type(const QFileInfo&) const override { return QStringLiteral("File"); }

private:
    QIcon one;
};

void MeasureDirectory(const QString& path)
{
    double times[repeats];
    qint64 sum = 0;
    qsizetype count = 0;
    for (double& each : times) {
        double start = NowSeconds();
        QFileInfoList list =
            QDir(path).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::DirsFirst | QDir::Name | QDir::IgnoreCase);
        for (const QFileInfo& entry : list)
            sum += entry.size() + entry.lastModified().toSecsSinceEpoch() + entry.isDir();
        each = NowSeconds() - start;
        count = list.size();
    }
    PrintCaseOf("list_sorted_ms", size_t(count), MedianOf(times, repeats) * 1e3, "ms");
    if (sum == 1)
        std::fprintf(stderr, "no sizes\n");
}

void MeasureModel(const QString& path)
{
    OneIcon icons;
    double times[repeats];
    double bytes = 0, before = PrivateBytes();
    int count = 0;
    for (double& each : times) {
        QFileSystemModel model;
        model.setOptions(QFileSystemModel::DontUseCustomDirectoryIcons | QFileSystemModel::DontWatchForChanges);
        model.setIconProvider(&icons);
        QEventLoop loop;
        QObject::connect(&model, &QFileSystemModel::directoryLoaded, &loop, [&](const QString& loaded) {
            if (loaded == path)
                loop.quit();
        });
        double start = NowSeconds();
        QModelIndex root = model.setRootPath(path);
        loop.exec();
        each = NowSeconds() - start;
        count = model.rowCount(root);
        if (&each == times)
            bytes = PrivateBytes() - before;
    }
    PrintCaseOf("list_sorted_ms", size_t(count), MedianOf(times, repeats) * 1e3, "ms");
    PrintCaseOf("bytes_per_entry", size_t(count), bytes / (count ? count : 1), "B");
}

} // namespace

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    if (count != 3) {
        std::fprintf(stderr, "usage: qtlist dir|model FOLDER\n");
        return 2;
    }
    QString path = QDir(QString::fromLocal8Bit(arguments[2])).absolutePath();
    if (std::strcmp(arguments[1], "model") == 0)
        MeasureModel(path);
    else
        MeasureDirectory(path);
}
