// Another program on the screen: a window for files to be dropped on. Prints their paths.
#include <cstdio>

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace {

class DropTarget : public QWidget
{
public:
    DropTarget()
    {
        setWindowTitle(QStringLiteral("drop target"));
        setAcceptDrops(true);
        setGeometry(20, 20, 160, 160);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { event->setAccepted(event->mimeData()->hasUrls()); }
    void dropEvent(QDropEvent* event) override
    {
        for (const QUrl& url : event->mimeData()->urls())
            std::printf("%s\n", qPrintable(url.toLocalFile()));
        std::fflush(stdout);
        event->acceptProposedAction();
    }
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    DropTarget target;
    target.show();
    return QApplication::exec();
}
