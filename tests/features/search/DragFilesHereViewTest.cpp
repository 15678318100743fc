#include <tests/support/DropFixture.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
const QString FileType = u"text/uri-list"_s;
const QString Entered = u"draggingEntered"_s;

/// Counts how often it is drawn.
class CountingView final : public DragFilesHereView
{
public:
    using DragFilesHereView::DragFilesHereView;
    int drawn = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++drawn;
        DragFilesHereView::paintEvent(event);
    }
};

/// A window whose content controller takes files, with a list that covers the drop target.
struct Scene
{
    Scene()
    {
        window.setContentViewController(controller);
        view = new DragFilesHereView(controller->view());
        list = new QWidget(controller->view());
        list->setGeometry(0, 0, 100, 80);
        view->takeDropsOf(window);
        view->outlineToo(*list);
        window.show();
    }

    std::shared_ptr<ReceivingController> controller = ViewController::make<ReceivingController>();
    ui::Window window;
    DragFilesHereView *view;
    QWidget *list;
};

/// Whether the outline is there: four points wide, and nothing is filled.
bool isOutlined(QWidget &view)
{
    const QImage image = view.grab().toImage();
    const auto isInked = [&](int x, int y) {
        return image.pixelColor(x, y) == view.palette().color(QPalette::Active, QPalette::Highlight);
    };
    return isInked(0, 0) && isInked(3, 40) && isInked(99, 79) && isInked(96, 40) && isInked(50, 3) &&
           isInked(50, 76) && !isInked(4, 40) && !isInked(50, 40);
}
} // namespace

class DragFilesHereViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sandbox.clearPrintedLines(); }

    void registersItsOneType()
    {
        const DragFilesHereView fromCode(QRect(10, 20, 100, 80));
        QCOMPARE(fromCode.geometry(), QRect(10, 20, 100, 80));
        QCOMPARE(fromCode.registrationCount(), 2);
        QWidget scene;
        const DragFilesHereView fromScene(&scene);
        QCOMPARE(fromScene.registrationCount(), 1);
        for (const DragFilesHereView *view : {&fromCode, &fromScene}) {
            QCOMPARE(view->acceptableTypes, QStringList{FileType});
            QCOMPARE(view->registeredDraggedTypes(), QStringList{FileType});
            QVERIFY(!view->isReceivingDrag());
        }
        QCOMPARE(DragFilesHereView::fileURLType(), FileType);
        QCOMPARE(&DragFilesHereView::fileURLType(), &DragFilesHereView::fileURLType()); // made once
    }

    void subviewsTakeNoDragsTwoLevelsDeep()
    {
        DragFilesHereView view;
        QWidget child(&view);
        QWidget grandchild(&child);
        QWidget deeper(&grandchild);
        for (QWidget *subview : {&child, &grandchild, &deeper})
            subview->setAcceptDrops(true);
        view.awakeFromNib();
        QVERIFY(!child.acceptDrops());
        QVERIFY(!grandchild.acceptDrops());
        QVERIFY(deeper.acceptDrops());
    }

    void awakesBeforeItFirstShows()
    {
        DragFilesHereView view;
        QWidget child(&view);
        child.setAcceptDrops(true);
        view.show();
        QVERIFY(!child.acceptDrops());
        child.setAcceptDrops(true); // later it is not touched again
        view.hide();
        view.show();
        QVERIFY(child.acceptDrops());
    }

    void dragWithAFileIsAcceptable_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("acceptable");
        QTest::newRow("folder") << FileType << "file:///films/\r\n"_ba << true;
        QTest::newRow("upper case") << FileType << "FILE:///films/a.mkv"_ba << true;
        QTest::newRow("file after a link")
            << FileType << "https://plovendix.example/film\r\nfile:///a.mkv"_ba << true;
        QTest::newRow("file beside a word") << FileType << "no URL\r\nfile:///a.mkv"_ba << true;
        QTest::newRow("link") << FileType << "https://plovendix.example/film.mkv"_ba << false;
        QTest::newRow("share") << FileType << "smb://server/film.mkv"_ba << false;
        QTest::newRow("file in a comment")
            << FileType << "# file:///a.mkv\r\nhttps://plovendix.example/"_ba << false;
        QTest::newRow("path") << FileType << "/films/a.mkv"_ba << false;
        QTest::newRow("empty list") << FileType << ""_ba << false;
        QTest::newRow("text") << u"text/plain"_s << "file:///a.mkv"_ba << false;
        QTest::newRow("nearly the type") << u"TEXT/URI-LIST"_s << "file:///a.mkv"_ba << false;
    }
    void dragWithAFileIsAcceptable()
    {
        QFETCH(QString, type);
        QFETCH(QByteArray, content);
        QFETCH(bool, acceptable);
        const RawPasteboard pasteboard(type, content);
        DragFilesHereView view(QRect(0, 0, 100, 80));
        QCOMPARE(view.prepareForDragOperation(&pasteboard), acceptable);
        QCOMPARE(static_cast<int>(view.draggingEntered(&pasteboard)), acceptable ? 1 : 0);
        QCOMPARE(view.isReceivingDrag(), acceptable);
        QCOMPARE(isOutlined(view), acceptable);
        QCOMPARE(m_sandbox.printedLines(), QStringList{Entered});
        QCOMPARE(view.prepareForDragOperation(nullptr), false);
    }

    void leavingPrintsTheSameWordAndClearsTheOutline()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        view.draggingEntered(pasteboardWith({u"file:///a.mkv"_s}).get());
        view.draggingExited();
        QCOMPARE(m_sandbox.printedLines(), QStringList({Entered, Entered}));
        QVERIFY(!view.isReceivingDrag());
        QVERIFY(!isOutlined(view));
    }

    void everyStepAsksForARedraw()
    {
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        CountingView view(QRect(0, 0, 100, 80));
        view.show();
        QTRY_VERIFY(view.drawn > 0);
        const QList<std::function<void()>> steps{
            [&] { view.draggingEntered(files.get()); }, [&] { view.draggingExited(); },
            [&] { view.draggingEntered(plainText()); }, [&] { view.performDragOperation(files.get()); }};
        for (const auto &step : steps) {
            view.drawn = 0;
            step();
            QTRY_VERIFY(view.drawn > 0);
        }
    }

    void changesNotifyOnce()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        QStringList told;
        connect(&view, &DragFilesHereView::isReceivingDragChanged, this,
                [&](bool receiving) { told += receiving ? u"over"_s : u"away"_s; });
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        view.draggingEntered(plainText());
        view.draggingEntered(files.get());
        view.draggingEntered(files.get());
        view.draggingEntered(plainText()); // a refused drag ends the outline
        view.performDragOperation(files.get());
        QCOMPARE(told, QStringList({u"over"_s, u"away"_s}));
    }

    void firstFileIsSearchedFor_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("url");
        const auto row = [](const char *name, const QByteArray &content, const QByteArray &url) {
            QTest::newRow(name) << content << url;
        };
        const auto same = [&](const char *name, const QByteArray &url) { row(name, url, url); };
        row("first of three", "file:///b%20c.mkv\r\nfile:///a.mkv\r\nfile:///c.mkv\r\n", "file:///b%20c.mkv");
        row("other line ends", "file:///a.mkv\n\nfile:///b.mkv", "file:///a.mkv");
        row("after links", "https://plovendix.example/film\r\nfile:///b.mkv\r\nfile:///a.mkv",
            "file:///b.mkv");
        row("comment", "# a list\r\nfile:///a.mkv\r\n", "file:///a.mkv");
        row("closing zero", QByteArray("file:///a.mkv\0", 14), "file:///a.mkv");
        row("unescaped space", "file:///a film.mkv", "file:///a%20film.mkv");
        same("folder", "file:///films/");
        same("no video", "file:///notes.txt");
        same("file of this computer", "file://localhost/film.mkv");
        same("file elsewhere", "file://server/film.mkv");
        same("name of two lines", "file:///two%0Alines.mkv");
        same("name that is no text", "file:///caf%E9.mkv");
        same("name from right to left", "file:///%E2%80%AEvkm.txt");
        same("name that ends early", "file:///a%00b.mkv");
        row("empty list", "", {});
        row("comments only", "# a list\r\n#another\r\n", {});
        row("one line that is no URL", "file:///a.mkv\r\nno URL\r\n", {});
        row("one broken URL", "file:///a.mkv\r\nhttp://host:port/\r\n", {});
        row("path", "/films/a.mkv", {});
        row("link", "https://plovendix.example/film.mkv", {});
        row("share", "smb://server/film.mkv", {});
        row("mail", "mailto:someone@plovendix.example", {});
    }
    void firstFileIsSearchedFor()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, url);
        Scene scene;
        scene.view->draggingEntered(pasteboardWith({u"file:///another.mkv"_s}).get());
        m_sandbox.clearPrintedLines();
        qsizetype searchedBefore = -1;
        connect(scene.view, &DragFilesHereView::isReceivingDragChanged, scene.view,
                [&] { searchedBefore = scene.controller->urls.size(); });
        const RawPasteboard pasteboard(FileType, content);
        QCOMPARE(scene.view->performDragOperation(&pasteboard), !url.isEmpty());
        QVERIFY(!scene.view->isReceivingDrag()); // whatever the outcome
        QCOMPARE(searchedBefore, 0);
        const bool isTaken = !url.isEmpty();
        QCOMPARE(scene.controller->urls, isTaken ? QList<QUrl>{QUrl::fromEncoded(url)} : QList<QUrl>());
        // One line, whatever the name.
        QCOMPARE(m_sandbox.printedLines(), isTaken ? QStringList{QString::fromLatin1(url)} : QStringList());
    }

    void dropWithoutAReceiverIsTaken()
    {
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        DragFilesHereView alone;
        QVERIFY(alone.performDragOperation(files.get()));
        QWidget plainWindow;
        DragFilesHereView inside(&plainWindow);
        QVERIFY(inside.performDragOperation(files.get()));
        ui::Window window;
        auto *uncontrolled = new DragFilesHereView(&window);
        QVERIFY(uncontrolled->performDragOperation(files.get()));
        const auto other = ViewController::make<ViewController>();
        window.setContentViewController(other);
        auto *view = new DragFilesHereView(other->view());
        QVERIFY(view->performDragOperation(files.get()));
        QCOMPARE(m_sandbox.printedLines(), QStringList(4, u"file:///a.mkv"_s));
        QVERIFY(!alone.performDragOperation(nullptr));
    }

    void windowIsOneTarget()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s, u"file:///b.mkv"_s});
        auto *later = new QWidget(scene.list); // the outline lies over what came later
        later->setAutoFillBackground(true);
        later->setGeometry(0, 20, 100, 40);
        later->show();
        Dragging dragging(*scene.list, *files, Qt::ShiftModifier);
        QVERIFY(!isOutlined(*scene.list));
        QVERIFY(dragging.enter());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(isOutlined(*scene.list));
        QVERIFY(dragging.move());
        QCOMPARE(dragging.action, Qt::CopyAction);
        dragging.leave();
        QVERIFY(!isOutlined(*scene.list));
        QCOMPARE(m_sandbox.printedLines(), QStringList({Entered, Entered}));
        QVERIFY(dragging.enter());
        QVERIFY(dragging.drop());
        QCOMPARE(dragging.action, Qt::CopyAction); // or the other program would take its file away
        QVERIFY(!isOutlined(*scene.list));
        QCOMPARE(scene.controller->urls, QList<QUrl>{QUrl(u"file:///a.mkv"_s)});
    }

    void refusedDragPrintsOnceAtEachEnd()
    {
        Scene scene;
        Dragging dragging(*scene.list, *plainText());
        for (int times = 1; times <= 2; ++times) {
            QVERIFY(!dragging.enter());
            QVERIFY(!dragging.move());
            QVERIFY(!isOutlined(*scene.list));
            dragging.leave();
            QCOMPARE(m_sandbox.printedLines(), QStringList(2 * times, Entered));
        }
        QVERIFY(!dragging.drop());
        const auto broken = pasteboardWith({u"file:///a.mkv"_s, u"not a URL"_s});
        Dragging unreadable(*scene.list, *broken);
        QVERIFY(unreadable.enter()); // it has a file
        QVERIFY(!unreadable.drop());
        QVERIFY(!scene.view->isReceivingDrag());
        QCOMPARE(scene.controller->urls, QList<QUrl>());
    }

    void crossingViewsIsNeitherEnteringNorLeaving()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        QDragEnterEvent enter({200, 200}, Qt::CopyAction, files.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&scene.window, &enter);
        // As the toolkit does it where one view borders on another.
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&scene.window, &leave);
        QCoreApplication::sendEvent(&scene.window, &enter);
        QCoreApplication::sendPostedEvents();
        QVERIFY(scene.view->isReceivingDrag());
        QCOMPARE(m_sandbox.printedLines(), QStringList{Entered});
        QCoreApplication::sendEvent(&scene.window, &leave);
        QTRY_VERIFY(!scene.view->isReceivingDrag());
        QCOMPARE(m_sandbox.printedLines(), QStringList({Entered, Entered}));
    }

    void targetEndsAtTheWindowsFrame()
    {
        Scene scene;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        const auto enterAt = [&](int x) {
            QDragEnterEvent enter({x, 200}, Qt::CopyAction, files.get(), Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&scene.window, &enter);
            return scene.view->isReceivingDrag();
        };
        QVERIFY(enterAt(scene.window.shadowMargin()));
        QVERIFY(!enterAt(scene.window.shadowMargin() - 1));
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&scene.window, &leave);
    }

    void targetMayBeDestroyedFirst()
    {
        Scene scene;
        delete scene.view;
        const auto files = pasteboardWith({u"file:///a.mkv"_s});
        Dragging dragging(*scene.list, *files);
        QVERIFY(!dragging.enter());
        QVERIFY(!dragging.drop());
        QCOMPARE(scene.controller->urls, QList<QUrl>());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(DragFilesHereViewTest)
#include "DragFilesHereViewTest.moc"
