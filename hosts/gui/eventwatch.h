// How long the main thread was busy with one event, and with which one it was busiest.
//
// An event is a callback into a module, or a step of the desk such as a new layout. Time in
// which a nested loop waited for the user is not counted; what happens in the loop is an
// event of its own.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace vx3::gui {

// "timer of 1017163", "input 10122 of 1017163": made into a text only when somebody asks.
struct EventName {
    const char* what = "";
    int32_t number = 0; // a gadget, a command, the code of a message; 0: left out
    int32_t window = 0; // id of the window
};

class EventWatch
{
public:
    // Measures as long as it lives.
    class Event
    {
    public:
        Event(EventWatch& ownWatch, EventName ownName);
        ~Event();
        Event(const Event&) = delete;
        Event& operator=(const Event&) = delete;

    private:
        EventWatch& watch;
        EventName name;
        std::chrono::steady_clock::time_point start;
        std::chrono::steady_clock::duration waitedBefore;
    };

    // A nested loop, in which the user has the time.
    class Wait
    {
    public:
        explicit Wait(EventWatch& ownWatch);
        ~Wait();
        Wait(const Wait&) = delete;
        Wait& operator=(const Wait&) = delete;

    private:
        EventWatch& watch;
        std::chrono::steady_clock::time_point start;
        std::chrono::steady_clock::duration waitedBefore;
    };

    double Longest(std::string* name) const; // milliseconds
    void Forget();

private:
    std::chrono::steady_clock::duration waited{}; // of all waits so far
    std::chrono::steady_clock::duration longest{};
    EventName longestName;
};

} // namespace vx3::gui
