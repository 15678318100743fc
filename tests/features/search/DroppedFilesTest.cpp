#include <tests/support/DropFixture.h>

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A view in a window whose content controller takes files.
struct Scene
{
    Scene()
    {
        window.setContentViewController(controller);
        view = new DragFilesHereView(controller->view());
        view->resize(100, 80);
        window.show();
    }

    std::shared_ptr<ReceivingController> controller = ViewController::make<ReceivingController>();
    ui::Window window;
    DragFilesHereView *view;
};

} // namespace

class DroppedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sandbox.clearPrintedLines(); }

    void dropWithoutAWindowIsTaken()
    {
        DragFilesHereView view;
        QCOMPARE(view.performDragOperation(pasteboardWith({u"file:///a.mkv"_s}).get()), true);
        QWidget plainWindow;
        DragFilesHereView inside(&plainWindow);
        QCOMPARE(inside.performDragOperation(pasteboardWith({u"file:///a.mkv"_s}).get()), true);
        ui::Window windowWithoutController;
        auto *lonely = new DragFilesHereView(&windowWithoutController);
        QCOMPARE(lonely->performDragOperation(pasteboardWith({u"file:///a.mkv"_s}).get()), true);
    }

    void dropOnAnotherControllerIsTaken()
    {
        const auto other = ViewController::make<ViewController>();
        ui::Window window;
        window.setContentViewController(other);
        auto *view = new DragFilesHereView(other->view());
        QCOMPARE(view->performDragOperation(pasteboardWith({u"file:///a.mkv"_s}).get()), true);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"file:///a.mkv"_s});
    }

    void outlineGoesBeforeTheSearch()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        scene.view->draggingEntered(files.get());
        qsizetype searchedBefore = -1;
        connect(scene.view, &DragFilesHereView::isReceivingDragChanged, scene.view,
                [&] { searchedBefore = scene.controller->urls.size(); });
        scene.view->performDragOperation(files.get());
        QCOMPARE(searchedBefore, 0);
        QCOMPARE(scene.controller->urls.size(), 1);
    }

    void firstOfThreeFilesIsSearchedFor()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///b%20c.mkv"_s, u"file:///a.mkv"_s, u"file:///c.mkv"_s});
        QCOMPARE(scene.view->performDragOperation(files.get()), true);
        QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(u"file:///b%20c.mkv"_s)});
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"file:///b%20c.mkv"_s});
    }

    void whatIsDroppedIsJudgedByTheSearch_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("a folder") << u"file:///films/"_s;
        QTest::newRow("no video") << u"file:///notes.txt"_s;
        QTest::newRow("a file of this computer") << u"file://localhost/film.mkv"_s;
        QTest::newRow("a file elsewhere") << u"file://server/film.mkv"_s;
        QTest::newRow("a name of two lines") << u"file:///two%0Alines.mkv"_s;
        QTest::newRow("a name that is no text") << u"file:///caf%E9.mkv"_s;
        QTest::newRow("a name from right to left") << u"file:///%E2%80%AEvkm.txt"_s;
        QTest::newRow("a name that ends early") << u"file:///a%00b.mkv"_s;
    }

    void whatIsDroppedIsJudgedByTheSearch()
    {
        QFETCH(QString, url);
        Scene scene;
        QCOMPARE(scene.view->performDragOperation(pasteboardWith({url}).get()), true);
        QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(url)});
        QCOMPARE(m_sandbox.printedLines(), QStringList{url}); // one line, whatever the name
    }

    void firstFileAmongLinksIsSearchedFor()
    {
        Scene scene;
        const auto mixed =
            pasteboardWith({u"https://plovendix.example/film"_s, u"file:///b.mkv"_s, u"file:///a.mkv"_s});
        QCOMPARE(scene.view->performDragOperation(mixed.get()), true);
        QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(u"file:///b.mkv"_s)});
    }

    void nonFilesAreRefused_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("a web page") << u"https://plovendix.example/film.mkv"_s;
        QTest::newRow("a share") << u"smb://server/film.mkv"_s;
        QTest::newRow("mail") << u"mailto:someone@plovendix.example"_s;
    }

    void nonFilesAreRefused()
    {
        QFETCH(QString, url);
        Scene scene;
        const auto link = pasteboardWith({url});
        Dragging dragging(*scene.view, *link);
        QVERIFY(!dragging.enter());
        QVERIFY(!scene.view->isReceivingDrag);
        QVERIFY(!dragging.move());
        QVERIFY(!dragging.drop());
        QCOMPARE(scene.view->performDragOperation(link.get()), false);
        QCOMPARE(scene.controller->urls, QList<QUrl>());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"draggingEntered"_s});
    }

    void unreadablePasteboardIsRefused_data()
    {
        QTest::addColumn<QString>("content");
        QTest::newRow("nothing") << QString();
        QTest::newRow("an empty list") << u"# no files"_s;
        QTest::newRow("one is no URL") << u"file:///a.mkv\r\nnot a URL"_s;
    }

    void unreadablePasteboardIsRefused()
    {
        QFETCH(QString, content);
        Scene scene;
        scene.view->isReceivingDrag = true;
        QCOMPARE(scene.view->performDragOperation(pasteboardWith({content}).get()), false);
        QCOMPARE(scene.view->performDragOperation(nullptr), false);
        QCOMPARE(scene.view->performDragOperation(plainText()), false);
        QVERIFY(!scene.view->isReceivingDrag); // the outline goes whatever the outcome
        QCOMPARE(scene.controller->urls, QList<QUrl>());
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void dragsArriveAsEvents()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(*scene.view, *files);
        QVERIFY(dragging.enter());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(scene.view->isReceivingDrag);
        QVERIFY(dragging.move());
        dragging.leave();
        QVERIFY(!scene.view->isReceivingDrag);
        QCOMPARE(m_sandbox.printedLines(), QStringList({u"draggingEntered"_s, u"draggingEntered"_s}));

        QVERIFY(dragging.enter());
        QVERIFY(dragging.drop());
        QVERIFY(!scene.view->isReceivingDrag);
        QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(u"file:///a.mkv"_s)});
    }

    void dragIsACopyWhateverIsHeld()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(*scene.view, *files, Qt::ShiftModifier);
        QVERIFY(dragging.enter());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(dragging.move());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(dragging.drop());
        QCOMPARE(dragging.action, Qt::CopyAction); // or the other program would take its file away
    }

    void refusedDragsAreRefusedAsEvents()
    {
        Scene scene;
        Dragging text(*scene.view, *plainText());
        QVERIFY(!text.enter());
        QVERIFY(!text.move());
        QVERIFY(!text.drop());
        const auto broken = pasteboardWith({u"file:///a.mkv"_s, u"not a URL"_s});
        Dragging unreadable(*scene.view, *broken);
        QVERIFY(unreadable.enter()); // it has a file
        QVERIFY(!unreadable.drop());
        QVERIFY(!scene.view->isReceivingDrag);
        QCOMPARE(scene.controller->urls, QList<QUrl>());
    }

    void refusedDragPrintsWhereItEntersAndWhereItLeaves_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << u"text/plain"_s << "just a text"_ba;
        QTest::newRow("link") << u"text/uri-list"_s << "https://plovendix.example/film"_ba;
    }

    void refusedDragPrintsWhereItEntersAndWhereItLeaves()
    {
        QFETCH(QString, type);
        QFETCH(QByteArray, content);
        Scene scene;
        const RawPasteboard refused(type, content);
        Dragging dragging(*scene.view, refused);
        for (int times = 1; times <= 2; ++times) {
            QVERIFY(!dragging.enter());
            QVERIFY(!dragging.move());
            dragging.leave();
            QVERIFY(!scene.view->isReceivingDrag);
            QCOMPARE(m_sandbox.printedLines(), QStringList(2 * times, u"draggingEntered"_s));
        }
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(DroppedFilesTest)
#include "DroppedFilesTest.moc"
