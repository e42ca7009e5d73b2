// The gallery in a window that a user has before him: nested loops run by themselves, and the
// time is that of the machine.
#pragma once

#include <chrono>

#include <QApplication>
#include <QTimer>

#include "desktop/qtgadget.h"
#include "qtfixture.h"

namespace vx3::tests {

class GesturesTest : public QtTest
{
protected:
    enum Page { Fields, Areas, Tree, Dialogs };

    GesturesTest()
    {
        EXPECT_TRUE(gallery->Open());
        LetGo();
    }

    // Goes on with the main loop for as long as something waits.
    static void LetGo()
    {
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    static bool WaitFor(const std::function<bool()>& isThere)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!isThere() && std::chrono::steady_clock::now() < end)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        return isThere();
    }
    // While a nested loop runs in the call that follows.
    static void Later(const std::function<void()>& deed) { QTimer::singleShot(30, qApp, deed); }

    gui::Dialog& Window() { return *desk.Windows().front(); }
    gui::Gadget& Find(int32_t id) { return *desk.FindGadget(Window(), id); }
    QWidget& WidgetOf(int32_t id) { return *desktop::NativeOf(Find(id))->FocusWidget(); }
    void ShowPage(Page page)
    {
        desk.UserSetValue(Find(idTabs), page);
        LetGo();
        Heard();
    }
    std::string Heard() { return gallery->Dump("list"); }
};

} // namespace vx3::tests
