// The settings of the browser, kept by the host across runs.
//
// The container is touched on the main thread only. A stored number outside its bounds
// reads as the nearer bound. Without a container getters give the defaults and setters
// change nothing. What other threads need has a mirror, set at start and whenever a
// setter runs: a reader may see the old value for a moment, which does no harm.
#pragma once

#include "services/basecontainer.h"
#include "services/preferencetable.h"

namespace browser {

constexpr int32_t browserPreferencesId = 465001634; // the container, and its page

// At start: mirrors to their defaults; then the host's container is taken and the
// mirrors are read. Start URL and last place leave the network, since a window must
// not wait for one that is gone.
void SetPreferenceDefaults();
void ReadPreferences();
void ForgetPreferences(); // at the end: the container is the host's

// Any thread.
bool BackgroundEnabled();
bool PreviewFromFile();
bool PreviewAlways();
bool FoldersFirst();
int32_t BackgroundTimeLimit(); // seconds
int32_t PreviewWidth();        // pixels
int32_t PreviewHeight();
int32_t PreviewQuality(); // 1 to 100

// Main thread, with a key of the type. A setter is false if nothing could be kept.
int32_t GetPreferenceNumber(Preference key);
double GetPreferenceFloat(Preference key);
String GetPreferenceText(Preference key);
bool GetPreferenceContainer(Preference key, BaseContainer& out); // false, and `out` as it was, if nothing is stored
bool SetPreferenceNumber(Preference key, int32_t number);
bool SetPreferenceFloat(Preference key, double number);
bool SetPreferenceText(Preference key, const String& text);
bool SetPreferenceContainer(Preference key, const BaseContainer& value);

// For tools: any setting but a container as text. Setting refuses what is no value of
// the key, also a number outside its bounds.
bool PreferenceAt(int32_t index, VX3Preference& out);
bool IsInBounds(const VX3Preference& row, double number);
bool GetPreferenceText(int32_t key, String& out);
bool SetPreferenceText(int32_t key, const String& text);

} // namespace browser
