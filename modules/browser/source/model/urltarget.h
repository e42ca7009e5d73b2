// A URL that is looked for: its text, the lower-case form, and the hashes of all
// prefixes, which cost one pass. Knows no node.
#pragma once

#include "model/browserurl.h"
#include "model/crc32.h"

namespace browser {

class UrlTarget
{
public:
    explicit UrlTarget(BrowserURL& url);
    ~UrlTarget();
    UrlTarget(const UrlTarget&) = delete;
    UrlTarget& operator=(const UrlTarget&) = delete;

    uint32_t Length() const { return length; }
    bool IsFileUrl() const { return isFile; }
    // False without memory: then texts are compared.
    bool HasHashes() const { return states != nullptr; }
    uint32_t HashOfPrefix(uint32_t prefixLength) const { return FinishCrc(states[prefixLength]); }

    // The length of `other` if it is a prefix of the target in lower case, else 0.
    uint32_t MatchFolding(const String& other) const;
    // Is `other`, which matches folding, a prefix letter by letter?
    bool MatchesExactly(const String& other) const;
    // Does a prefix of this length end where a name ends?
    bool EndsComponent(uint32_t prefixLength) const;

private:
    static constexpr size_t stackStates = 513;

    String text;
    String lower;
    uint32_t length;
    bool isFile;
    CrcState stack[stackStates];
    CrcState* states; // in front of unit i; on the stack or the heap
};

} // namespace browser
