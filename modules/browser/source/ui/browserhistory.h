// Where a window has been: a row of URL texts and the place in it.
//
// Belongs to one window and is used on the host's main thread. It knows no node: a URL
// may have died meanwhile, which shows only when somebody goes there.
#pragma once

#include "services/basecontainer.h"

namespace browser {

class BrowserHistory
{
public:
    enum class Direction { Back, Forward };

    // A menu's rows are numbered by their steps from here; the first row is one step.
    static constexpr int32_t menuBase = 900010;

    // Notes that the window is at `url` now. False without memory: then nothing changed.
    [[nodiscard]] bool Push(const String& url);
    // Goes `steps` back or forward. False if there are not as many; then nothing changed.
    bool Back(int32_t steps);
    bool Forward(int32_t steps);
    bool CanGoBack() const { return first < current; }
    bool CanGoForward() const { return current < last; }
    // The URL so many steps back, or forward if negative. False out of range.
    bool Get(int32_t steps, String& url) const;

    // The menus of both directions: the URL of row 1, 2, … and what a choice does. A
    // choice that is no row, such as 0 for a menu that was closed, is false.
    int32_t CountRows(Direction direction) const { return direction == Direction::Back ? current - first : last - current; }
    bool GetRow(Direction direction, int32_t row, String& url) const;
    bool GoToChoice(Direction direction, int32_t choice);

private:
    bool Holds(int64_t index) const { return index >= first && index <= last; }
    // False without memory. Where there is no entry the text stays empty.
    [[nodiscard]] bool Read(int32_t index, String& url) const;

    // By index. Texts behind `last` are left over from a chain that was dropped.
    // Kept: never trimmed, so that Back always leads to the start.
    BaseContainer entries;
    int32_t current = -1;
    int32_t first = 0;
    int32_t last = -1;
};

} // namespace browser
