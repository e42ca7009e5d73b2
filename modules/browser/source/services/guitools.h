// What a window needs of the host beside gadgets: pointer and keys, drags, the popup edit,
// boxes. Main thread only; without a GUI section nothing happens and answers are negative.
#pragma once

#include "services/basecontainer.h"
#include "services/filepath.h"
#include "services/geometry.h"
#include "vx3/gui.h"

namespace browser {

class DialogBase;

// A shape of the pointer while it lives, then the usual one again.
class BusyCursor
{
public:
    BusyCursor();
    ~BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

uint32_t PollQualifiers(); // VX3_QUALIFIER bits
Point PollPointer();       // on the screen

// A drag that is over a dialog, from a VX3_GUI_DRAG message.
struct DragInfo {
    explicit DragInfo(const BaseContainer& message);

    int32_t type;
    void* data; // borrowed until the message is handled
    Point screen;
    bool isDrop;
    bool isEnd;
    uint32_t qualifiers;
    int32_t gadget; // 0: none with a number
};
void SetDragResult(int32_t cursor); // VX3_CURSOR

bool OpenPopupEdit(DialogBase& dialog, const Rectangle& screen, const String& text, VX3PopupEditFunction function, void* user);

void ShowError(const String& text);
bool AskQuestion(const String& text);
bool ChoosePath(int32_t mode, const String& title, const String& filter, FilePath& chosen); // VX3_CHOOSE
bool RevealPath(const FilePath& path);
bool OpenWithSystem(const FilePath& path);
bool OpenPreferencePage(int32_t page);

} // namespace browser
