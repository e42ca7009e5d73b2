// Groups that show something of themselves: frames with a title, tabs, splitters.
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOption>
#include <QTabBar>

#include "gui/layout.h"
#include "qtapplication.h"
#include "qtgadget.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

using gui::Change;

// The frame lies behind the gadgets of the group and gets no mouse.
class TitledFrame final : public QWidget
{
public:
    TitledFrame(QWidget* parent, const QtToolkit& ownToolkit)
        : QWidget(parent)
        , toolkit(ownToolkit)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    void SetTitle(const QString& wanted)
    {
        title = wanted;
        setAccessibleName(title);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const int top = toolkit.OwnMetrics().groupTitle;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(toolkit.FrameColour());
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, top + 0.5, -0.5, -0.5), 3, 3);
        style()->drawItemText(&painter, QRect(0, 0, width(), top), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), title,
                              QPalette::WindowText);
    }

private:
    const QtToolkit& toolkit;
    QString title;
};

bool IsPage(const Gadget& gadget)
{
    return gadget.parent && gadget.parent->shape.kind == VX3_GADGET_TABS;
}

class QtTitledGroup final : public QtGadget
{
public:
    QtTitledGroup(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
    {
        Own(new TitledFrame(Around(), ownToolkit));
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        static_cast<TitledFrame*>(Widget())->SetTitle(Text());
    }
};

// The row of tabs and the pane below it; the pages are placed by the layout.
class TabPane final : public QWidget
{
public:
    TabPane(QWidget* parent)
        : QWidget(parent)
        , bar(new QTabBar(this))
    {
        bar->setExpanding(false);
        bar->setElideMode(Qt::ElideRight);
        bar->setUsesScrollButtons(true);
    }
    QTabBar* Bar() { return bar; }
    void SetBarHeight(int height) { barHeight = height; }

protected:
    void resizeEvent(QResizeEvent*) override { bar->setGeometry(0, 0, width(), barHeight); }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QStyleOptionTabWidgetFrame option;
        option.initFrom(this);
        option.rect = rect().adjusted(0, barHeight - 1, 0, 0);
        option.lineWidth = 1;
        option.tabBarSize = bar->size();
        style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, this);
    }

private:
    QTabBar* bar;
    int barHeight = 0;
};

class QtTabs final : public QtGadget
{
public:
    QtTabs(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , pane(new TabPane(Around()))
    {
        Own(pane);
        QObject::connect(pane->Bar(), &QTabBar::currentChanged, pane, [this](int page) {
            if (page >= 0)
                toolkit.GetDesk().UserSetValue(gadget, page);
        });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        const QSignalBlocker blocker(pane->Bar());
        ShowTitles();
        pane->Bar()->setCurrentIndex(static_cast<int>(gadget.value));
    }
    QWidget* FocusWidget() override { return pane->Bar(); }

protected:
    void PlaceAt(const QRect& place) override
    {
        Show(Change::Rows); // the pages have come since the group was made
        pane->SetBarHeight(toolkit.OwnMetrics().tabBar);
        QtGadget::PlaceAt(place);
    }

private:
    void ShowTitles()
    {
        QTabBar* bar = pane->Bar();
        const int count = static_cast<int>(gadget.children.size());
        while (bar->count() > count)
            bar->removeTab(bar->count() - 1);
        for (int page = 0; page < count; ++page) {
            const QString title = ToQt(gadget.children[static_cast<size_t>(page)]->text);
            if (page == bar->count())
                bar->addTab(title);
            else if (bar->tabText(page) != title)
                bar->setTabText(page, title);
        }
    }

    TabPane* pane;
};

// What stands between the parts of a splitter. It tells where the user wants the border to
// be; the layout decides.
class Border final : public QWidget
{
public:
    Border(QWidget* parent, QtToolkit& ownToolkit, Gadget& ownSplitter, size_t ownIndex)
        : QWidget(parent)
        , toolkit(ownToolkit)
        , splitter(&ownSplitter)
        , index(ownIndex)
    {
        setCursor(gui::IsColumn(ownSplitter) ? Qt::SplitVCursor : Qt::SplitHCursor);
        setAttribute(Qt::WA_Hover);
    }
    void Forget() { splitter = nullptr; }

protected:
    void mousePressEvent(QMouseEvent* event) override { grabbedAt = event->position().toPoint(); }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!splitter || !(event->buttons() & Qt::LeftButton))
            return;
        const Point inside = toolkit.InsideCorner(splitter->dialog->Window());
        const Point corner = ToPoint(event->globalPosition().toPoint() - grabbedAt) - inside;
        toolkit.GetDesk().UserMovedSplitter(*splitter, index, gui::IsColumn(*splitter) ? corner.y : corner.x);
    }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QStyleOption option;
        option.initFrom(this);
        option.state.setFlag(QStyle::State_Horizontal, width() < height());
        style()->drawControl(QStyle::CE_Splitter, &option, &painter, this);
    }

private:
    QtToolkit& toolkit;
    Gadget* splitter;
    size_t index;
    QPoint grabbedAt;
};

class QtSplitter final : public QtGadget
{
public:
    QtSplitter(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
    {
    }
    ~QtSplitter() override { DropBorders(); }

protected:
    void PlaceAt(const QRect&) override
    {
        if (const std::vector<size_t> shown = ShownParts(); shown != parts)
            MakeBorders(shown);
        for (size_t border = 0; border < borders.size(); ++border) {
            borders[border]->setGeometry(PlaceOfBorder(*gadget.children[parts[border]]));
            borders[border]->setVisible(isVisible);
        }
    }

private:
    std::vector<size_t> ShownParts() const
    {
        std::vector<size_t> shown;
        for (size_t index = 0; index < gadget.children.size(); ++index)
            if (gadget.children[index]->IsShown())
                shown.push_back(index);
        return shown;
    }
    void MakeBorders(const std::vector<size_t>& shown)
    {
        DropBorders();
        parts = shown;
        for (size_t border = 0; border + 1 < shown.size(); ++border)
            borders.push_back(new Border(Around(), toolkit, gadget, shown[border]));
    }
    void DropBorders()
    {
        for (Border* border : borders) {
            border->Forget();
            border->hide();
            DeleteAfterEvents(*border);
        }
        borders.clear();
    }
    QRect PlaceOfBorder(const Gadget& part) const
    {
        const int width = toolkit.OwnMetrics().splitterWidth;
        Place place = part.place;
        if (const Gadget* scroll = ScrollGroupOf(gadget))
            place = place.Moved(Point() - scroll->place.Corner() - scroll->scrolled);
        if (gui::IsColumn(gadget))
            return { place.x, place.y + place.height, place.width, width };
        return { place.x + place.width, place.y, width, place.height };
    }

    std::vector<size_t> parts; // the children between which the borders are
    std::vector<Border*> borders;
};

} // namespace

std::unique_ptr<QtGadget> MakeGroup(QtToolkit& toolkit, Gadget& gadget)
{
    if (gadget.shape.kind == VX3_GADGET_TABS)
        return std::make_unique<QtTabs>(toolkit, gadget);
    if (gadget.shape.kind == VX3_GADGET_SPLITTER)
        return std::make_unique<QtSplitter>(toolkit, gadget);
    if (!gadget.text.empty() && !IsPage(gadget))
        return std::make_unique<QtTitledGroup>(toolkit, gadget);
    return std::make_unique<QtGadget>(toolkit, gadget);
}

} // namespace vx3::desktop
