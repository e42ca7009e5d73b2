#include <cstdio>

#include "hoststate.h"
#include "services.h"
#include "values.h"

namespace vx3::core {

void WriteConsoleLine(const std::string& utf8)
{
    const HostSettings& settings = CurrentSettings();
    if (settings.onConsole) {
        settings.onConsole(utf8);
        return;
    }
    // One write for the whole line: lines of several threads do not mix.
    std::string line = utf8 + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

namespace {

void Line(const VX3String* text)
{
    WriteConsoleLine(ToUtf8(*text));
}

void WriteStop(const char* kind, const char* file, int32_t line)
{
    WriteConsoleLine(std::string(kind) + " in " + (file ? file : "?") + ", line " + std::to_string(line));
}

void CriticalStop(const char* file, int32_t line)
{
    WriteStop("Critical stop", file, line);
}

void DebugStop(const char* file, int32_t line)
{
    WriteStop("Debug stop", file, line);
}

void InternalError(const VX3String* text)
{
    WriteConsoleLine("Internal error: " + ToUtf8(*text));
}

} // namespace

const VX3ConsoleServices* ConsoleServices()
{
    static constexpr VX3ConsoleServices services = { Line, CriticalStop, DebugStop, InternalError };
    return &services;
}

} // namespace vx3::core
