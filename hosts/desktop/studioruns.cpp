#include "studioruns.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPixmap>

#include "core/livecounts.h"
#include "gui/browserscript.h"
#include "headless/temporaryfolder.h"
#include "headless/threadstate.h"
#include "qtdriver.h"
#include "qtsurface.h"
#include "qtwindow.h"
#include "studiotexts.h"
#include "studiowindow.h"

namespace vx3::desktop {

namespace {

constexpr auto shotPatience = std::chrono::seconds(60);
constexpr auto shotRest = std::chrono::milliseconds(700); // in which nothing happened

int Refuse(const Failure& failure)
{
    Complain(failure.sentence);
    return static_cast<int>(failure.exit);
}

// Goes on with the main loop until the browser has had nothing to do for a while.
void LetSettle(StudioSession& session)
{
    const auto start = std::chrono::steady_clock::now();
    auto restSince = start;
    while (std::chrono::steady_clock::now() - start < shotPatience && std::chrono::steady_clock::now() - restSince < shotRest) {
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        const bool hasThreads = core::liveCounters.threads.Get() > 0;
        const bool isBusy = session.GetDesk().HasPosted() || gui::IsBrowserWorking(session.Browser());
        if (isBusy || (hasThreads && !headless::OtherThreadsSleep()))
            restSince = std::chrono::steady_clock::now();
    }
}

bool ReadFile(const std::string& name, std::string& content)
{
    std::ifstream file(name, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    content = bytes.str();
    return file.good() && bytes.good();
}

void PrintLine(const std::string& line)
{
    std::fputs(line.c_str(), stdout);
    if (line.empty() || line.back() != '\n')
        std::fputc('\n', stdout);
}

bool SayHowItWent(const gui::Desk& desk)
{
    std::string what;
    const double longest = desk.LongestEvent(&what);
    char text[64];
    std::snprintf(text, sizeof text, "longest event: %.1f ms", longest);
    Complain(text + (what.empty() ? std::string() : " (" + what + ")"));
    Complain("calls from wrong threads: " + std::to_string(desk.ThreadViolations()));
    return desk.ThreadViolations() == 0;
}

// Each run is like the first: a profile of its own, and a home folder in that of the scenario.
int PlayIn(const std::string& folder, const std::string& text, StudioOptions options, const std::string& profile)
{
    if (options.profile.empty())
        options.profile = profile;
    if (options.language.empty())
        options.language = "us";
    options.home = folder;
    SetLanguage(options.language);
    StudioSession session(options);
    if (Failure failure = session.Open(options))
        return Refuse(failure);
    QtDriver driver(session.GetDesk(), session.Toolkit());
    driver.SetWorking([&session] { return gui::IsBrowserWorking(session.Browser()); });
    const std::string failed = driver.RunScript(text, gui::ProgramOf(session.Browser(), folder), PrintLine);
    if (!failed.empty())
        Complain(options.script + ": " + failed);
    const bool isClean = SayHowItWent(session.GetDesk());
    return static_cast<int>(failed.empty() && isClean ? Exit::Done : Exit::SomeFailed);
}

// Ends the program when an area of a window has been painted.
class FirstPainting final : public QObject
{
public:
    FirstPainting() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && dynamic_cast<Surface*>(object))
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return false;
    }
};

} // namespace

void Complain(const std::string& sentence)
{
    std::fprintf(stderr, "vx3-studio: %s\n", sentence.c_str());
}

int RunStudio(const StudioOptions& options)
{
    StudioSession session(options);
    SetLanguage(session.Core().Settings().language);
    if (Failure failure = session.Open(options))
        return Refuse(failure);
    StudioWindow window(session);
    window.Restore();
    if (Failure failure = window.OpenWindows(options.place))
        return Refuse(failure);
    window.show();
    std::unique_ptr<FirstPainting> firstPainting;
    if (options.untilPainted)
        firstPainting = std::make_unique<FirstPainting>();
    return QApplication::exec();
}

int RunShot(const StudioOptions& options)
{
    StudioSession session(options);
    SetLanguage(session.Core().Settings().language);
    session.Console().SetListener([](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
    if (Failure failure = session.Open(options))
        return Refuse(failure);
    if (Failure failure = session.OpenPlace(options.place))
        return Refuse(failure);
    QCoreApplication::processEvents();
    const std::vector<Dialog*> windows = session.GetDesk().Windows();
    if (windows.empty())
        return Refuse({ Exit::Damaged, "the browser opened no window" });
    WindowFrame* frame = WindowOf(*windows.front())->Frame();
    if (options.size.isValid())
        frame->resize(options.size);
    LetSettle(session);
    const std::string file = AbsolutePath(options.shot);
    if (!frame->grab().save(QFile::decodeName(QByteArray::fromStdString(file)), "PNG"))
        return Refuse({ Exit::SomeFailed, "the picture '" + file + "' could not be written" });
    return static_cast<int>(Exit::Done);
}

int RunScriptFile(const StudioOptions& options)
{
    std::string text;
    if (!ReadFile(options.script, text))
        return Refuse({ Exit::NotFound, "the script '" + options.script + "' cannot be read" });
    const headless::TemporaryFolder made("vx3studio");
    std::error_code failed;
    const std::string folder = options.folder.empty() ? made.Path() + "/folder" : AbsolutePath(options.folder);
    std::filesystem::create_directories(folder, failed);
    if (made.Path().empty() || failed)
        return Refuse({ Exit::SomeFailed, "the folder '" + folder + "' cannot be made" });
    return PlayIn(folder, text, options, made.Path() + "/profile");
}

} // namespace vx3::desktop
