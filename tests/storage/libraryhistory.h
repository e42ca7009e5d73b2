// What libraries held at each moment, by the units that the disk had seen: what may be found
// behind a crash.
#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vx3::tests {

const std::string absent = "(absent)";

class LibraryHistory
{
public:
    void Note(const std::string& item, const std::string& content, int64_t units) { histories[item].changes.push_back({ units, content }); }
    // All items of a library are on the disk as they are now.
    void NoteFlush(const std::string& library, int64_t units)
    {
        for (auto& [item, history] : histories)
            if (item.starts_with(library))
                history.flushed.push_back({ units, history.changes.back().content });
    }
    bool Knows(const std::string& item) const { return histories.count(item) != 0; }
    // What had been written at a cut, and all that it was changed to since.
    std::set<std::string> Allowed(const std::string& item, int64_t cut) const
    {
        const History& history = histories.at(item);
        int64_t since = -1;
        std::string kept = absent;
        for (const State& state : history.flushed)
            if (state.units <= cut) {
                since = state.units;
                kept = state.content;
            }
        std::set<std::string> allowed = { kept };
        for (const State& state : history.changes)
            if (state.units <= cut && state.units >= since)
                allowed.insert(state.content);
        return allowed;
    }
    std::vector<std::string> Items() const
    {
        std::vector<std::string> items;
        for (const auto& [item, history] : histories)
            items.push_back(item);
        return items;
    }

private:
    struct State {
        int64_t units;
        std::string content;
    };
    struct History {
        std::vector<State> changes;
        std::vector<State> flushed;
    };
    std::map<std::string, History> histories;
};

} // namespace vx3::tests
