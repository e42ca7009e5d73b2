#include "storage/librarynames.h"

#include <atomic>

namespace browser {

namespace {

std::atomic<int32_t> current = 0;
std::atomic<bool> isKnown = false;

int32_t AskForLanguage()
{
    String name, code;
    VX3Bool isCurrent = 0;
    for (int32_t index = 0; host->resource->language(index, name.Value(), code.Value(), &isCurrent); index++)
        if (isCurrent)
            return PackLanguage(code);
    return englishCode;
}

} // namespace

int32_t PackLanguage(const String& code)
{
    constexpr int32_t most = 4;
    const String lower = code.Lower();
    uint32_t packed = 0;
    int32_t count = 0;
    for (VX3Unit unit : lower.View())
        if (count < most)
            packed |= uint32_t(unit & 0xFF) << (24 - 8 * count++);
    return static_cast<int32_t>(packed);
}

int32_t CurrentLanguage()
{
    if (!isKnown.load(std::memory_order_acquire)) {
        current.store(AskForLanguage(), std::memory_order_relaxed);
        isKnown.store(true, std::memory_order_release);
    }
    return current.load(std::memory_order_relaxed);
}

void ForgetCurrentLanguage()
{
    isKnown.store(false, std::memory_order_release);
}

String ChooseText(const BaseContainer& texts)
{
    for (int32_t language : { CurrentLanguage(), englishCode, germanCode })
        if (String text = texts.GetText(language); !text.IsEmpty())
            return text;
    int32_t key = 0, type = 0;
    return texts.EntryAt(0, key, type) ? texts.GetText(key) : String();
}

} // namespace browser
