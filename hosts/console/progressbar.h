// Long work: how far it is, on a terminal, and the way to stop it.
#pragma once

#include <cstdint>
#include <string>

#include "vx3/types.h"

namespace vx3::console {

// From here on an interrupt asks the work to stop; a second one ends the program.
void CatchInterrupts();
bool IsInterrupted();

struct Amount {
    int64_t elements = 0;
    int64_t bytes = 0;
};

std::string AmountText(const Amount& amount);

// Counts what an operation reports. Draws a bar on stderr if that is a terminal and the
// work takes more than a moment. Used by one operation at a time.
class ProgressBar
{
public:
    ProgressBar(const std::string& newTitle, const Amount& newTotal, bool newIsDrawn);
    ~ProgressBar(); // takes the bar away
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    static int32_t Report(void* bar, int32_t mode, int32_t count, int64_t size, int32_t reserved); // VX3ProgressFunction
    const Amount& Counted() const { return counted; }

private:
    void DrawIfDue();
    double Share() const;

    std::string title;
    Amount total;
    Amount counted;
    bool isDrawn;
    bool isVisible = false;
    int64_t nextDraw; // milliseconds
};

} // namespace vx3::console
