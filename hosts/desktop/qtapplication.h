// The application of a program with windows of modules: it knows when no event is being
// handled any more.
//
// Main thread only. In a program with another application objects go as Qt lets them.
#pragma once

#include <vector>

#include <QApplication>
#include <QPointer>

namespace vx3::desktop {

class Application final : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

private:
    friend void DeleteAfterEvents(QObject& object);

    void LetGo();

    int depth = 0; // events on the stack
    std::vector<QPointer<QObject>> leaving;
};

// Deletes an object when the outermost event on the stack is over. Qt alone would do it in the
// next loop that is nested in that event, which may be the object's own.
void DeleteAfterEvents(QObject& object);

} // namespace vx3::desktop
