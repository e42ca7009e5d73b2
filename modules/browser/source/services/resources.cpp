#include "services/resources.h"

namespace browser {

namespace {

// Loaded and freed on the main thread while no worker of the module runs.
VX3Resources* resources = nullptr;

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

String ResourceText(int32_t number)
{
    String text;
    if (resources)
        (void)host->resource->text(resources, number, text.Value());
    return text;
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
