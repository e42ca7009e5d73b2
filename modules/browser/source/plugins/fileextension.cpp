#include "plugins/fileextension.h"

namespace browser {

namespace {

// What stands behind the last dot of the last component, empty if there is no dot.
Units ExtensionOf(Units text)
{
    for (size_t i = text.size(); i > 0 && text[i - 1] != '/'; i--)
        if (text[i - 1] == '.')
            return text.subspan(i);
    return {};
}

} // namespace

LowerExtension::LowerExtension(BrowserURL& url)
{
    String name;
    Units extension = ExtensionOf(url.GetFileName(name) ? name.View() : url.GetText().View());
    if (extension.empty() || extension.size() > capacity)
        return;
    length = extension.size();
    host->text->lowerUnits(extension.data(), units, static_cast<int32_t>(length));
}

bool LowerExtension::operator==(const char* literal) const
{
    for (size_t i = 0; i < length; i++)
        if (units[i] != static_cast<unsigned char>(literal[i])) // also the end of a shorter literal
            return false;
    return literal[length] == 0;
}

} // namespace browser
