#include "ui/browserhistory.h"

namespace browser {

bool BrowserHistory::Read(int32_t index, String& url) const
{
    return !Holds(index) || host->container->getText(entries.Value(), index, url.Value());
}

// Kept: to go to what comes next anyway keeps what comes after it. And a URL without
// text, which a window shows when an old place is gone, is an entry like any other and
// drops the forward chain.
bool BrowserHistory::Push(const String& url)
{
    String here, next;
    if (!Read(current, here) || !Read(current + 1, next))
        return false;
    if (Holds(current) && here == url)
        return true;
    if (Holds(current + 1) && next == url) {
        current++;
        return true;
    }
    if (!entries.SetText(current + 1, url))
        return false;
    last = ++current;
    return true;
}

bool BrowserHistory::Back(int32_t steps)
{
    if (steps < 0 || !Holds(int64_t(current) - steps))
        return false;
    current -= steps;
    return true;
}

bool BrowserHistory::Forward(int32_t steps)
{
    if (steps < 0 || !Holds(int64_t(current) + steps))
        return false;
    current += steps;
    return true;
}

bool BrowserHistory::Get(int32_t steps, String& url) const
{
    const int64_t index = int64_t(current) - steps;
    return Holds(index) && host->container->getText(entries.Value(), static_cast<int32_t>(index), url.Value());
}

bool BrowserHistory::GetRow(Direction direction, int32_t row, String& url) const
{
    return row > 0 && Get(direction == Direction::Back ? row : -row, url);
}

bool BrowserHistory::GoToChoice(Direction direction, int32_t choice)
{
    if (choice < menuBase)
        return false;
    return direction == Direction::Back ? Back(choice - menuBase) : Forward(choice - menuBase);
}

} // namespace browser
