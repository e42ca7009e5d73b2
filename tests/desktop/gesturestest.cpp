// What a user does in windows of Qt with no script around: nested loops run by themselves,
// and the time is that of the machine.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPaintEvent>
#include <QSlider>

#include "desktop/qtgadget.h"
#include "desktop/qtlook.h"
#include "desktop/qtsurface.h"
#include "desktop/qtwindow.h"
#include "gesturefixture.h"

namespace {

using namespace vx3::tests;
using vx3::gui::Change;
using vx3::gui::Gadget;
using vx3::gui::Point;

TEST_F(GesturesTest, AFineWheelMovesByWhatItTurnsAndTheModuleHearsOfWholeNotches)
{
    ShowPage(Areas);
    Gadget& area = Find(idBandArea);
    for (int part = 0; part < 8; ++part)
        driver.Wheel(area, Find(idScroll).scrolled + Point{ 20, 20 }, -15, 0);
    EXPECT_EQ(Find(idScroll).scrolled.y, 60) << "as far as one notch of a usual wheel";
    EXPECT_EQ(Heard(), "band area: channel 7 value -120 at 20 72 qualifiers 0\n");
    driver.Wheel(area, { 20, 80 }, -120, 0);
    EXPECT_EQ(Find(idScroll).scrolled.y, 120);
    Heard();
    driver.Wheel(area, { 20, 140 }, -60, VX3_QUALIFIER_CTRL);
    EXPECT_EQ(Find(idScroll).scrolled.y, 120) << "with a key held nobody knows yet whether it is a zoom";
    EXPECT_EQ(Heard(), "");
}

// Counts the dots that are painted anew.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget& ownWidget)
        : widget(ownWidget)
    {
        widget.installEventFilter(this);
    }
    int pixels = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            for (const QRect& part : static_cast<QPaintEvent*>(event)->region())
                pixels += part.width() * part.height();
        return false;
    }

private:
    QWidget& widget;
};

TEST_F(GesturesTest, ScrollingPaintsWhatComesIntoViewAlone)
{
    ShowPage(Areas);
    QWidget& area = WidgetOf(idBandArea);
    PaintWatch watch(area);
    desk.UserScrolled(Find(idScroll), { 0, 37 });
    LetGo();
    EXPECT_GE(watch.pixels, 37 * (area.width() - 2));
    EXPECT_LE(watch.pixels, 40 * area.width());
    watch.pixels = 0;
    QApplication::setPalette(QPalette(Qt::darkBlue));
    LetGo();
    EXPECT_GE(watch.pixels, area.width() * area.height()) << "other colours, all of it";
    vx3::desktop::SetLook(vx3::desktop::Brightness::Light);
    LetGo();
}

TEST_F(GesturesTest, AMenuEndsWithoutAChoiceWhenItsWindowCloses)
{
    ShowPage(Areas);
    Later([this] {
        ASSERT_TRUE(QApplication::activePopupWidget());
        gallery->Do(static_cast<int32_t>(GalleryDeed::CloseFromModule));
    });
    driver.Mouse(Find(idBandArea), { 15, 15 }, VX3_CHANNEL_RIGHT, 0, true, false);
    EXPECT_NE(Heard().find("menu: 0\n"), std::string::npos);
    EXPECT_TRUE(desk.Windows().empty());
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(GesturesTest, AMenuAnswersTheRowThatIsTriggered)
{
    ShowPage(Areas);
    Later([] {
        auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        EXPECT_TRUE(menu->actions()[1]->isChecked());
        EXPECT_FALSE(menu->actions()[3]->isEnabled());
        menu->actions()[0]->trigger();
        menu->close();
    });
    driver.Mouse(Find(idBandArea), { 15, 15 }, VX3_CHANNEL_RIGHT, 0, true, false);
    EXPECT_NE(Heard().find("menu: 5"), std::string::npos);
}

TEST_F(GesturesTest, ABandAtTheEdgeScrollsItsGroup)
{
    ShowPage(Areas);
    Gadget& area = Find(idBandArea);
    Later([this, &area] {
        driver.MoveMouse(area, { 150, Find(idScroll).view.height + 30 }, 0);
        EXPECT_TRUE(WaitFor([this] { return Find(idScroll).scrolled.y > 60; }));
        const Point end = { 150, Find(idScroll).scrolled.y + 100 };
        driver.Mouse(area, end, VX3_CHANNEL_LEFT, 0, false, false);
    });
    driver.Mouse(area, { 170, 150 }, VX3_CHANNEL_LEFT, 0, true, false);
    const std::string heard = Heard();
    EXPECT_NE(heard.find("rubber band: rectangle 150 150 170 "), std::string::npos) << heard;
}

TEST_F(GesturesTest, AModalWindowHoldsUpOthersUntilItCloses)
{
    bool wasBlocked = false;
    Later([this, &wasBlocked] {
        ASSERT_TRUE(WaitFor([] { return QApplication::activeModalWidget() != nullptr; }));
        wasBlocked = desk.Windows().size() == 2;
        desk.UserClosed(*desk.Windows().back());
    });
    desk.UserPressed(Find(idModal));
    EXPECT_TRUE(wasBlocked);
    EXPECT_NE(Heard().find("modal: 0"), std::string::npos);
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(GesturesTest, AWidgetThatGoesWhileItsEventWaitsStaysUntilTheEventIsOver)
{
    ShowPage(Fields);
    QPointer<QWidget> box = &WidgetOf(idCheck);
    bool wasThere = false;
    QObject::connect(static_cast<QCheckBox*>(box.data()), &QCheckBox::clicked, qApp, [&] {
        QEventLoop nested;
        gallery->Do(static_cast<int32_t>(GalleryDeed::Rebuild));
        QTimer::singleShot(50, &nested, &QEventLoop::quit);
        nested.exec();
        wasThere = box && !box->isVisible() && box != &WidgetOf(idCheck);
    });
    driver.Push(Find(idCheck));
    EXPECT_TRUE(wasThere);
    LetGo();
    EXPECT_FALSE(box);
}

TEST_F(GesturesTest, AWindowThatClosesBeforeItIsShownIsNeverShown)
{
    class ShowWatch : public QObject
    {
    public:
        int shown = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            shown += event->type() == QEvent::Show;
            return false;
        }
    };
    gallery->Do(static_cast<int32_t>(GalleryDeed::CloseFromModule));
    LetGo();
    ASSERT_TRUE(gallery->Open());
    const QPointer<QWidget> frame = vx3::desktop::WindowOf(Window())->Frame();
    ShowWatch watch;
    frame->installEventFilter(&watch);
    gallery->Do(static_cast<int32_t>(GalleryDeed::CloseFromModule));
    LetGo();
    EXPECT_EQ(watch.shown, 0);
    EXPECT_FALSE(frame);
}

TEST_F(GesturesTest, APopupEditEndsWithTheFocusAndGivesItBack)
{
    gallery->Do(static_cast<int32_t>(GalleryDeed::FocusEdit));
    LetGo();
    QWidget* before = QApplication::focusWidget();
    ASSERT_EQ(before, &WidgetOf(idEdit));
    desk.UserPressed(Find(idRename));
    LetGo();
    QLineEdit* field = toolkit.GetPopupEdit().Field();
    ASSERT_TRUE(field);
    EXPECT_EQ(QApplication::focusWidget(), field);
    EXPECT_EQ(Window().focus, &Find(idEdit)) << "for the module the gadget below it keeps the focus";
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &escape);
    EXPECT_EQ(QApplication::focusWidget(), before);
    EXPECT_NE(Heard().find("popup edit cancelled"), std::string::npos);
}

TEST_F(GesturesTest, ARowOfAFreeComboIsChosenWithOneCommandAndItsTextIsTheGadgets)
{
    ShowPage(Fields);
    auto& combo = static_cast<QComboBox&>(WidgetOf(idFreeCombo));
    combo.setCurrentIndex(-1);
    combo.setFocus();
    LetGo();
    Heard();
    driver.Key(Window(), VX3_KEY_DOWN, 0, {});
    EXPECT_EQ(Heard(), "window: message inta\nwindow: command 28 value 1 text \"umber\"\nwindow: message inte\n");
    EXPECT_EQ(combo.currentText(), QStringLiteral("umber"));
    combo.lineEdit()->setCursorPosition(2);
    for (Change change : { Change::Enabled, Change::Tip, Change::Value })
        toolkit.ShowGadget(Find(idFreeCombo), change);
    EXPECT_EQ(combo.lineEdit()->cursorPosition(), 2) << "nothing is different";
    driver.Key(Window(), 'X', 0, u"x");
    EXPECT_EQ(Heard(), "window: message inta\nwindow: command 28 value 0 text \"umxber\"\nwindow: message inte\n");
}

TEST_F(GesturesTest, ValuesOutOfAllBoundsAreShown)
{
    ShowPage(Fields);
    Gadget& slider = Find(idSlider);
    slider.most = 1e300;
    slider.step = 1e-300;
    slider.value = 5e299;
    toolkit.ShowGadget(slider, Change::Everything);
    const auto& shown = static_cast<QSlider&>(WidgetOf(idSlider));
    EXPECT_NEAR(shown.value(), shown.maximum() / 2, 1);
    Find(idCombo).value = 1e300;
    toolkit.ShowGadget(Find(idCombo), Change::Value);
    EXPECT_EQ(static_cast<QComboBox&>(WidgetOf(idCombo)).currentIndex(), -1);
}

TEST_F(GesturesTest, TheMenuKeyIsAPressOfTheRightButtonInTheMiddle)
{
    ShowPage(Areas);
    QWidget& area = WidgetOf(idBandArea);
    for (bool isMenuKey : { false, true }) {
        Later([] {
            if (QWidget* menu = QApplication::activePopupWidget())
                menu->close();
        });
        QKeyEvent keys(QEvent::KeyPress, Qt::Key_F10, Qt::ShiftModifier);
        QContextMenuEvent told(QContextMenuEvent::Keyboard, QPoint(1, 1), area.mapToGlobal(QPoint(1, 1)));
        QEvent& event = isMenuKey ? static_cast<QEvent&>(told) : keys;
        QCoreApplication::sendEvent(&area, &event);
        const QPoint middle = area.rect().center();
        const std::string at = std::to_string(middle.x()) + " " + std::to_string(middle.y());
        EXPECT_NE(Heard().find("band area: channel 2 value 1 at " + at + " "), std::string::npos) << isMenuKey;
    }
}

TEST_F(GesturesTest, WhatShowsNoTextHasANameThatIsReadOut)
{
    ShowPage(Areas);
    Gadget& area = Find(idBandArea);
    EXPECT_EQ(WidgetOf(idBandArea).accessibleName(), vx3::desktop::ToQt(Window().title));
    area.tip = u"&Bands";
    toolkit.ShowGadget(area, Change::Tip);
    EXPECT_EQ(WidgetOf(idBandArea).accessibleName(), vx3::desktop::PlainTip(QStringLiteral("&Bands")));
    area.tip.clear();
    Window().title = u"Other";
    toolkit.ShowTitle(Window());
    EXPECT_EQ(WidgetOf(idBandArea).accessibleName(), QStringLiteral("Other"));
}

TEST_F(GesturesTest, AScriptFailsWhereItAsksForWhatThereIsNot)
{
    const struct {
        const char* line;
        const char* says;
    } rows[] = {
        { "dump displaylist\n", "keeps no list" },
    };
    for (const auto& row : rows)
        EXPECT_NE(Play(row.line).find(row.says), std::string::npos) << Play(row.line);
}

TEST_F(GesturesTest, TabGoesThroughTheGadgetsInTheOrderOfTheLayout)
{
    WidgetOf(idTabs).setFocus();
    std::vector<int32_t> order;
    for (int step = 0; step < 10; ++step) {
        driver.Key(Window(), VX3_KEY_TAB, 0, u"\t");
        const int32_t id = Window().focus ? Window().focus->shape.id : 0;
        if (order.empty() || order.back() != id) // a date has three parts
            order.push_back(id);
    }
    EXPECT_EQ(order, (std::vector<int32_t>{ idEdit, idMultiline, idNumber, idDate, idCheck, idToggle, idCombo, idFreeCombo }));
    driver.Key(Window(), VX3_KEY_TAB, VX3_QUALIFIER_SHIFT, {});
    EXPECT_EQ(Window().focus->shape.id, idCombo);
}

TEST_F(GesturesTest, AWindowThatIsClosedByItsFrameAsksItsModule)
{
    gallery->Do(static_cast<int32_t>(GalleryDeed::RefuseClose));
    QWidget* frame = vx3::desktop::WindowOf(Window())->Frame();
    EXPECT_FALSE(frame->close());
    EXPECT_EQ(desk.Windows().size(), 1u);
    gallery->Do(static_cast<int32_t>(GalleryDeed::RefuseClose));
    frame->close();
    EXPECT_TRUE(desk.Windows().empty());
    EXPECT_FALSE(frame->isVisible());
    LetGo();
}

} // namespace
