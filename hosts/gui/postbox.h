// Messages without contents that wait for the main loop. Main thread only.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace vx3::gui {

enum class Recipient { Dialog, Area };

struct Letter {
    Recipient recipient = Recipient::Dialog;
    uint64_t handle = 0;
    int32_t code = 0;

    bool operator==(const Letter&) const = default;
};

class PostBox
{
public:
    void Put(const Letter& letter); // wakes the main loop
    bool Has(const Letter& letter) const;
    void DropAllFor(Recipient recipient, uint64_t handle);
    std::optional<Letter> TakeFirst();
    void PutBack(const Letter& letter) { letters.push_back(letter); } // without waking
    size_t Count() const { return letters.size(); }

private:
    std::deque<Letter> letters;
};

} // namespace vx3::gui
