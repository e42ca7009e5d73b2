// Libraries that are measured: made in the folder of the run, closed at the end of a scope without anything being written.
#pragma once

#include <memory>
#include <string>

#include "measure.h"
#include "storage/browserdatabaseitem.h"
#include "storage/librarytable.h"

namespace vx3::bench {

struct Closing {
    void operator()(browser::BrowserDatabase* library) const { browser::CloseLibrary(library); }
};
using Library = std::unique_ptr<browser::BrowserDatabase, Closing>;
using Item = std::unique_ptr<browser::BrowserDatabaseItem>;

Library MakeLibrary(const std::string& file);      // not loaded yet
Library MakeEmptyLibrary(const std::string& file); // of a new file; an old one goes

void MeasureLibraryGrowth(const std::string& folder);

} // namespace vx3::bench
