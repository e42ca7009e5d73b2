// Exit codes and words for people. Data goes to stdout, all words to stderr.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vx3::console {

enum class Exit { Done = 0, SomeFailed = 1, Usage = 2, NotFound = 3, Damaged = 4, Refused = 5, Conflict = 6, Cancelled = 7 };

// Why something did not work; Exit::Done if it did.
struct Failure {
    Exit exit = Exit::Done;
    std::string sentence;

    explicit operator bool() const { return exit != Exit::Done; }
};

void Say(std::string_view sentence); // a line to stderr, with the program's name in front

// "0x80000008"
std::string HexText(uint32_t number);

// Text for people: no control characters and no bytes that are not UTF-8.
std::string Shown(std::string_view bytes);
std::string Quoted(std::string_view bytes);

// Collects what came of several items, and says what went wrong as it happens.
class Outcome
{
public:
    void Done() { ++doneCount; }
    void Fail(const Failure& failure);
    bool IsCancelled() const { return worst == Exit::Cancelled; }
    // 0, the worst code if nothing worked or the user cancelled, else 1.
    int Code() const;

private:
    int doneCount = 0;
    Exit worst = Exit::Done;
};

} // namespace vx3::console
