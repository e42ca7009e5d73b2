// The preference window: a page for each that modules have registered, made from its
// description (core/description.h).
//
// A value is shown as the module has it and handed over as soon as the user has changed
// it; one that is refused is shown again as it was. Main thread only.
#pragma once

#include <string>

#include <QDialog>

class QListWidget;
class QStackedWidget;

namespace vx3::desktop {

class StudioPreferences final : public QDialog
{
public:
    // `binary`: of the module whose pages these are.
    StudioPreferences(QWidget* parent, const std::string& binary);
    bool ShowPage(int32_t id); // false if there is none
    static bool HasPage(int32_t id);

private:
    void AddPages(const std::string& binary);

    QListWidget* names;
    QStackedWidget* pages;
};

} // namespace vx3::desktop
