#include "studiooptions.h"

#include <filesystem>

#include <QCommandLineParser>
#include <QRegularExpression>

namespace vx3::desktop {

namespace {

constexpr double leastScale = 0.5;
constexpr double mostScale = 4;
constexpr int leastSide = 100;
constexpr int mostSide = 16000;

// A byte is a letter, so that names of files come through as they are.
QString FromBytes(const std::string& bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string ToBytes(const QString& text)
{
    return text.toLatin1().toStdString();
}

const QList<QCommandLineOption>& OptionList()
{
    const auto option = [](const char* name, const char* help, const char* value = "") {
        return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help), QString::fromLatin1(value));
    };
    static const QList<QCommandLineOption> list = {
        option("profile", "Keep all folders of the program below DIR.", "DIR"),
        option("lang", "Language: us or de.", "CODE"),
        option("module", "The browser module to load.", "FILE"),
        option("shot", "Draw the browser's window into the PNG file FILE and leave. Needs no screen.", "FILE"),
        option("size", "Size of the window in a shot, such as 1280x800.", "WxH"),
        option("scale", "Dots of the screen for each pixel, such as 1.5.", "F"),
        option("script", "Play the script FILE, print what it dumps, and leave.", "FILE"),
        option("folder", "Where the script makes its files; one of its own if not given.", "DIR"),
        option("until-painted", "Leave when the first window with its content has been painted, to measure how long that takes."),
        option("dark", "Dark colours."),
        option("light", "Light colours."),
        QCommandLineOption({ QStringLiteral("h"), QStringLiteral("help") }, QStringLiteral("Tell about the options and leave.")),
        option("version", "Print the version and leave."),
    };
    return list;
}

void SetUp(QCommandLineParser& parser)
{
    parser.addOptions(OptionList());
    parser.addPositionalArgument(QStringLiteral("place"), QStringLiteral("Where to begin: a URL, a folder or a file."),
                                 QStringLiteral("[URL|PATH]"));
}

std::string Quoted(const QString& bytes)
{
    return "'" + ToBytes(bytes) + "'";
}

std::string ReadSize(const QString& text, QSize& size)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
    const bool isGood =
        match.hasMatch() && std::min(size.width(), size.height()) >= leastSide && std::max(size.width(), size.height()) <= mostSide;
    return isGood ? "" : "--size is a width and a height from 100 to 16000, such as 1280x800, not " + Quoted(text);
}

std::string ReadScale(const QString& text, double& scale)
{
    bool isNumber = false;
    scale = text.toDouble(&isNumber);
    return isNumber && scale >= leastScale && scale <= mostScale ? "" : "--scale is a number from 0.5 to 4, not " + Quoted(text);
}

std::string ReadPlace(const QCommandLineParser& parser, std::string& place)
{
    const QStringList words = parser.positionalArguments();
    if (words.size() > 1)
        return "one place is enough: " + Quoted(words[1]);
    if (words.isEmpty())
        return {};
    place = ToBytes(words[0]);
    return place.empty() ? "the place must not be empty" : "";
}

std::string CheckTogether(const QCommandLineParser& parser, const StudioOptions& options)
{
    const auto isSet = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
    if (isSet("dark") && isSet("light"))
        return "--dark and --light exclude each other";
    if (isSet("shot") && isSet("script"))
        return "--shot and --script exclude each other: a script takes pictures by itself";
    if (isSet("size") && !isSet("shot"))
        return "--size goes with --shot";
    if (isSet("folder") && !isSet("script"))
        return "--folder goes with --script";
    if (isSet("script") && !options.place.empty())
        return "a script opens its places by itself";
    if (isSet("lang") && options.language != "us" && options.language != "de")
        return "--lang is us or de, not '" + options.language + "'";
    return {};
}

} // namespace

std::string ParseOptions(const std::vector<std::string>& words, StudioOptions& options)
{
    QStringList list = { QStringLiteral("vx3-studio") };
    for (const std::string& word : words)
        list.append(FromBytes(word));
    QCommandLineParser parser;
    SetUp(parser);
    if (!parser.parse(list))
        return ToBytes(parser.errorText());
    const auto value = [&parser](const char* name) { return parser.value(QString::fromLatin1(name)); };
    for (const QString& name : parser.optionNames())
        if (parser.values(name).contains(QString()))
            return "--" + ToBytes(name) + " needs a value";
    const auto isSet = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
    options.wantsHelp = isSet("help");
    options.wantsVersion = isSet("version");
    options.untilPainted = isSet("until-painted");
    options.profile = ToBytes(value("profile"));
    options.language = ToBytes(value("lang"));
    options.module = ToBytes(value("module"));
    options.shot = ToBytes(value("shot"));
    options.script = ToBytes(value("script"));
    options.folder = ToBytes(value("folder"));
    options.brightness = isSet("dark") ? Brightness::Dark : isSet("light") ? Brightness::Light : Brightness::Desktop;
    std::string error = ReadPlace(parser, options.place);
    if (error.empty() && isSet("size"))
        error = ReadSize(value("size"), options.size);
    if (error.empty() && isSet("scale"))
        error = ReadScale(value("scale"), options.scale);
    return error.empty() ? CheckTogether(parser, options) : error;
}

std::string HelpText()
{
    std::string text = "vx3-studio [URL|PATH] [options]\n\nA host with windows for the content browser. Opens it on a place, or where it "
                       "begins usually.\n\n";
    for (const QCommandLineOption& option : OptionList()) {
        QString line = QStringLiteral("  --%1 %2").arg(option.names().last(), option.valueName());
        text += ToBytes(line.leftJustified(20)) + ToBytes(option.description()) + "\n";
    }
    text += "\nVX3_BROWSER_MODULE is the module to load if --module is not given.\n"
            "Exits with 0; 1 if a script went otherwise than it says or a picture was not written; 2 if the command\n"
            "line was not understood; 3 if something was not found; 4 if the module is damaged.\n";
    return text;
}

std::string AbsolutePath(const std::string& path)
{
    std::error_code failed;
    std::string absolute = std::filesystem::absolute(path, failed).lexically_normal().string();
    if (failed)
        return path;
    if (absolute.size() > 1 && absolute.back() == '/')
        absolute.pop_back();
    return absolute;
}

bool IsUrl(const std::string& place)
{
    return place.find(":/") != std::string::npos && place[0] != '/' && place[0] != '.';
}

} // namespace vx3::desktop
