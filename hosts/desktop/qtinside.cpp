// The inside of a window: what its gadgets leave over.
#include <QApplication>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>

#include "core/values.h"
#include "qtfilenames.h"
#include "qtgadget.h"
#include "qttoolkit.h"
#include "qtwindow.h"

namespace vx3::desktop {

namespace {

// What can have the focus, in the order of the layout.
std::vector<QWidget*> FocusOrder(Dialog& window)
{
    std::vector<QWidget*> order;
    if (!window.root)
        return order;
    VisitGadgets(*window.root, [&order](Gadget& gadget) {
        QWidget* widget = gadget.native ? NativeOf(gadget)->FocusWidget() : nullptr;
        if (widget && widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus))
            order.push_back(widget);
    });
    return order;
}

// Whatever the module makes of it: a program that hears of a move deletes its file.
void AcceptCopy(QDropEvent& event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

bool HasFocusInside(const QWidget& widget)
{
    const QWidget* focused = QApplication::focusWidget();
    return focused && (focused == &widget || widget.isAncestorOf(focused));
}

} // namespace

WindowInside::WindowInside(QWidget* parent, QtToolkit& ownToolkit, Dialog& ownWindow)
    : QWidget(parent)
    , toolkit(ownToolkit)
    , dialog(&ownWindow)
{
    setAcceptDrops(true);
    setFocus(); // no gadget has the focus before someone gives it to one
}

void WindowInside::resizeEvent(QResizeEvent*)
{
    if (dialog)
        toolkit.GetDesk().UserResized(*dialog, ToSize(size()));
}

void WindowInside::keyPressEvent(QKeyEvent* event)
{
    if (!dialog || toolkit.GetDesk().FeedKey(*dialog, InputOf(*event)))
        return;
    if (dialog && dialog->isModal && event->key() == Qt::Key_Escape)
        toolkit.GetDesk().UserClosed(*dialog);
    else
        event->setAccepted(toolkit.OfferKey(*event));
}

bool WindowInside::focusNextPrevChild(bool isNext)
{
    const std::vector<QWidget*> order = dialog ? FocusOrder(*dialog) : std::vector<QWidget*>();
    if (order.empty())
        return QWidget::focusNextPrevChild(isNext);
    const size_t count = order.size();
    size_t at = isNext ? count - 1 : 0; // as if the focus stood behind the last, or on the first
    for (size_t index = 0; index < count; ++index)
        if (HasFocusInside(*order[index]))
            at = index;
    order[(at + (isNext ? 1 : count - 1)) % count]->setFocus(isNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void WindowInside::dragEnterEvent(QDragEnterEvent* event)
{
    const bool canCopy = event->possibleActions() & Qt::CopyAction;
    dragged = canCopy ? PathsOf(*event->mimeData()) : std::vector<std::string>();
    isWelcome = false;
    if (!dragged.empty())
        AcceptCopy(*event); // moves follow, which say it for the place
}

void WindowInside::MoveDrag(QDropEvent& event)
{
    draggedTo = ToPoint(mapToGlobal(event.position().toPoint()));
    dragQualifiers = QualifiersOf(event.modifiers());
}

void WindowInside::dragMoveEvent(QDragMoveEvent* event)
{
    if (!dialog || dragged.empty())
        return event->ignore();
    MoveDrag(*event);
    const int32_t cursor = CursorOfDrag();
    isWelcome = cursor == VX3_CURSOR_COPY || cursor == VX3_CURSOR_ACCEPT;
    AcceptCopy(*event);
    event->setAccepted(isWelcome);
}

int32_t WindowInside::CursorOfDrag()
{
    if (toolkit.IsDragOutside())
        return toolkit.GetDesk().MoveDrag(draggedTo, dragQualifiers) ? toolkit.DragCursor() : VX3_CURSOR_REFUSED;
    core::Path path{ std::string_view(dragged.front()) };
    return toolkit.GetDesk().MoveForeignDrag(draggedTo, dragQualifiers, VX3_DRAG_FILE, path.Get());
}

void WindowInside::dragLeaveEvent(QDragLeaveEvent*)
{
    EndDrag();
}

void WindowInside::EndDrag()
{
    if (!dialog || dragged.empty())
        return;
    core::Path path{ std::string_view(std::exchange(dragged, {}).front()) };
    if (toolkit.IsDragOutside())
        toolkit.GetDesk().MoveDrag(ToPoint(toolkit.Pointer().Position()), dragQualifiers);
    else
        toolkit.GetDesk().EndForeignDrag(draggedTo, dragQualifiers, VX3_DRAG_FILE, path.Get(), false);
}

void WindowInside::dropEvent(QDropEvent* event)
{
    if (!isWelcome) {
        event->ignore();
        return EndDrag();
    }
    MoveDrag(*event);
    AcceptCopy(*event);
    if (toolkit.IsDragOutside()) {
        dragged.clear();
        return toolkit.GetDesk().EndDrag(draggedTo, dragQualifiers, true);
    }
    for (const std::string& file : std::exchange(dragged, {})) {
        core::Path path{ std::string_view(file) };
        if (dialog) // a drop may close it
            toolkit.GetDesk().EndForeignDrag(draggedTo, dragQualifiers, VX3_DRAG_FILE, path.Get(), true);
    }
}

} // namespace vx3::desktop
