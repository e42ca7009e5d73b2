// What keeps a call of a module waiting while the program goes on: modal windows, menus,
// drags and rubber bands, the innermost last.
//
// Main thread only.
#pragma once

#include <functional>
#include <vector>

#include "qtpointer.h"

namespace vx3::desktop {

class QtToolkit;

class Nested
{
public:
    explicit Nested(QtToolkit& ownToolkit);

    void RunModal(Dialog& window);
    void EndModal(const Dialog& window);
    gui::Band TrackRubberBand(Gadget& area, Point start);
    void RunDrag(Gadget& area);
    bool IsDragOutside() const { return isOutside; } // the window system has the drag that began here
    int32_t RunPopup(Dialog& window, const std::vector<gui::MenuItem>& rows, Point screen);

    // Its rubber band, drag or popup menu ends as soon as the stack is back there.
    void Cancel(const Dialog& window);

private:
    enum class Kind { Modal, Other };
    struct Running {
        const Dialog* window;
        Kind kind;
        std::function<void()> cancel;
    };
    // One of them while it runs.
    class Scope
    {
    public:
        Scope(Nested& ownNested, Kind kind, const Dialog& window, std::function<void()> cancel);
        ~Scope();

    private:
        Nested& nested;
    };

    void DragOutside(const std::vector<std::string>& files);

    QtToolkit& toolkit;
    std::vector<Running> running;
    bool isOutside = false;
};

} // namespace vx3::desktop
