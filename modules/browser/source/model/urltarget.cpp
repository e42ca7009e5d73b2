#include "model/urltarget.h"

#include "services/allocation.h"

namespace browser {

UrlTarget::UrlTarget(BrowserURL& url)
    : text(url.GetText())
    , lower(text.Lower())
    , length(static_cast<uint32_t>(lower.Length()))
    , isFile(lower.StartsWith("file:/"))
    , states(stack)
{
    if (length >= stackStates)
        states = static_cast<CrcState*>(HostAlloc((size_t(length) + 1) * sizeof(CrcState), SourcePlace::Here()));
    if (!states)
        return;
    Units units = lower.View();
    CrcState state = crcStart;
    for (uint32_t i = 0; i < length; i++) {
        states[i] = state;
        state = ContinueCrcOfUnit(state, units[i]);
    }
    states[length] = state;
}

UrlTarget::~UrlTarget()
{
    if (states != stack)
        HostFree(states);
}

uint32_t UrlTarget::MatchFolding(const String& other) const
{
    return host->text->matchesAt(lower.Value(), 0, other.Value(), true) ? static_cast<uint32_t>(other.Length()) : 0;
}

bool UrlTarget::MatchesExactly(const String& other) const
{
    return host->text->matchesAt(text.Value(), 0, other.Value(), false);
}

bool UrlTarget::EndsComponent(uint32_t prefixLength) const
{
    Units units = lower.View();
    return prefixLength == length || units[prefixLength] == '/' || (prefixLength > 0 && units[prefixLength - 1] == '/');
}

} // namespace browser
