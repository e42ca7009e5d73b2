#include "studioconsole.h"

#include <QFontDatabase>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>

#include "studiotexts.h"

namespace vx3::desktop {

namespace {

constexpr int mostLines = 10000;

} // namespace

StudioConsole::StudioConsole(QWidget* parent)
    : QDockWidget(Say(Word::Console).remove(QLatin1Char('&')), parent)
    , lines(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("console"));
    lines->setReadOnly(true);
    lines->setMaximumBlockCount(mostLines);
    lines->setFrameShape(QFrame::NoFrame);
    lines->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    lines->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(lines, &QWidget::customContextMenuRequested, this, [this](QPoint at) { OpenMenu(at); });
    setWidget(lines);
}

void StudioConsole::Add(const std::string& line)
{
    const QScrollBar* bar = lines->verticalScrollBar();
    const bool followsEnd = bar->value() == bar->maximum(); // else the user reads something above
    lines->appendPlainText(QString::fromStdString(line));
    if (followsEnd)
        lines->verticalScrollBar()->setValue(lines->verticalScrollBar()->maximum());
}

void StudioConsole::OpenMenu(QPoint at)
{
    QMenu* menu = lines->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addSeparator();
    menu->addAction(Say(Word::CopyAll), this, [this] {
        const QTextCursor before = lines->textCursor();
        lines->selectAll();
        lines->copy();
        lines->setTextCursor(before);
    });
    menu->addAction(Say(Word::Clear), this, [this] { lines->clear(); });
    menu->popup(lines->mapToGlobal(at));
}

} // namespace vx3::desktop
