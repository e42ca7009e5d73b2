// How messages reach dialogs and areas: made as containers, sent at once or left to the
// main loop. Main thread only.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

// A message being made; its id is the code.
class Message
{
public:
    explicit Message(int32_t code);

    void SetInt(int32_t key, int32_t value);
    void SetLong(int32_t key, int64_t value);
    void SetNumber(int32_t key, double value);
    void SetBool(int32_t key, bool value);
    void SetPointer(int32_t key, void* value);
    void SetText(int32_t key, std::u16string_view value);
    void SetContainer(int32_t key, const VX3Container* value);
    int32_t Code() const { return code; }
    const VX3Container* Get() const { return container.Get(); }

private:
    int32_t code;
    ContainerValue container;
};

// At once; 1: consumed. The recipient may be gone afterwards.
bool Send(DeskState& desk, Dialog& dialog, const Message& message, VX3Container* result = nullptr);
bool Send(DeskState& desk, Area& area, const Message& message);

// Without contents of its own: at once, or by the main loop while a silent call is on the stack or the
// dialog is being opened. A recipient that is not there any more gets nothing.
void Tell(DeskState& desk, const Letter& letter);

void DeliverPosted(DeskState& desk);

// Begins and ends what the user changes in a dialog with messages around it.
class Interaction
{
public:
    Interaction(DeskState& ownDesk, Dialog& dialog);
    ~Interaction();
    Interaction(const Interaction&) = delete;
    Interaction& operator=(const Interaction&) = delete;

private:
    DeskState& desk;
    VX3Dialog handle;
};

} // namespace vx3::gui
