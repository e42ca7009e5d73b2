#include "services/resources.h"

namespace browser {

namespace {

// Loaded and freed on the main thread while no worker of the module runs.
VX3Resources* resources = nullptr;

bool AppendUnits(String& text, Units units)
{
    String part;
    return units.empty() || (part.Set(units) && text.Append(part));
}

// Where a value of `values` is to stand in `units`: `%` and its number from 1 on. The end if there is none.
size_t FindPlace(Units units, std::span<const String> values)
{
    size_t place = 0;
    auto isPlace = [&](size_t at) { return units[at] == '%' && units[at + 1] >= '1' && units[at + 1] - '1' < int(values.size()); };
    while (place + 1 < units.size() && !isPlace(place))
        ++place;
    return place + 1 < units.size() ? place : units.size();
}

} // namespace

bool LoadResources(const FilePath& modulePath)
{
    FreeResources();
    resources = host->resource->load(modulePath.Value());
    return resources != nullptr;
}

void FreeResources()
{
    host->resource->free(resources);
    resources = nullptr;
}

VX3Resources* LoadedResources()
{
    return resources;
}

String ResourceText(int32_t number)
{
    String text;
    if (resources)
        (void)host->resource->text(resources, number, text.Value());
    return text;
}

String ResourceText(int32_t number, std::span<const String> values)
{
    const String pattern = ResourceText(number);
    Units rest = pattern.View();
    String filled;
    for (;;) {
        const size_t place = FindPlace(rest, values);
        if (!AppendUnits(filled, rest.first(place)))
            return String();
        if (place == rest.size())
            return filled;
        if (!filled.Append(values[size_t(rest[place + 1] - '1')]))
            return String();
        rest = rest.subspan(place + 2);
    }
}

void WriteConsole(const char* line)
{
    host->console->line(String(line).Value());
}

void ReportCriticalStop(const char* file, int32_t line)
{
    host->console->criticalStop(file, line);
}

} // namespace browser
