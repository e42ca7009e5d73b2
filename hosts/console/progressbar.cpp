#include "progressbar.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>

#include "outcome.h"

namespace vx3::console {

namespace {

constexpr int64_t quietMilliseconds = 300;
constexpr int64_t drawMilliseconds = 100;
constexpr int barWidth = 30;
constexpr size_t titleWidth = 30;
constexpr int32_t cancel = -1;

volatile std::sig_atomic_t interrupted = 0;

void NoteInterrupt(int)
{
    interrupted = 1;
}

int64_t Now()
{
    auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

std::string Cut(const std::string& text)
{
    return Shown(text.substr(0, titleWidth)) + (text.size() > titleWidth ? "..." : "");
}

} // namespace

void CatchInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = NoteInterrupt;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (int signal : { SIGINT, SIGTERM, SIGHUP })
        sigaction(signal, &action, nullptr);
    // A write beyond the limit of a file's size is to fail, like one on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
}

bool IsInterrupted()
{
    return interrupted != 0;
}

std::string AmountText(const Amount& amount)
{
    return std::to_string(amount.elements) + (amount.elements == 1 ? " element, " : " elements, ") + std::to_string(amount.bytes)
        + (amount.bytes == 1 ? " byte" : " bytes");
}

ProgressBar::ProgressBar(const std::string& newTitle, const Amount& newTotal, bool newIsDrawn)
    : title(Cut(newTitle))
    , total(newTotal)
    , isDrawn(newIsDrawn)
    , nextDraw(Now() + quietMilliseconds)
{
}

ProgressBar::~ProgressBar()
{
    if (isVisible)
        std::fputs("\r\033[K", stderr);
}

int32_t ProgressBar::Report(void* bar, int32_t, int32_t count, int64_t size, int32_t)
{
    ProgressBar& self = *static_cast<ProgressBar*>(bar);
    self.counted.elements += count;
    self.counted.bytes += size;
    self.DrawIfDue();
    return IsInterrupted() ? cancel : 0;
}

// By bytes where there are any. What the tree does not show is not in the total.
double ProgressBar::Share() const
{
    bool byBytes = total.bytes > 0;
    double whole = static_cast<double>(byBytes ? total.bytes : total.elements);
    double part = static_cast<double>(byBytes ? counted.bytes : counted.elements);
    return whole > 0 ? std::min(part / whole, 1.0) : 0.0;
}

void ProgressBar::DrawIfDue()
{
    if (!isDrawn || Now() < nextDraw)
        return;
    nextDraw = Now() + drawMilliseconds;
    isVisible = true;
    double share = Share();
    int filled = static_cast<int>(share * barWidth);
    std::string bar = std::string(static_cast<size_t>(filled), '#') + std::string(static_cast<size_t>(barWidth - filled), '.');
    std::fprintf(stderr, "\r\033[K%s [%s] %3d%%  %s", title.c_str(), bar.c_str(), static_cast<int>(share * 100),
                 AmountText(counted).c_str());
    std::fflush(stderr);
}

} // namespace vx3::console
