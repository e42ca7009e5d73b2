#include "services/preferences.h"

#include <atomic>

namespace browser {

namespace {

using MirrorValue = std::atomic<int32_t>;

struct Mirror {
    Preference key;
    MirrorValue value;

    constexpr explicit Mirror(Preference ownKey)
        : key(ownKey)
        , value(static_cast<int32_t>(RowOf(ownKey).fallback))
    {
    }
    int32_t Get() const { return value.load(std::memory_order_relaxed); }
    void Set(int32_t number) { value.store(number, std::memory_order_relaxed); }
};

// With their values from the first instruction on: threads may read before the start.
constinit Mirror backgroundEnabled(Preference::BackgroundEnabled);
constinit Mirror previewFromFile(Preference::PreviewFromFile);
constinit Mirror previewAlways(Preference::PreviewAlways);
constinit Mirror backgroundTimeLimit(Preference::BackgroundTimeLimit);
constinit Mirror foldersFirst(Preference::FoldersFirst);
constinit Mirror previewWidth(Preference::PreviewWidth);
constinit Mirror previewHeight(Preference::PreviewHeight);
constinit Mirror previewQuality(Preference::PreviewQuality);

constexpr Mirror* mirrors[] = { &backgroundEnabled, &previewFromFile, &previewAlways, &backgroundTimeLimit,
                                &foldersFirst,      &previewWidth,    &previewHeight, &previewQuality };

constexpr int32_t shortestForm = -1; // the decimals of a number that reads back equal

BaseContainer* container = nullptr; // the host's, from ReadPreferences to ForgetPreferences

double Clamped(const VX3Preference& row, double number)
{
    if (number > row.highest)
        return row.highest;
    return number >= row.lowest ? number : row.lowest; // also what is not a number
}

void LeaveNetwork(Preference key)
{
    if (GetPreferenceText(key).StartsWith("network:/"))
        (void)SetPreferenceText(key, String("file:/"));
}

void RefreshMirror(Preference key)
{
    for (Mirror* mirror : mirrors)
        if (mirror->key == key)
            mirror->Set(GetPreferenceNumber(key));
}

} // namespace

void SetPreferenceDefaults()
{
    for (Mirror* mirror : mirrors)
        mirror->Set(static_cast<int32_t>(RowOf(mirror->key).fallback));
}

void ReadPreferences()
{
    container = BaseContainer::Of(host->registry->preferences(browserPreferencesId));
    if (!container)
        return;
    LeaveNetwork(Preference::StartUrl);
    LeaveNetwork(Preference::LastPlace);
    for (Mirror* mirror : mirrors)
        mirror->Set(GetPreferenceNumber(mirror->key));
}

void ForgetPreferences()
{
    container = nullptr;
}

bool BackgroundEnabled()
{
    return backgroundEnabled.Get() != 0;
}

bool PreviewFromFile()
{
    return previewFromFile.Get() != 0;
}

bool PreviewAlways()
{
    return previewAlways.Get() != 0;
}

bool FoldersFirst()
{
    return foldersFirst.Get() != 0;
}

int32_t BackgroundTimeLimit()
{
    return backgroundTimeLimit.Get();
}

int32_t PreviewWidth()
{
    return previewWidth.Get();
}

int32_t PreviewHeight()
{
    return previewHeight.Get();
}

int32_t PreviewQuality()
{
    return previewQuality.Get();
}

int32_t GetPreferenceNumber(Preference key)
{
    const VX3Preference& row = RowOf(key);
    const auto fallback = static_cast<int32_t>(row.fallback);
    return container ? static_cast<int32_t>(Clamped(row, container->GetInt32(row.key, fallback))) : fallback;
}

double GetPreferenceFloat(Preference key)
{
    const VX3Preference& row = RowOf(key);
    return container ? Clamped(row, container->GetFloat(row.key, row.fallback)) : row.fallback;
}

String GetPreferenceText(Preference key)
{
    return container ? container->GetText(static_cast<int32_t>(key)) : String();
}

bool GetPreferenceContainer(Preference key, BaseContainer& out)
{
    const VX3Container* stored = container ? host->container->getContainer(container->Value(), static_cast<int32_t>(key)) : nullptr;
    return stored && host->container->copy(out.Value(), stored);
}

bool SetPreferenceNumber(Preference key, int32_t number)
{
    if (!container || !container->SetInt32(static_cast<int32_t>(key), number))
        return false;
    RefreshMirror(key);
    return true;
}

bool SetPreferenceFloat(Preference key, double number)
{
    return container && container->SetFloat(static_cast<int32_t>(key), number);
}

bool SetPreferenceText(Preference key, const String& text)
{
    return container && container->SetText(static_cast<int32_t>(key), text);
}

bool SetPreferenceContainer(Preference key, const BaseContainer& value)
{
    return container && host->container->setContainer(container->Value(), static_cast<int32_t>(key), value.Value());
}

bool PreferenceAt(int32_t index, VX3Preference& out)
{
    if (index < 0 || index >= static_cast<int32_t>(std::size(preferenceRows)))
        return false;
    out = preferenceRows[index];
    return true;
}

bool IsInBounds(const VX3Preference& row, double number)
{
    return number >= row.lowest && number <= row.highest;
}

bool GetPreferenceText(int32_t key, String& out)
{
    const VX3Preference* row = FindPreference(key);
    const auto preference = static_cast<Preference>(key);
    switch (row ? row->type : VX3_VALUE_NONE) {
    case VX3_VALUE_INT32: return out.SetInteger(GetPreferenceNumber(preference));
    case VX3_VALUE_FLOAT: return host->text->setFloat(out.Value(), GetPreferenceFloat(preference), shortestForm);
    case VX3_VALUE_TEXT: return out.Set(GetPreferenceText(preference));
    default: return false;
    }
}

bool SetPreferenceText(int32_t key, const String& text)
{
    const VX3Preference* row = FindPreference(key);
    const auto preference = static_cast<Preference>(key);
    int64_t whole = 0;
    double number = 0;
    switch (row ? row->type : VX3_VALUE_NONE) {
    case VX3_VALUE_INT32:
        return text.ToInteger(whole) && IsInBounds(*row, static_cast<double>(whole))
            && SetPreferenceNumber(preference, static_cast<int32_t>(whole));
    case VX3_VALUE_FLOAT:
        return host->text->toFloat(text.Value(), &number) && IsInBounds(*row, number) && SetPreferenceFloat(preference, number);
    case VX3_VALUE_TEXT: return SetPreferenceText(preference, text);
    default: return false;
    }
}

} // namespace browser
