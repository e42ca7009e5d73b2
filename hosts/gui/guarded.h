// Nothing is thrown through a module: it is plain C for all that the desk knows. A call that
// runs out of memory answers 0; what a user did and nobody answers for is told on the console.
#pragma once

#include <exception>

namespace vx3::gui {

// Writes a line for what could not be done, if that can be done at least.
void TellUndone() noexcept;

template <auto function>
struct Guard;

template <typename Answer, typename... Arguments, Answer (*function)(Arguments...)>
struct Guard<function> {
    static Answer Call(Arguments... arguments)
    {
        try {
            return function(arguments...);
        } catch (const std::exception&) {
            return Answer();
        }
    }
};

// A function of a table, with answer 0 in place of an exception.
template <auto function>
constexpr auto guarded = &Guard<function>::Call;

// Runs something for a toolkit, whose own caller may be a module or a destructor.
template <typename Function>
auto Safely(const Function& function) noexcept -> decltype(function())
{
    try {
        return function();
    } catch (const std::exception&) {
        TellUndone();
        return decltype(function())();
    }
}

} // namespace vx3::gui
