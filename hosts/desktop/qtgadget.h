// What stands for one gadget on the screen.
//
// Widgets lie flat: each is a child of the inside of its window, or of the nearest scroll
// group around it. Groups without a frame have none. Where they stand is told by the layout
// (gui/layout.h). A widget is hidden at once when its gadget goes, and deleted when the
// outermost event is over in which that happens, since it may be the widget's own. Main thread
// only.
#pragma once

#include <memory>

#include <QPointer>
#include <QWidget>

#include "gui/toolkit.h"
#include "qtcodes.h"

namespace vx3::desktop {

class QtToolkit;

class QtGadget : public gui::Native
{
public:
    QtGadget(QtToolkit& ownToolkit, Gadget& ownGadget);
    ~QtGadget() override;
    QtGadget(const QtGadget&) = delete;
    QtGadget& operator=(const QtGadget&) = delete;

    virtual Size Need() const; // of its contents
    virtual void Show(gui::Change change);
    virtual void SelectText(int from, int count);
    virtual bool EnterText(const std::u16string& text); // as the user would; false if that cannot be
    virtual void Redraw(const Place& part);
    virtual QWidget* Inside() { return nullptr; } // a scroll group: where its contents are
    virtual QWidget* FocusWidget() { return widget; }

    // At the place of the gadget, as far as the scroll groups around it show it.
    void PlaceWidget(bool wantsVisible);
    void PlaceWidgetAgain() { PlaceWidget(isVisible); }

    QWidget* Widget() const { return widget; }

protected:
    // `place` is where the whole of it would stand in the parent of its widget.
    virtual void PlaceAt(const QRect& place);
    void Own(QWidget* made); // not null; once
    void ShowWidget(QWidget& shown, bool wanted);
    QWidget* Around() const; // the parent of its widget
    QString Text() const { return ToQt(gadget.text); }
    QString AccessibleName() const;

    QtToolkit& toolkit;
    Gadget& gadget;
    bool isVisible = false;

private:
    QPointer<QWidget> widget;
};

// The gadget around another one, also around the dialog that it stands in; none for the
// root of a window.
Gadget* EnclosingOf(const Gadget& gadget);
Gadget* ScrollGroupOf(const Gadget& gadget); // the nearest around it, or none
bool IsEnabledWithAll(const Gadget& gadget); // and all around it
QtGadget* NativeOf(Gadget& gadget);

// Calls `visit` for a gadget and all in it, in the order of the layout, with the dialogs inside.
template <class Visit>
void VisitGadgets(Gadget& gadget, const Visit& visit)
{
    visit(gadget);
    for (const auto& child : gadget.children)
        VisitGadgets(*child, visit);
    if (gadget.inner && gadget.inner->root)
        VisitGadgets(*gadget.inner->root, visit);
}

// One function for each family of gadgets (qtlabels.cpp and so on).
std::unique_ptr<QtGadget> MakeNative(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeLabel(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeField(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeButton(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeChoice(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeGroup(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeScroll(QtToolkit& toolkit, Gadget& gadget);
std::unique_ptr<QtGadget> MakeSurface(QtToolkit& toolkit, Gadget& gadget);

} // namespace vx3::desktop
