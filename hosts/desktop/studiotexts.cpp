#include "studiotexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace vx3::desktop {

namespace {

struct TextRow {
    Word word;
    const char* english;
    const char* german;
};

constexpr TextRow texts[] = {
    { Word::File, "&File", "&Datei" },
    { Word::Edit, "&Edit", "&Bearbeiten" },
    { Word::Window, "&Window", "&Fenster" },
    { Word::Help, "&Help", "&Hilfe" },
    { Word::Quit, "&Quit", "&Beenden" },
    { Word::Copy, "&Copy", "&Kopieren" },
    { Word::Paste, "&Paste", "&Einfügen" },
    { Word::Delete, "&Delete", "&Löschen" },
    { Word::SelectAll, "Select &All", "&Alles auswählen" },
    { Word::SelectNone, "Select &None", "&Nichts auswählen" },
    { Word::Invert, "&Invert Selection", "Auswahl &umkehren" },
    { Word::Preferences, "Pr&eferences…", "Ein&stellungen…" },
    { Word::Console, "&Console", "&Konsole" },
    { Word::NewBrowser, "&New Content Browser", "&Neuer Content-Browser" },
    { Word::Commands, "&Commands", "&Befehle" },
    { Word::Docked, "&Docked", "&Angedockt" },
    { Word::ShowWindow, "&Show", "&Zeigen" },
    { Word::NextPane, "&Next Pane", "&Nächster Bereich" },
    { Word::About, "&About VX3 Studio", "Ü&ber VX3 Studio" },
    { Word::AboutText, "<h3>VX3 Studio %1</h3><p>A host with windows for the content browser.</p><p>Qt %2. Licence: Apache-2.0.</p>",
      "<h3>VX3 Studio %1</h3><p>Ein Programm mit Fenstern für den Content-Browser.</p><p>Qt %2. Lizenz: Apache-2.0.</p>" },
    { Word::Shortcuts, "&Keyboard Shortcuts", "&Tastenkürzel" },
    { Word::ShortcutsText,
      "Arrows\tmove in the list, with Shift extend the selection\n"
      "Home, End, Page Up, Page Down\tmove far in the list\n"
      "Enter\topen what is selected\n"
      "Backspace\tone level up\n"
      "Letters\tgo to a name\n"
      "Tab, Shift+Tab\tnext and previous element\n"
      "F6\tnext pane of the main window\n"
      "Escape\tend a menu, a drag, a frame, a name that is being edited",
      "Pfeile\tin der Liste bewegen, mit Umschalt die Auswahl erweitern\n"
      "Pos1, Ende, Bild auf, Bild ab\tweit in der Liste bewegen\n"
      "Eingabe\töffnen, was ausgewählt ist\n"
      "Rücktaste\teine Ebene nach oben\n"
      "Buchstaben\tzu einem Namen gehen\n"
      "Tab, Umschalt+Tab\tnächstes und voriges Element\n"
      "F6\tnächster Bereich des Hauptfensters\n"
      "Escape\tMenü, Ziehen, Rahmen oder Umbenennen beenden" },
    { Word::Clear, "C&lear", "&Leeren" },
    { Word::CopyAll, "Copy &All", "&Alles kopieren" },
    { Word::NothingOpen, "No window is open here.", "Hier ist kein Fenster offen." },
    { Word::NoPages, "No module has preferences.", "Kein Modul hat Einstellungen." },
    { Word::Close, "&Close", "&Schließen" },
};

bool isGerman = false;

} // namespace

void SetLanguage(const std::string& code)
{
    isGerman = code == "de";
    static QTranslator qtTexts;
    QCoreApplication::removeTranslator(&qtTexts);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (isGerman && qtTexts.load(QStringLiteral("qtbase_de"), folder))
        QCoreApplication::installTranslator(&qtTexts);
}

QString Say(Word word)
{
    for (const TextRow& row : texts)
        if (row.word == word)
            return QString::fromUtf8(isGerman ? row.german : row.english);
    return {};
}

} // namespace vx3::desktop
