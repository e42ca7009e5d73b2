// The address of anything in the browser: a text, a file path, or both, converted
// lazily, and the hash of the lower-case text.
//
// A URL is a root such as "preset:/" and names joined by single slashes; nothing is
// escaped. A value has no lock: it changes itself while it is read, so threads take
// copies. Canonical text and hash are computed at most once for a value.
#pragma once

#include "services/filepath.h"
#include "vx3/browser.h"

namespace browser {

class BrowserURL
{
public:
    BrowserURL()
        : flags(textGiven | textCanonical)
    {
    }
    explicit BrowserURL(const String& newText)
        : BrowserURL()
    {
        SetText(newText);
    }
    explicit BrowserURL(const char* literal)
        : BrowserURL(String(literal))
    {
    }
    explicit BrowserURL(const FilePath& newPath)
        : BrowserURL()
    {
        SetFile(newPath);
    }

    BrowserURL(const BrowserURL& other)
        : BrowserURL()
    {
        *this = other;
    }
    BrowserURL& operator=(const BrowserURL& other); // empty without memory

    static BrowserURL& Of(VX3Url* url) { return *reinterpret_cast<BrowserURL*>(url); }
    static const BrowserURL& Of(const VX3Url* url) { return *reinterpret_cast<const BrowserURL*>(url); }

    void SetText(const String& newText);
    void SetFile(const FilePath& newPath);
    void SetFileAndText(const FilePath& newPath, const String& newText);

    const String& GetText(); // borrowed until the URL is changed
    void GetTextCopy(String& out) { out = GetText(); }
    void GetName(String& out);
    void GetParent(BrowserURL& out);
    void Join(const String& name, BrowserURL& out);
    void Append(const String& name);
    void AppendAlways(const String& name);
    bool Equals(BrowserURL& other) { return GetText() == other.GetText(); }

    uint32_t GetHash();
    void SetHash(uint32_t stored);

    bool HasFile();
    bool GetFile(FilePath& out);
    FilePath GetFileCopy();
    // The path if there is one at hand already; asks nobody.
    bool GetKnownFile(FilePath& out) const { return (flags & pathValid) && out.Set(path); }
    bool HasExtension(const String& suffix);
    void GetExtension(String& out); // in lower case
    bool HasContent() const;
    // The name of a file whose text nobody has asked for yet; false for other values.
    bool GetFileName(String& out) const { return (flags & (pathValid | textCanonical)) == pathValid && path.GetLast(out); }

    // Hash and length of the address of a file, without its text being kept. False
    // without memory.
    struct Key {
        uint32_t hash = 0;
        uint32_t length = 0; // units
    };
    [[nodiscard]] static bool KeyOfFile(const FilePath& file, Key& out);

private:
    // Finds the path of a "network:/" URL in the tree; connected at start.
    friend void ConnectNetworkResolver(bool (*resolver)(BrowserURL& url, FilePath& path));

    enum : uint32_t {
        textGiven = 1,     // `text` was set as text and may be a URL without a file path
        textCanonical = 2, // `text` can be read as it stands
        pathValid = 4,
        hashValid = 8,
        conversionFailed = 16, // to a file path; not tried again
    };

    void MakeCanonical();
    bool ComposeText();
    bool SetPathFromText();
    void SettleZero(); // all zero is an empty value, too
    void DropTrailingSlash();
    String LastComponent();

    uint32_t flags;
    uint32_t hash = 0;
    FilePath path;
    String text;
};

static_assert(sizeof(BrowserURL) == sizeof(VX3Url));

} // namespace browser
