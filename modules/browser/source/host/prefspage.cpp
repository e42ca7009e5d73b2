#include "host/prefspage.h"

#include "services/preferences.h"
#include "services/resources.h"

namespace browser {

namespace {

constexpr const char* descriptionName = "Prefsbrowser";
constexpr int32_t sortValue = 10000070; // the place among the host's pages

enum class Kind : uint8_t { Number, QualityStep, Url };

struct Element {
    int32_t id;
    Preference key;
    Kind kind;
};

constexpr Element elements[] = {
    { 1002, Preference::PreviewFromFile, Kind::Number },   { 1003, Preference::FoldersFirst, Kind::Number },
    { 1004, Preference::FoundOrder, Kind::Number },        { 1005, Preference::BackgroundTimeLimit, Kind::Number },
    { 1009, Preference::BackgroundEnabled, Kind::Number }, { 1011, Preference::PreviewWidth, Kind::Number },
    { 1012, Preference::PreviewHeight, Kind::Number },     { 1007, Preference::PreviewQuality, Kind::QualityStep },
    { 1008, Preference::PreviewAlways, Kind::Number },     { 1000, Preference::StartUrl, Kind::Url },
};

const Element* FindElement(int32_t id)
{
    for (const Element& element : elements)
        if (element.id == id)
            return &element;
    return nullptr;
}

// The steps of quality, low, middle and high: their upper ends, and what choosing one stores.
constexpr int32_t lowEnd = 70;
constexpr int32_t middleEnd = 90;
constexpr int32_t stepQualities[] = { 60, 90, 95 };

int32_t StepOfQuality(int32_t quality)
{
    return quality <= lowEnd ? 0 : quality <= middleEnd ? 1 : 2;
}

bool SetNumber(Preference key, int32_t number)
{
    return IsInBounds(RowOf(key), number) && SetPreferenceNumber(key, number);
}

// The step that is shown already changes nothing: a finer value was set by other means.
bool SetQualityStep(Preference key, int32_t step)
{
    if (step < 0 || step >= static_cast<int32_t>(std::size(stepQualities)))
        return false;
    return step == StepOfQuality(GetPreferenceNumber(key)) || SetPreferenceNumber(key, stepQualities[step]);
}

bool SetUrlText(const String& text)
{
    BrowserURL url(text);
    return SetStartUrl(url);
}

bool GetElement(const Element& element, BaseContainer& values)
{
    switch (element.kind) {
    case Kind::Number: return values.SetInt32(element.id, GetPreferenceNumber(element.key));
    case Kind::QualityStep: return values.SetInt32(element.id, StepOfQuality(GetPreferenceNumber(element.key)));
    case Kind::Url: return values.SetText(element.id, GetPreferenceText(element.key));
    }
    return false;
}

bool SetElement(const Element& element, const BaseContainer& values)
{
    const int32_t wanted = element.kind == Kind::Url ? VX3_VALUE_TEXT : VX3_VALUE_INT32;
    if (host->container->typeOf(values.Value(), element.id) != wanted)
        return false;
    switch (element.kind) {
    case Kind::Number: return SetNumber(element.key, values.GetInt32(element.id, 0));
    case Kind::QualityStep: return SetQualityStep(element.key, values.GetInt32(element.id, 0));
    case Kind::Url: return SetUrlText(values.GetText(element.id));
    }
    return false;
}

VX3Bool GetValue(void*, int32_t id, VX3Container* values)
{
    const Element* element = FindElement(id);
    return element && GetElement(*element, *BaseContainer::Of(values));
}

VX3Bool SetValue(void*, int32_t id, const VX3Container* values)
{
    const Element* element = FindElement(id);
    return element && SetElement(*element, *BaseContainer::Of(values));
}

constexpr VX3PrefsPageTable pageTable = { [](void*) {}, GetValue, SetValue };

} // namespace

bool RegisterPrefsPage()
{
    const String name = ResourceText(Texts::ModuleName);
    return host->registry->registerPrefsPage(browserPreferencesId, name.Value(), descriptionName, sortValue, nullptr, &pageTable);
}

void GetStartUrl(BrowserURL& out)
{
    out.SetText(GetPreferenceText(Preference::StartUrl));
}

bool SetStartUrl(BrowserURL& url)
{
    return SetPreferenceText(Preference::StartUrl, url.GetText());
}

} // namespace browser
