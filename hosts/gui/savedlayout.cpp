#include "gui/savedlayout.h"

#include "core/values.h"
#include "gui/dialoglife.h"
#include "gui/messages.h"

namespace vx3::gui {

namespace {

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

// The place in a saved window and in the structure of the boundary, number by number.
struct PlaceField {
    SavedKey key;
    int32_t VX3WindowPlace::*field;
};
constexpr PlaceField placeFields[] = {
    { SavedId, &VX3WindowPlace::id }, { SavedSubId, &VX3WindowPlace::subId }, { SavedX, &VX3WindowPlace::x },
    { SavedY, &VX3WindowPlace::y },   { SavedWidth, &VX3WindowPlace::width }, { SavedHeight, &VX3WindowPlace::height },
};

void SaveWindow(DeskState& desk, Dialog& window, VX3Container* saved)
{
    VX3WindowPlace place = window.opened;
    place.width = window.size.width;
    place.height = window.size.height;
    for (const PlaceField& field : placeFields)
        Containers().setInt32(saved, field.key, place.*field.field);
    Containers().setText(saved, SavedKind, core::Text(std::u16string_view(NameOfKind(desk, window))).Get());
    if (!IsLive(window))
        return; // the question has closed it
    ContainerValue result;
    Send(desk, window, Message(VX3_GUI_LAYOUT_SAVE), result.Get());
    if (const VX3Container* contents = Containers().getContainer(result.Get(), VX3_GUI_LAYOUT_RESTORE))
        Containers().setContainer(saved, SavedContents, contents);
}

VX3WindowPlace PlaceOfSaved(const VX3Container* saved)
{
    VX3WindowPlace place = {};
    for (const PlaceField& field : placeFields)
        place.*field.field = Containers().getInt32(saved, field.key, 0);
    return place;
}

const VX3Container* FindSaved(const VX3Container* layout, int32_t id, int32_t subId)
{
    for (int32_t i = 0; i < Containers().count(layout); ++i) {
        int32_t key = 0;
        int32_t type = 0;
        Containers().entryAt(layout, i, &key, &type);
        const VX3Container* saved = Containers().getContainer(layout, key);
        if (saved && Containers().getInt32(saved, SavedId, 0) == id && Containers().getInt32(saved, SavedSubId, 0) == subId)
            return saved;
    }
    return nullptr;
}

// A window that changed its kind since then begins anew. Layouts from before kinds had names hold for any.
bool IsOfKind(const VX3Container* saved, const std::u16string& kind)
{
    core::Text stored;
    Containers().getText(saved, SavedKind, stored.Get());
    return stored.Units().empty() || stored.Units() == kind;
}

} // namespace

std::u16string NameOfKind(DeskState& desk, Dialog& window)
{
    ContainerValue result;
    Send(desk, window, Message(VX3_GUI_NAME), result.Get());
    core::Text name;
    Containers().getText(result.Get(), VX3_KEY_NAME, name.Get());
    return name.Units();
}

// A modal window is not saved: what it held up is over.
void SaveWindows(DeskState& desk, VX3Container& layout)
{
    Containers().clear(&layout);
    int32_t count = 0;
    std::vector<VX3Dialog> handles;
    for (const Dialog* window : desk.windows)
        if (IsLive(*window) && !window->isModal)
            handles.push_back(window->handle);
    for (VX3Dialog handle : handles) {
        Dialog* window = FindDialog(desk, handle);
        if (!window || !IsLive(*window))
            continue;
        ContainerValue saved;
        SaveWindow(desk, *window, saved.Get());
        Containers().setContainer(&layout, count++, saved.Get());
    }
}

bool RestoreWindow(DeskState& desk, Dialog& window, int32_t id, int32_t subId)
{
    ContainerValue layout; // modules that are called meanwhile may have another one set
    Containers().copy(layout.Get(), desk.savedLayout.Get());
    const VX3Container* saved = FindSaved(layout.Get(), id, subId);
    if (!saved || !IsOfKind(saved, NameOfKind(desk, window)))
        return false;
    const VX3WindowPlace place = PlaceOfSaved(saved);
    if (const VX3Container* contents = Containers().getContainer(saved, SavedContents)) {
        Message restore(VX3_GUI_LAYOUT_RESTORE);
        restore.SetContainer(VX3_GUI_LAYOUT_RESTORE, contents);
        Send(desk, window, restore);
    }
    return CanOpen(desk, window) && OpenWindow(desk, window, place, Opening::Window);
}

} // namespace vx3::gui
