// The pane with the lines that modules and the host write. Main thread only: lines of other
// threads come through ConsoleLines (studiosession.h).
#pragma once

#include <string>

#include <QDockWidget>

class QPlainTextEdit;

namespace vx3::desktop {

class StudioConsole final : public QDockWidget
{
public:
    explicit StudioConsole(QWidget* parent);
    void Add(const std::string& line);

private:
    void OpenMenu(QPoint at);

    QPlainTextEdit* lines;
};

} // namespace vx3::desktop
