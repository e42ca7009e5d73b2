// The languages that names are stored in, and the choice among several.
#pragma once

#include "services/basecontainer.h"

namespace browser {

constexpr int32_t englishCode = 0x75730000; // "us"
constexpr int32_t germanCode = 0x64650000;  // "de"

// Up to four characters of a language's code in lower case, the first in the high byte.
int32_t PackLanguage(const String& code);
// That of the user; the code of "us" if the host marks none, 0 if it cannot be read.
int32_t CurrentLanguage();
void ForgetCurrentLanguage(); // at the end of a life

// The text in the user's language, else in English, else in German, else the first one.
String ChooseText(const BaseContainer& texts);

} // namespace browser
