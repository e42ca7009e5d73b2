#include "services/string.h"

namespace browser {

bool String::StartsWith(const char* literal) const
{
    Units units = View();
    size_t i = 0;
    for (; literal[i]; i++)
        if (i >= units.size() || units[i] != static_cast<unsigned char>(literal[i]))
            return false;
    return true;
}

int32_t String::FindLast(VX3Unit unit, int32_t from) const
{
    Units units = View();
    auto length = static_cast<int32_t>(units.size());
    for (int32_t i = from < 0 || from >= length ? length - 1 : from; i >= 0; i--)
        if (units[static_cast<size_t>(i)] == unit)
            return i;
    return -1;
}

} // namespace browser
