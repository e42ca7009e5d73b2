#include "qtgadget.h"

#include <QApplication>

#include "qtapplication.h"
#include "qttoolkit.h"
#include "qtwindow.h"

namespace vx3::desktop {

Gadget* EnclosingOf(const Gadget& gadget)
{
    return gadget.parent ? gadget.parent : gadget.dialog->holder;
}

Gadget* ScrollGroupOf(const Gadget& gadget)
{
    Gadget* around = EnclosingOf(gadget);
    while (around && around->shape.kind != VX3_GADGET_SCROLL)
        around = EnclosingOf(*around);
    return around;
}

bool IsEnabledWithAll(const Gadget& gadget)
{
    for (const Gadget* at = &gadget; at; at = EnclosingOf(*at))
        if (!at->isEnabled)
            return false;
    return true;
}

QtGadget* NativeOf(Gadget& gadget)
{
    return static_cast<QtGadget*>(gadget.native.get());
}

QtGadget::QtGadget(QtToolkit& ownToolkit, Gadget& ownGadget)
    : toolkit(ownToolkit)
    , gadget(ownGadget)
{
}

QtGadget::~QtGadget()
{
    if (!widget)
        return;
    toolkit.Forget(*widget);
    widget->disconnect();
    for (QWidget* inner : widget->findChildren<QWidget*>())
        inner->disconnect();
    ShowWidget(*widget, false);
    DeleteAfterEvents(*widget);
}

void QtGadget::Own(QWidget* made)
{
    widget = made;
    toolkit.Remember(*made, gadget);
    Show(gui::Change::Everything);
}

QWidget* QtGadget::Around() const
{
    Gadget* scroll = ScrollGroupOf(gadget);
    return scroll && scroll->native ? NativeOf(*scroll)->Inside() : WindowOf(gadget.dialog->Window())->Inside();
}

Size QtGadget::Need() const
{
    return widget ? ToSize(widget->sizeHint()) : Size();
}

void QtGadget::Show(gui::Change change)
{
    const bool isEverything = change == gui::Change::Everything;
    if (widget && (isEverything || change == gui::Change::Enabled))
        widget->setEnabled(IsEnabledWithAll(gadget));
    if (widget && (isEverything || change == gui::Change::Tip)) {
        widget->setToolTip(PlainTip(ToQt(gadget.tip)));
        FocusWidget()->setAccessibleName(AccessibleName());
    }
}

// What is read out where no text is seen; empty: the widget knows it.
QString QtGadget::AccessibleName() const
{
    const int32_t kind = gadget.shape.kind;
    if (!gadget.tip.empty() && (gadget.text.empty() || kind == VX3_GADGET_BITMAP_BUTTON))
        return PlainTip(ToQt(gadget.tip));
    if (kind == VX3_GADGET_AREA || kind == VX3_GADGET_TREE)
        return ToQt(gadget.dialog->Window().title);
    return kind == VX3_GADGET_BITMAP_BUTTON ? Text() : QString();
}

void QtGadget::SelectText(int, int)
{
    // Only fields have a text that can be selected.
}

bool QtGadget::EnterText(const std::u16string&)
{
    return false;
}

void QtGadget::Redraw(const Place&)
{
    if (widget)
        widget->update();
}

void QtGadget::PlaceWidget(bool wantsVisible)
{
    isVisible = wantsVisible;
    Point corner = gadget.place.Corner();
    if (const Gadget* scroll = ScrollGroupOf(gadget))
        corner = corner - scroll->place.Corner() - scroll->scrolled;
    PlaceAt(QRect(ToQt(corner), ToQt(gadget.place.Extent())));
}

void QtGadget::PlaceAt(const QRect& place)
{
    if (!widget)
        return;
    widget->setGeometry(place);
    ShowWidget(*widget, isVisible);
}

// What has the focus and is hidden leaves it to the window, and not to whatever stands next.
void QtGadget::ShowWidget(QWidget& shown, bool wanted)
{
    const QWidget* focused = QApplication::focusWidget();
    if (!wanted && focused && (focused == &shown || shown.isAncestorOf(focused)))
        WindowOf(gadget.dialog->Window())->Inside()->setFocus();
    shown.setVisible(wanted);
}

std::unique_ptr<QtGadget> MakeNative(QtToolkit& toolkit, Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_TEXT:
    case VX3_GADGET_PROGRESS:
    case VX3_GADGET_SEPARATOR: return MakeLabel(toolkit, gadget);
    case VX3_GADGET_EDIT:
    case VX3_GADGET_MULTILINE:
    case VX3_GADGET_NUMBER:
    case VX3_GADGET_DATE: return MakeField(toolkit, gadget);
    case VX3_GADGET_CHECK:
    case VX3_GADGET_BUTTON:
    case VX3_GADGET_BITMAP_BUTTON: return MakeButton(toolkit, gadget);
    case VX3_GADGET_COMBO:
    case VX3_GADGET_SLIDER: return MakeChoice(toolkit, gadget);
    case VX3_GADGET_GROUP:
    case VX3_GADGET_TABS:
    case VX3_GADGET_SPLITTER: return MakeGroup(toolkit, gadget);
    case VX3_GADGET_SCROLL: return MakeScroll(toolkit, gadget);
    case VX3_GADGET_AREA:
    case VX3_GADGET_TREE: return MakeSurface(toolkit, gadget);
    default: return std::make_unique<QtGadget>(toolkit, gadget);
    }
}

} // namespace vx3::desktop
