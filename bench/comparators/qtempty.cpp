// A window of Qt with nothing in it, until it is painted: what any program of this toolkit costs at its start.

#include <QApplication>
#include <QPaintEvent>
#include <QWidget>

namespace {

class Empty : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override { QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection); }
};

} // namespace

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    Empty window;
    window.resize(1280, 800);
    window.show();
    return QApplication::exec();
}
