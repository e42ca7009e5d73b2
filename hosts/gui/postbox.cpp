#include "gui/postbox.h"

#include <algorithm>

#include "core/message.h"

namespace vx3::gui {

void PostBox::Put(const Letter& letter)
{
    letters.push_back(letter);
    core::RequestDelivery();
}

bool PostBox::Has(const Letter& letter) const
{
    return std::find(letters.begin(), letters.end(), letter) != letters.end();
}

void PostBox::DropAllFor(Recipient recipient, uint64_t handle)
{
    std::erase_if(letters, [&](const Letter& letter) { return letter.recipient == recipient && letter.handle == handle; });
}

std::optional<Letter> PostBox::TakeFirst()
{
    if (letters.empty())
        return std::nullopt;
    const Letter first = letters.front();
    letters.pop_front();
    return first;
}

} // namespace vx3::gui
