#include "gui/eventwatch.h"

#include <algorithm>

namespace vx3::gui {

namespace {

using Clock = std::chrono::steady_clock;

// A code of four letters as such, any other number in digits.
std::string NumberText(int32_t number)
{
    std::string letters;
    for (int shift = 24; shift >= 0; shift -= 8)
        letters += static_cast<char>(static_cast<uint32_t>(number) >> shift);
    const bool isCode = std::all_of(letters.begin(), letters.end(), [](unsigned char letter) { return letter > 0x20 && letter < 0x7F; });
    return isCode ? letters : std::to_string(number);
}

std::string TextOf(const EventName& name)
{
    std::string text = name.what;
    if (name.number != 0)
        text += ' ' + NumberText(name.number);
    if (name.window != 0)
        text += " of " + std::to_string(name.window);
    return text;
}

} // namespace

EventWatch::Event::Event(EventWatch& ownWatch, EventName ownName)
    : watch(ownWatch)
    , name(ownName)
    , start(Clock::now())
    , waitedBefore(ownWatch.waited)
{
}

EventWatch::Event::~Event()
{
    const Clock::duration busy = Clock::now() - start - (watch.waited - waitedBefore);
    if (busy <= watch.longest)
        return;
    watch.longest = busy;
    watch.longestName = name;
}

EventWatch::Wait::Wait(EventWatch& ownWatch)
    : watch(ownWatch)
    , start(Clock::now())
    , waitedBefore(ownWatch.waited)
{
}

EventWatch::Wait::~Wait()
{
    watch.waited = waitedBefore + (Clock::now() - start); // with the waits inside it, once
}

double EventWatch::Longest(std::string* name) const
{
    if (name)
        *name = TextOf(longestName);
    return std::chrono::duration<double, std::milli>(longest).count();
}

void EventWatch::Forget()
{
    longest = {};
    longestName = {};
}

} // namespace vx3::gui
