// Small rules that many rooms share: type codes, languages, names of children. Closed:
// what is new gets a room of its own.
#pragma once

#include "model/browserinterface.h"

namespace browser {

// A text of one to four characters in lower case as a code, high byte first; 0 for others.
int32_t TypeCodeFromText(const String& text);
void TextFromTypeCode(int32_t code, String& out);

// The code of a language of the host as a number, 0 behind the last. `name` may be none.
int32_t GetLanguageCode(int32_t index, String* name);
int32_t CountHostLanguages(); // at least 1
void ForgetLanguages();       // at the end of a life

enum class FollowLinks : bool { No, Yes };

// The child with a name in either case; with FollowLinks also a link to `linkSource`.
ContentRef FindChildByName(ContentRef parent, const String& name, ContentRef linkSource, FollowLinks follow, bool& foundByLink);
// The same with the name of another node's URL.
ContentRef FindChildByUrl(ContentRef child, ContentRef parent, FollowLinks follow, bool& foundByLink);
// The name itself, or with a counter in front of its extension if a child has it already;
// empty without memory.
void MakeUniqueName(const String& name, ContentRef parent, String& out);

} // namespace browser
