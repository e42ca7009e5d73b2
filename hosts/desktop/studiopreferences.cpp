#include "studiopreferences.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "core/registry.h"
#include "studiopage.h"
#include "studiotexts.h"

namespace vx3::desktop {

StudioPreferences::StudioPreferences(QWidget* parent, const std::string& binary)
    : QDialog(parent)
    , names(new QListWidget(this))
    , pages(new QStackedWidget(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(Say(Word::Preferences).remove(QLatin1Char('&')).remove(QChar(0x2026)));
    names->setMaximumWidth(fontMetrics().averageCharWidth() * 26);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(Say(Word::Close), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QWidget::close);
    connect(names, &QListWidget::currentRowChanged, pages, &QStackedWidget::setCurrentIndex);
    auto* across = new QHBoxLayout;
    across->addWidget(names);
    across->addWidget(pages, 1);
    auto* down = new QVBoxLayout(this);
    down->addLayout(across, 1);
    down->addWidget(buttons);
    AddPages(binary);
    names->setCurrentRow(0);
    names->setVisible(names->count() > 1);
}

bool StudioPreferences::HasPage(int32_t id)
{
    for (const core::RegisteredPage& page : core::RegisteredPages())
        if (page.id == id)
            return true;
    return false;
}

bool StudioPreferences::ShowPage(int32_t id)
{
    for (int row = 0; row < names->count(); ++row)
        if (names->item(row)->data(Qt::UserRole).toInt() == id) {
            names->setCurrentRow(row);
            return true;
        }
    return false;
}

void StudioPreferences::AddPages(const std::string& binary)
{
    std::vector<core::RegisteredPage> sorted = core::RegisteredPages();
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.sort < b.sort; });
    for (const core::RegisteredPage& page : sorted) {
        auto* item = new QListWidgetItem(QString::fromStdString(page.name), names);
        item->setData(Qt::UserRole, page.id);
        auto* view = new QScrollArea(pages);
        view->setFrameShape(QFrame::NoFrame);
        view->setWidgetResizable(true);
        view->setWidget(MakePage(page, binary));
        pages->addWidget(view);
    }
    if (sorted.empty())
        pages->addWidget(new QLabel(Say(Word::NoPages), pages));
}

} // namespace vx3::desktop
