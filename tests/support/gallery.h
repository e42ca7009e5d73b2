// A dialog with every kind of gadget, and everything that a window can open: what the GUI
// section of a table must be able to do, on any host. It knows nothing of a host but its
// table, and writes down what it is told.
//
// Scripts ask for it by `open`, play its part by `command N` (GalleryDeed), and see by `dump
// list` what it was told since the last time, by `dump state` what its gadgets hold, and by
// `dump tree` the rows of its tree.
//
// Main thread only; one at a time.
#pragma once

#include <memory>

#include "support/galleryarea.h"
#include "support/gallerytree.h"
#include "support/galleryvalues.h"

namespace vx3::tests {

// Gadgets of the gallery.
enum GalleryId : int32_t {
    idTabs = 10,
    idFieldPage = 11,
    idAreaPage = 12,
    idTreePage = 13,
    idInnerPage = 14,
    idText = 20,
    idEdit = 21,
    idMultiline = 22,
    idNumber = 23,
    idDate = 24,
    idCheck = 25,
    idToggle = 26,
    idCombo = 27,
    idFreeCombo = 28,
    idSlider = 29,
    idProgress = 30,
    idReadOnly = 31,
    idDisabled = 32,
    idSplitter = 40,
    idScroll = 41,
    idBandArea = 42,
    idDropArea = 43,
    idTree = 50,
    idInnerDialog = 60,
    idInnerEdit = 61,
    idInnerButton = 62,
    idModal = 70,
    idRename = 71,
    idMessage = 72,
    idQuestion = 73,
    idChoose = 74,
    idModalEdit = 80,
    idModalAccept = 81,
    idModalRefuse = 82,
    idMenuFirst = 100,
    idMenuChecked = 101,
    idMenuDeep = 102
};

// What a script lets the module do.
enum class GalleryDeed : int32_t {
    SetValues = 1,  // of all gadgets, some out of their range
    Scroll = 2,     // the scroll group to its end
    StartTimer = 3, // each 100 ms
    StopTimer = 4,
    PostFromThread = 5, // a core message
    HideButton = 6,     // and show it again
    Rebuild = 7,        // the page of fields
    Detach = 8,         // the dialog inside, and attach it again
    FocusEdit = 9,      // with two letters selected
    RefuseClose = 10,   // from here on, and no more the second time
    CloseFromModule = 11,
    FocusArea = 12,
    PostToSelf = 13, // to the dialog and to an area
    ToggleBusy = 14  // the shape of the pointer
};

class Gallery
{
public:
    explicit Gallery(const VX3Host* ownHost);
    ~Gallery(); // closes it
    Gallery(const Gallery&) = delete;
    Gallery& operator=(const Gallery&) = delete;

    bool Open();
    bool Do(int32_t deed);
    std::string Dump(const std::string& what);

private:
    // One dialog of the gallery; the table of all three is the same.
    struct Part {
        Gallery* gallery = nullptr;
        const char* name = "";
        void (Gallery::*createLayout)() = nullptr;
        void (Gallery::*initValues)() = nullptr;
        VX3Dialog handle = 0;
    };

    static const VX3DialogTable& Table();
    static Part& PartOf(void* object) { return *static_cast<Part*>(object); }

    // Building.
    void CreateWindow();
    void CreateFieldPage();
    void CreateAreaPage();
    void CreateButtons();
    void CreateMenu();
    void InitWindow();
    void CreateInner();
    void InitInner();
    void CreateModal();
    void InitModal();
    void Begin(const Part& part, const VX3GadgetShape& shape, const char* title = nullptr);
    void Add(const Part& part, const VX3GadgetShape& shape, const char* text = nullptr, const char* tip = nullptr);
    void AddRow(int32_t id, int32_t value, const char* text);
    void AttachInner();

    // What it is told.
    void Command(Part& part, int32_t id, const VX3Container* event);
    void WindowCommand(int32_t id);
    VX3Bool Message(Part& part, int32_t code, const VX3Container* message);
    void DragMessage(const Part& part, const VX3Container* message);
    void ShowAreaMenu();
    void RunModal();
    void StartRename();
    void Ask();
    void Choose();
    static void PopupEdited(void* user, int32_t reason, const VX3String* text);
    static void PostMessage(void* object);

    // What it does by itself.
    void SetValues();
    void SetText(int32_t id, const char* text);
    void RebuildFields();
    void PostFromThread();
    std::string DescribeValues() const;
    std::string ValueOf(int32_t id) const;
    std::string TextOf(int32_t id) const;

    const VX3Host& host;
    const VX3GuiServices& gui;
    GalleryLog log;
    Part window = { this, "window", &Gallery::CreateWindow, &Gallery::InitWindow };
    Part inner = { this, "inner", &Gallery::CreateInner, &Gallery::InitInner };
    Part modal = { this, "modal", &Gallery::CreateModal, &Gallery::InitModal };
    GalleryArea bandArea;
    GalleryArea dropArea;
    GalleryTree tree;
    VX3Thread* thread = nullptr;
    bool refusesClose = false;
    bool isButtonShown = true;
    bool isBusy = false;
    int32_t ticks = 0;
};

} // namespace vx3::tests
