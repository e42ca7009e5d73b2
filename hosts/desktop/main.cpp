// VX3 Studio: a host with windows for the content browser.
#include <cstdio>

#include <QFile>
#include <QIcon>
#include <QTimer>

#include "qtapplication.h"
#include "studioruns.h"

namespace {

using namespace vx3::desktop;

bool HasScreen()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// Before there is an application, which reads these.
void SetUpScreen(const StudioOptions& options)
{
    const bool isUnseen = !options.shot.empty() || (!options.script.empty() && !HasScreen());
    if (isUnseen)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (options.scale > 0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
}

void SetUpApplication(const StudioOptions& options)
{
    QApplication::setApplicationName(QStringLiteral("vx3-studio"));
    QApplication::setApplicationDisplayName(QStringLiteral("VX3 Studio"));
    QApplication::setApplicationVersion(QStringLiteral(VX3_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("vx3-studio"));
    QApplication::setQuitOnLastWindowClosed(false);
    // Behind the first painting, since its reader is a library of its own.
    QTimer::singleShot(0, qApp, [] { QApplication::setWindowIcon(QIcon(QStringLiteral(":/vx3-studio.svg"))); });
    SetLook(options.brightness);
}

int Run(const StudioOptions& options)
{
    if (!options.shot.empty())
        return RunShot(options);
    return options.script.empty() ? RunStudio(options) : RunScriptFile(options);
}

} // namespace

int main(int count, char** arguments)
{
    StudioOptions options;
    const std::string error = ParseOptions(std::vector<std::string>(arguments + 1, arguments + count), options);
    if (!error.empty()) {
        Complain(error + "; vx3-studio --help tells more");
        return static_cast<int>(Exit::Usage);
    }
    if (options.wantsVersion)
        return std::puts("vx3-studio " VX3_VERSION) < 0;
    if (options.wantsHelp)
        return std::fputs(HelpText().c_str(), stdout) < 0;
    SetUpScreen(options);
    if (options.shot.empty() && options.script.empty() && !HasScreen()) {
        Complain("there is no screen to show windows on; --shot FILE draws one into a file");
        return static_cast<int>(Exit::NotFound);
    }
    Application application(count, arguments);
    SetUpApplication(options);
    return Run(options);
}
