// Files that are dragged into windows of modules from other programs, and out of them.
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include "desktop/qtfilenames.h"
#include "desktop/qtwindow.h"
#include "gesturefixture.h"

namespace {

using namespace vx3::tests;

using FileDragTest = GesturesTest;

TEST_F(FileDragTest, FilesOfOtherProgramsAreDroppedOneByOne)
{
    ShowPage(Areas);
    const QUrl plain(QStringLiteral("file:///tmp/a.png"));
    const QUrl odd = QUrl::fromEncoded("file:///tmp/b%80%20c.png"); // a name that is no UTF-8
    QMimeData data;
    data.setUrls({ plain, QUrl(QStringLiteral("https://example.org/c.png")), odd });
    QWidget& inside = *vx3::desktop::WindowOf(Window())->Inside();
    QWidget& area = WidgetOf(idDropArea);
    const QPoint at = area.mapTo(&inside, QPoint(10, 12));
    QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&inside, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDragMoveEvent move(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&inside, &move);
    EXPECT_TRUE(move.isAccepted());
    EXPECT_EQ(move.dropAction(), Qt::CopyAction);
    QDropEvent drop(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&inside, &drop);
    EXPECT_EQ(Heard(),
              "window: drag 202 over gadget 43 at 10 12 qualifiers 0\n"
              "window: drag 202 dropped gadget 43 at 10 12 qualifiers 0\n"
              "window: drag 202 dropped gadget 43 at 10 12 qualifiers 0\n");
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
}

TEST_F(FileDragTest, AProgramThatMovesItsFilesHearsOfACopyAndOfNothingWhereTheyAreRefused)
{
    ShowPage(Areas);
    QMimeData data;
    data.setUrls({ QUrl(QStringLiteral("file:///tmp/a.png")) });
    QWidget& inside = *vx3::desktop::WindowOf(Window())->Inside();
    const struct {
        int32_t id;
        Qt::DropActions offered;
        bool isTaken;
    } rows[] = {
        { idDropArea, Qt::CopyAction | Qt::MoveAction, true },
        { idBandArea, Qt::CopyAction | Qt::MoveAction, false },
        { idDropArea, Qt::MoveAction, false },
    };
    for (const auto& row : rows) {
        const QPoint at = WidgetOf(row.id).mapTo(&inside, QPoint(10, 12));
        QDragEnterEvent enter(at, row.offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&inside, &enter);
        QDragMoveEvent move(at, row.offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&inside, &move);
        EXPECT_EQ(move.isAccepted(), row.isTaken) << row.id;
        QDropEvent drop(at, row.offered, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(&inside, &drop);
        EXPECT_EQ(drop.isAccepted(), row.isTaken) << row.id;
        EXPECT_FALSE(drop.isAccepted() && drop.dropAction() == Qt::MoveAction);
        EXPECT_EQ(Heard().find("dropped") != std::string::npos, row.isTaken) << row.id;
    }
}

TEST(FileNames, GoIntoADragAndOutOfItWithAllTheirBytes)
{
    const std::vector<std::string> files = { "/tmp/plain.png", "/tmp/odd \x80%25\\#?.png", "/tmp/\xC3\xA4;\n" };
    EXPECT_EQ(vx3::desktop::PathsOf(*vx3::desktop::MimeOf(files)), files);
}

} // namespace
