#include "qtapplication.h"

#include <utility>

#include <QThread>

namespace vx3::desktop {

bool Application::notify(QObject* receiver, QEvent* event)
{
    if (QThread::currentThread() != thread()) // of Qt's own threads
        return QApplication::notify(receiver, event);
    ++depth;
    const bool isTaken = QApplication::notify(receiver, event);
    if (--depth == 0 && !leaving.empty())
        LetGo();
    return isTaken;
}

// The window system may still look at a window after its event, so it goes in a turn of its own.
void Application::LetGo()
{
    for (const QPointer<QObject>& object : std::exchange(leaving, {}))
        if (object)
            object->deleteLater();
}

void DeleteAfterEvents(QObject& object)
{
    auto* application = dynamic_cast<Application*>(QCoreApplication::instance());
    if (application && application->depth > 0)
        application->leaving.emplace_back(&object);
    else
        object.deleteLater();
}

} // namespace vx3::desktop
