// The toolkit of the desk on Qt.
//
// One at a time, beside one QApplication and one desk. It owns what all windows share:
// caches of pictures and texts, colours, the clock, the pointer, what runs nested. What
// stands for a window or a gadget hangs at the window or gadget (qtwindow.h, qtgadget.h).
//
// While a script runs, time stands still until it is advanced, the pointer is that of the
// script, and texts and gadgets have the sizes that they have without a screen, so that
// what a script dumps is the same in every host.
#pragma once

#include <functional>
#include <unordered_map>

#include <QFont>
#include <QPointer>

#include "gui/desk.h"
#include "qtclock.h"
#include "qtcolours.h"
#include "qtnested.h"
#include "qtpictures.h"
#include "qtpopupedit.h"
#include "qttexts.h"

class QEventLoop;
class QKeyEvent;
class QMenu;
class QPainter;

namespace vx3::desktop {

// What the program around the windows of modules does for them; all may be empty.
struct WindowListener {
    std::function<void(Dialog& window, QWidget& frame)> opened;
    std::function<void(Dialog& window, QWidget& frame)> closing;
    std::function<bool(int32_t page)> openPreferences;
    std::function<bool(const QKeyEvent& key)> offerKey; // that neither gadget nor window wanted
    std::function<void()> deliver;                      // after a wake-up, besides Desk::Deliver
};

// What takes the user's place while a script runs.
class ScriptHost
{
public:
    virtual ~ScriptHost() = default;
    // Lets the script go on inside something nested. False, and a failure, if it has ended.
    virtual bool Step(const char* nested) = 0;
    virtual int32_t ChooseFrom(QMenu& menu, const std::vector<gui::MenuItem>& rows) = 0; // of a menu that is open
    virtual bool Ask(const std::string& question, std::string& answer) = 0;              // false: nothing was answered
    virtual void Show(const std::string& text) = 0;                                      // what a desktop would have been asked for
    virtual void Fail(const std::string& why) = 0;
    virtual std::string FolderOfScenario() = 0;
};

class QtToolkit final : public gui::Toolkit
{
public:
    QtToolkit();
    ~QtToolkit() override;

    void SetDesk(gui::Desk* wanted); // before the first window; none before the desk goes
    gui::Desk& GetDesk() { return *desk; }
    void SetListener(WindowListener wanted) { listener = std::move(wanted); }
    void BeginScript(ScriptHost& host);
    void EndScript();

    // For what stands for windows and gadgets.
    bool IsScripted() const { return script != nullptr; }
    ScriptHost* GetScript() const { return script; }
    // Goes on with the main loop until `loop` is left and `isOver` says so, by the steps of the script
    // if one runs. False: the script has ended meanwhile.
    bool WaitIn(QEventLoop& loop, const bool& isOver, const char* nested);
    Pictures& GetPictures() { return pictures; }
    Texts& GetTexts() { return texts; }
    PointerWatch& Pointer() { return pointer; }
    QtClock& Clock() { return clock; }
    PopupEdit& GetPopupEdit() { return popupEdit; }
    const gui::Metrics& OwnMetrics() const { return metrics; }
    QFont TextFont() const;
    int DragDistance() const;
    QSize SizeOfPicture(const gui::Picture& picture) const; // that it is shown in, in a button
    QColor FrameColour() const;
    void DrawFrame(QPainter& painter, const QRect& place, bool hasFocus) const;
    void DrawFocus(QPainter& painter, const QRect& place) const;
    bool IsDragOutside() const { return nested.IsDragOutside(); }
    int32_t DragCursor() const { return dragCursor; } // what a drop would do, as the drag that began here was last told
    void Remember(QWidget& widget, Gadget& gadget);
    void Forget(QWidget& widget);
    bool OfferKey(const QKeyEvent& key) { return listener.offerKey && listener.offerKey(key); }

    // Windows.
    void OpenWindow(Dialog& window) override;
    void CloseWindow(Dialog& window) override;
    void ShowTitle(Dialog& window) override;
    void RaiseWindow(Dialog& window) override;
    void ResizeWindow(Dialog& window, Size inside) override;
    void ShowLeastSize(Dialog& window) override;
    void ShowMenu(Dialog& window) override;
    Point InsideCorner(Dialog& window) override;
    Dialog* WindowAt(Point screen) override;
    void RunModal(Dialog& window) override;
    void EndModal(Dialog& window) override;

    // Gadgets.
    void MakeGadget(Gadget& gadget) override;
    void DropGadget(Gadget& gadget) override;
    Size NeedOf(const Gadget& gadget) override;
    gui::Metrics GetMetrics() override { return metrics; }
    void PlaceGadget(Gadget& gadget, bool isVisible) override;
    void ShowGadget(Gadget& gadget, gui::Change change) override;
    void SelectText(Gadget& gadget, int from, int count) override;
    void FocusGadget(Gadget& gadget) override;

    // Drawing and text.
    void Redraw(Gadget& gadget, const Place& part) override;
    int TextWidth(std::u16string_view text) override { return texts.WidthOf(text); }
    int FontHeight() override { return texts.Height(); }
    Colour ColourOf(int32_t number) override;

    // Time.
    int64_t Now() override { return clock.Now(); }
    void WakeAt(int64_t milliseconds) override { clock.WakeAt(milliseconds); }
    void WakeUp() override { clock.WakeUp(); }

    // Nested operations.
    gui::Band TrackRubberBand(Gadget& area, Point start) override;
    void RunDrag(Gadget& area) override;
    void ShowDragCursor(int32_t cursor) override;
    int32_t RunPopup(Dialog& window, const std::vector<gui::MenuItem>& menu, Point screen) override;
    void CancelNested(Dialog& window) override;
    void OpenPopupEdit(Dialog& window, const Place& screen, const std::u16string& text) override;
    void ClosePopupEdit() override;

    // Pointer, keys, boxes.
    void SetCursor(int32_t cursor) override;
    uint32_t Qualifiers() override { return pointer.Qualifiers(); }
    uint32_t PointerState(Point& screen) override;
    void ShowBox(int32_t kind, const std::u16string& text) override;
    bool Ask(const std::u16string& text) override;
    bool Choose(const gui::ChooseRequest& request, std::string& chosen) override;
    bool Reveal(const std::string& path) override;
    bool OpenWithSystem(const std::string& path) override;
    bool OpenPreferences(int32_t page) override;

private:
    class LookWatch;

    void ReadLook(); // font, colours and distances of the desktop
    void LookChanged();
    void FocusChanged(QWidget* from, QWidget* to);
    Gadget* GadgetOf(QWidget* widget) const;
    Dialog* WindowOfWidget(QWidget* widget) const;

    gui::Desk* desk = nullptr;
    WindowListener listener;
    ScriptHost* script = nullptr;
    Pictures pictures;
    Texts texts;
    Colours colours;
    gui::Metrics metrics;
    PointerWatch pointer;
    QtClock clock;
    Nested nested;
    PopupEdit popupEdit;
    std::unique_ptr<LookWatch> lookWatch;
    std::vector<Dialog*> windows; // in the order of opening
    std::unordered_map<const QWidget*, Gadget*> gadgets;
    QObject connections; // whose end ends them
    bool hasCursor = false;
    int32_t dragCursor = VX3_CURSOR_REFUSED;
    int placing = 0; // gadgets on the stack that get their place
};

} // namespace vx3::desktop
