#include <tests/support/DropFixture.h>

#include <tests/support/Sandbox.h>

#include <tests/support/TestMain.h>
#include <ui/scenes/TableView.h>

#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A list that covers the hidden drop target of the same window.
struct Scene
{
    Scene()
    {
        window.setContentViewController(controller);
        target = new DragFilesHereView(controller->view());
        list = new TableView(controller->view());
        list->setGeometry(0, 0, 300, 300);
        target->takeDropsOf(window);
        target->outlineToo(*list);
        window.show();
        target->hide();
    }

    QColor colorAt(int x, int y) const { return list->grab().toImage().pixelColor(x, y); }

    std::shared_ptr<ReceivingController> controller = ViewController::make<ReceivingController>();
    ui::Window window;
    DragFilesHereView *target;
    TableView *list;
};
} // namespace

class DropForwarderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropOnTheListIsSearchedFor()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s, u"file:///b.mkv"_s});
        Dragging dragging(*scene.list->viewport(), *files);
        m_sandbox.clearPrintedLines();
        QVERIFY(dragging.enter());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(dragging.move());
        QVERIFY(dragging.drop());
        QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(u"file:///a.mkv"_s)});
        QCOMPARE(m_sandbox.printedLines(), QStringList({u"draggingEntered"_s, u"file:///a.mkv"_s}));
    }

    void listIsOutlinedWhileADragIsOverIt()
    {
        Scene scene;
        const QColor outline = scene.list->palette().color(QPalette::Active, QPalette::Highlight);
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(*scene.list->viewport(), *files);
        QVERIFY(scene.colorAt(0, 10) != outline);
        QVERIFY(dragging.enter());
        for (const QPoint &point :
             {QPoint(0, 150), QPoint(3, 150), QPoint(299, 150), QPoint(150, 0), QPoint(150, 299)})
            QCOMPARE(scene.colorAt(point.x(), point.y()), outline);
        for (const QPoint &point : {QPoint(150, 4), QPoint(150, 150), QPoint(150, 295)})
            QVERIFY(scene.colorAt(point.x(), point.y()) != outline);
        dragging.leave();
        QVERIFY(scene.colorAt(0, 150) != outline);
        QVERIFY(dragging.enter());
        QVERIFY(dragging.drop());
        QVERIFY(scene.colorAt(0, 150) != outline);
    }

    void outlineLiesOverWhatCameLater()
    {
        Scene scene;
        QWidget cover(scene.list);
        cover.setAutoFillBackground(true);
        cover.setGeometry(0, 100, 300, 100);
        cover.show();
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(*scene.list->viewport(), *files);
        QVERIFY(dragging.enter());
        QCOMPARE(scene.colorAt(0, 150), scene.list->palette().color(QPalette::Active, QPalette::Highlight));
    }

    void refusedDragGivesNoOutline()
    {
        Scene scene;
        const QColor outline = scene.list->palette().color(QPalette::Active, QPalette::Highlight);
        QMimeData text;
        text.setText(u"a text"_s);
        Dragging dragging(*scene.list->viewport(), text);
        QVERIFY(!dragging.enter());
        QVERIFY(scene.colorAt(0, 150) != outline);
        QVERIFY(!dragging.drop());
        QCOMPARE(scene.controller->urls, QList<QUrl>());
    }

    void plainViewIsOutlinedToo()
    {
        Scene scene;
        QWidget panel(scene.controller->view());
        panel.resize(100, 50);
        panel.show();
        scene.target->outlineToo(panel);
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(panel, *files);
        QVERIFY(dragging.enter());
        QCOMPARE(panel.grab().toImage().pixelColor(0, 49),
                 panel.palette().color(QPalette::Active, QPalette::Highlight));
    }

    void dropAnywhereOnTheWindowIsSearchedFor()
    {
        Scene scene;
        QWidget header(scene.controller->view());
        auto *button = new QPushButton(&header);
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        for (QWidget *place : {static_cast<QWidget *>(&scene.window), &header, static_cast<QWidget *>(button),
                               static_cast<QWidget *>(scene.target)}) {
            scene.controller->urls.clear();
            Dragging dragging(*place, *files);
            QVERIFY(dragging.enter());
            QVERIFY(dragging.move());
            QVERIFY(dragging.drop());
            QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(u"file:///a.mkv"_s)});
        }
    }

    void refusedDragPrintsOnceAtEachEnd()
    {
        Scene scene;
        scene.target->show();
        for (QWidget *place : {static_cast<QWidget *>(&scene.window), static_cast<QWidget *>(scene.target)}) {
            m_sandbox.clearPrintedLines();
            Dragging dragging(*place, *plainText());
            QVERIFY(!dragging.enter());
            QVERIFY(!dragging.move());
            QCOMPARE(m_sandbox.printedLines(), QStringList(1, u"draggingEntered"_s));
            dragging.leave();
            QCOMPARE(m_sandbox.printedLines(), QStringList(2, u"draggingEntered"_s));
        }
    }

    void windowIsOnePlace()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        QDragEnterEvent enter({200, 200}, Qt::CopyAction, files.get(), Qt::LeftButton, Qt::NoModifier);
        m_sandbox.clearPrintedLines();
        QCoreApplication::sendEvent(&scene.window, &enter);
        // As the toolkit does it where one view borders on another.
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&scene.window, &leave);
        QCoreApplication::sendEvent(&scene.window, &enter);
        QCoreApplication::sendPostedEvents();
        QVERIFY(scene.target->isReceivingDrag);
        QCOMPARE(m_sandbox.printedLines(), QStringList(1, u"draggingEntered"_s));
        QCoreApplication::sendEvent(&scene.window, &leave);
        QTRY_VERIFY(!scene.target->isReceivingDrag);
        QCOMPARE(m_sandbox.printedLines(), QStringList(2, u"draggingEntered"_s));
    }

    void windowIsTakenOnce()
    {
        Scene scene;
        const qsizetype before = scene.window.children().size();
        scene.target->takeDropsOf(scene.window);
        QCOMPARE(scene.window.children().size(), before);
    }

    void targetMayGoFirst()
    {
        Scene scene;
        delete scene.target;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(*scene.list->viewport(), *files);
        QVERIFY(!dragging.enter());
        QVERIFY(!dragging.drop());
        QCOMPARE(scene.controller->urls, QList<QUrl>());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(DropForwarderTest)
#include "DropForwarderTest.moc"
