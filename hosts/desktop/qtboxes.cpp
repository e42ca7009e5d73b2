#include "qtboxes.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>

#include "qtcodes.h"

namespace vx3::desktop {

namespace {

QByteArray BytesOf(const std::string& text)
{
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

// Every byte of a name may stand in a URL.
QUrl UrlOf(const std::string& path)
{
    return QUrl::fromEncoded("file://" + BytesOf(path).toPercentEncoding("/"), QUrl::StrictMode);
}

QString FilterOf(const std::u16string& patterns)
{
    return patterns.empty() ? QString() : QStringLiteral("%1 (%1)").arg(ToQt(patterns));
}

} // namespace

void ShowMessage(QWidget* parent, int32_t kind, const QString& text)
{
    QMessageBox box(kind == VX3_BOX_ERROR ? QMessageBox::Warning : QMessageBox::Information, QString(), text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.exec();
}

bool AskQuestion(QWidget* parent, const QString& text)
{
    QMessageBox box(QMessageBox::Question, QString(), text, QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

bool ChoosePath(QWidget* parent, const gui::ChooseRequest& request, std::string& chosen)
{
    QFileDialog dialog(parent, ToQt(request.title), QFile::decodeName(BytesOf(request.start)), FilterOf(request.filter));
    if (request.mode == VX3_CHOOSE_FOLDER) {
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly);
    } else if (request.mode == VX3_CHOOSE_SAVE) {
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    chosen = QFile::encodeName(dialog.selectedFiles().first()).toStdString();
    return true;
}

bool RevealInFileManager(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash != std::string::npos && QDesktopServices::openUrl(UrlOf(slash == 0 ? "/" : path.substr(0, slash)));
}

bool OpenWithSystem(const std::string& path)
{
    return QDesktopServices::openUrl(UrlOf(path));
}

} // namespace vx3::desktop
