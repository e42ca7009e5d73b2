// How the gallery is built.
#include "support/gallery.h"

namespace vx3::tests {

namespace {

constexpr uint32_t fill = VX3_FLAG_FIT_H | VX3_FLAG_FIT_V | VX3_FLAG_SCALE_H | VX3_FLAG_SCALE_V;
constexpr uint32_t across = VX3_FLAG_FIT_H | VX3_FLAG_SCALE_H;
constexpr VX3GadgetShape row = { VX3_GADGET_GROUP, 0, across, 0, 0, 10 };

VX3GadgetShape Shape(int32_t kind, int32_t id, uint32_t flags = VX3_FLAG_LEFT, int32_t width = 0, int32_t height = 0)
{
    return { kind, id, flags, width, height, 1 };
}

} // namespace

void Gallery::Begin(const Part& part, const VX3GadgetShape& shape, const char* title)
{
    gui.gadget->begin(part.handle, &shape, title ? HostText(host, title).Get() : nullptr);
}

void Gallery::Add(const Part& part, const VX3GadgetShape& shape, const char* text, const char* tip)
{
    gui.gadget->add(part.handle, &shape, text ? HostText(host, text).Get() : nullptr, tip ? HostText(host, tip).Get() : nullptr);
}

void Gallery::AddRow(int32_t id, int32_t value, const char* text)
{
    gui.gadget->addRow(window.handle, id, value, text ? HostText(host, text).Get() : nullptr);
}

void Gallery::CreateWindow()
{
    gui.dialog->setTitle(window.handle, HostText(host, "Gallery").Get());
    CreateMenu();
    Begin(window, Shape(VX3_GADGET_TABS, idTabs, fill));
    Begin(window, { VX3_GADGET_GROUP, idFieldPage, fill, 0, 0, 2 }, "Fields");
    CreateFieldPage();
    gui.gadget->end(window.handle);
    CreateAreaPage();
    Begin(window, Shape(VX3_GADGET_GROUP, idTreePage, fill), "Tree");
    Add(window, Shape(VX3_GADGET_TREE, idTree, fill, 220, 140));
    gui.gadget->end(window.handle);
    Begin(window, Shape(VX3_GADGET_GROUP, idInnerPage, fill), "Dialog");
    Add(window, Shape(VX3_GADGET_SUBDIALOG, idInnerDialog, fill));
    gui.gadget->end(window.handle);
    gui.gadget->end(window.handle);
    CreateButtons();
    AttachInner();
}

void Gallery::CreateMenu()
{
    const VX3MenuServices& menu = *gui.menu;
    menu.flush(window.handle);
    menu.beginMenu(window.handle, HostText(host, "&Brush").Get());
    menu.addItem(window.handle, idMenuFirst, HostText(host, "&Wash").Get(), 0);
    menu.addItem(window.handle, 0, nullptr, 0);
    menu.addItem(window.handle, idMenuChecked, HostText(host, "&Soft").Get(), VX3_MENU_CHECKED);
    menu.beginMenu(window.handle, HostText(host, "&More").Get());
    menu.addItem(window.handle, idMenuDeep, HostText(host, "&Thick").Get(), VX3_MENU_RADIO);
    menu.endMenu(window.handle);
    menu.endMenu(window.handle);
    menu.finish(window.handle);
}

// Two columns: what it is, and the gadget.
void Gallery::CreateFieldPage()
{
    struct FieldRow {
        const char* label;
        VX3GadgetShape shape;
        const char* text;
    };
    const FieldRow rows[] = {
        { "Text", Shape(VX3_GADGET_TEXT, idText), "A label" },
        { "Edit", Shape(VX3_GADGET_EDIT, idEdit, across, 160), "abcd" },
        { "Lines", Shape(VX3_GADGET_MULTILINE, idMultiline, across, 160, 60), "first\nsecond" },
        { "Number", Shape(VX3_GADGET_NUMBER, idNumber), nullptr },
        { "Date", Shape(VX3_GADGET_DATE, idDate), nullptr },
        { "Check", Shape(VX3_GADGET_CHECK, idCheck), "Varnish" },
        { "Toggle", Shape(VX3_GADGET_BITMAP_BUTTON, idToggle, VX3_FLAG_TOGGLE | VX3_FLAG_LEFT), nullptr },
        { "Combo", Shape(VX3_GADGET_COMBO, idCombo), nullptr },
        { "Free combo", Shape(VX3_GADGET_COMBO, idFreeCombo, VX3_FLAG_EDIT | VX3_FLAG_LEFT, 120), "ochre" },
        { "Slider", Shape(VX3_GADGET_SLIDER, idSlider, VX3_FLAG_PERCENT | VX3_FLAG_LEFT, 120), nullptr },
        { "Progress", Shape(VX3_GADGET_PROGRESS, idProgress, across), nullptr },
        { "Fixed", Shape(VX3_GADGET_EDIT, idReadOnly, VX3_FLAG_READ_ONLY | VX3_FLAG_LEFT, 120), "read me" },
        { "Disabled", Shape(VX3_GADGET_BUTTON, idDisabled), "Never" },
    };
    for (const FieldRow& field : rows) {
        Add(window, Shape(VX3_GADGET_TEXT, 0), field.label);
        Add(window, field.shape, field.text, "What it is for");
    }
    const VX3GadgetServices& gadget = *gui.gadget;
    gadget.setRange(window.handle, idNumber, 0, 10, 0.5);
    gadget.setRange(window.handle, idSlider, 0, 100, 5);
    gadget.enable(window.handle, idDisabled, 0);
    AddRow(idCombo, 1, "red");
    AddRow(idCombo, 0, nullptr);
    AddRow(idCombo, 2, "green");
    AddRow(idCombo, 3, "blue");
    AddRow(idFreeCombo, 1, "umber");
    gadget.setValue(window.handle, idCombo, 1);
}

void Gallery::CreateAreaPage()
{
    Begin(window, Shape(VX3_GADGET_GROUP, idAreaPage, fill), "Areas");
    Begin(window, { VX3_GADGET_SPLITTER, idSplitter, fill, 0, 0, 2 });
    Begin(window, Shape(VX3_GADGET_SCROLL, idScroll, fill, 200, 200));
    Add(window, Shape(VX3_GADGET_AREA, idBandArea, fill));
    gui.gadget->end(window.handle);
    Begin(window, Shape(VX3_GADGET_GROUP, 0, fill), "Drop here");
    Add(window, Shape(VX3_GADGET_AREA, idDropArea, 0));
    gui.gadget->end(window.handle);
    gui.gadget->end(window.handle);
    gui.gadget->end(window.handle);
}

void Gallery::CreateButtons()
{
    Add(window, Shape(VX3_GADGET_SEPARATOR, 0, across));
    Begin(window, row);
    Add(window, Shape(VX3_GADGET_BUTTON, idModal), "Modal");
    Add(window, Shape(VX3_GADGET_BUTTON, idRename), "Rename");
    Add(window, Shape(VX3_GADGET_BUTTON, idMessage), "Message");
    Add(window, Shape(VX3_GADGET_BUTTON, idQuestion), "Question");
    Add(window, Shape(VX3_GADGET_SPACE, 0, across));
    Add(window, Shape(VX3_GADGET_BUTTON, idChoose), "Choose");
    gui.gadget->end(window.handle);
}

void Gallery::InitWindow()
{
    const VX3FileDate date = { 2026, 3, 5, 0, 0, 0 };
    gui.gadget->setDate(window.handle, idDate, &date);
    gui.gadget->setValue(window.handle, idNumber, 2.5);
    gui.area->attach(bandArea.Handle(), window.handle, idBandArea);
    gui.area->attach(dropArea.Handle(), window.handle, idDropArea);
    tree.Attach(window.handle, idTree);
}

void Gallery::AttachInner()
{
    gui.dialog->attach(inner.handle, window.handle, idInnerDialog);
    gui.gadget->update(window.handle, 0);
}

void Gallery::CreateInner()
{
    Begin(inner, { VX3_GADGET_GROUP, 0, across, 0, 0, 2 }, "Inside");
    Add(inner, Shape(VX3_GADGET_EDIT, idInnerEdit, across), "inside");
    Add(inner, Shape(VX3_GADGET_BUTTON, idInnerButton), "Press");
    gui.gadget->end(inner.handle);
}

void Gallery::InitInner()
{
    gui.gadget->setText(inner.handle, idInnerEdit, HostText(host, "filled").Get());
}

void Gallery::CreateModal()
{
    Add(modal, Shape(VX3_GADGET_EDIT, idModalEdit, across, 200), "which colour?");
    Begin(modal, row);
    Add(modal, Shape(VX3_GADGET_BUTTON, idModalAccept), "Accept");
    Add(modal, Shape(VX3_GADGET_BUTTON, idModalRefuse), "Refuse");
    gui.gadget->end(modal.handle);
}

void Gallery::InitModal()
{
    gui.gadget->focus(modal.handle, idModalEdit);
}

} // namespace vx3::tests
