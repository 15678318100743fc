#include <tests/support/DropFixture.h>

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
const QString FileType = u"text/uri-list"_s;

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

bool isOutlined(DragFilesHereView &view)
{
    const QImage image = view.grab().toImage();
    const QColor outline = view.palette().color(QPalette::Active, QPalette::Highlight);
    const int right = view.width() - 1;
    const int bottom = view.height() - 1;
    for (const QPoint &point : {QPoint(0, 0), QPoint(3, 40), QPoint(right, bottom), QPoint(right - 3, 40),
                                QPoint(50, 3), QPoint(50, bottom - 3)}) {
        if (image.pixelColor(point) != outline)
            return false;
    }
    // Four points wide, and nothing is filled.
    return image.pixelColor(4, 40) != outline && image.pixelColor(50, 40) != outline;
}
} // namespace

class DragFilesHereViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sandbox.clearPrintedLines(); }

    void startsIdleWithTheOneType()
    {
        const DragFilesHereView view;
        QCOMPARE(view.acceptableTypes, QStringList{FileType});
        QCOMPARE(view.isReceivingDrag, false);
        QCOMPARE(DragFilesHereView::fileURLType(), FileType);
        QCOMPARE(&DragFilesHereView::fileURLType(), &DragFilesHereView::fileURLType()); // made once
    }

    void viewFromCodeRegistersTwice()
    {
        const DragFilesHereView view(QRect(10, 20, 100, 80));
        QCOMPARE(view.geometry(), QRect(10, 20, 100, 80));
        QCOMPARE(view.registrationCount(), 2);
        QCOMPARE(view.registeredDraggedTypes(), QStringList{FileType});
        QVERIFY(view.acceptDrops());
    }

    void viewFromASceneRegistersOnce()
    {
        QWidget scene;
        const DragFilesHereView view(&scene);
        QCOMPARE(view.registrationCount(), 1);
        QCOMPARE(view.registeredDraggedTypes(), QStringList{FileType});
        QVERIFY(view.acceptDrops());
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
        QVERIFY(view.acceptDrops());
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
        child.setAcceptDrops(true); // later on it is not touched again
        view.hide();
        view.show();
        QVERIFY(child.acceptDrops());
    }

    void acceptanceLooksForAFileAmongTheTypes_data()
    {
        QTest::addColumn<QStringList>("types");
        QTest::addColumn<bool>("acceptable");
        QTest::newRow("none") << QStringList() << false;
        QTest::newRow("files") << QStringList{FileType} << true;
        QTest::newRow("files among others") << QStringList{u"text/plain"_s, FileType} << true;
        QTest::newRow("others") << QStringList{u"text/plain"_s, u"text/html"_s} << false;
        QTest::newRow("nearly") << QStringList{u"text/uri-list2"_s, u"TEXT/URI-LIST"_s} << false;
    }

    void acceptanceLooksForAFileAmongTheTypes()
    {
        QFETCH(QStringList, types);
        QFETCH(bool, acceptable);
        QMimeData pasteboard;
        for (const QString &type : types)
            pasteboard.setData(type, "file:///films/\r\n"); // neither a video nor one file alone is asked for
        DragFilesHereView view;
        QCOMPARE(view.prepareForDragOperation(&pasteboard), acceptable);
        QCOMPARE(view.draggingEntered(&pasteboard), acceptable ? DragOperation::Copy : DragOperation::None);
        QCOMPARE(view.isReceivingDrag, acceptable);
        QCOMPARE(view.prepareForDragOperation(nullptr), false);
    }

    void linkIsRefusedWithoutAnOutline()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        const auto link = pasteboardWith({u"https://plovendix.example/film.mkv"_s});
        QCOMPARE(view.draggingEntered(link.get()), DragOperation::None);
        QVERIFY(!isOutlined(view));
        QCOMPARE(view.prepareForDragOperation(link.get()), false);
        QCOMPARE(view.performDragOperation(link.get()), false);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"draggingEntered"_s});
    }

    void enteringAcceptsFilesAndOutlines()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        const auto files = pasteboardWith({u"file:///films/folder"_s});
        QVERIFY(!isOutlined(view));
        QCOMPARE(view.draggingEntered(files.get()), DragOperation::Copy);
        QCOMPARE(int(DragOperation::Copy), 1);
        QVERIFY(view.isReceivingDrag);
        QVERIFY(isOutlined(view));
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"draggingEntered"_s});
    }

    void plainTextIsRefusedWithoutAnOutline()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        QCOMPARE(view.draggingEntered(plainText()), DragOperation::None);
        QCOMPARE(int(DragOperation::None), 0);
        QVERIFY(!view.isReceivingDrag);
        QVERIFY(!isOutlined(view));
        QCOMPARE(view.prepareForDragOperation(plainText()), false);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"draggingEntered"_s});
    }

    void refusedDragEndsAnOutline()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        view.draggingEntered(pasteboardWith({u"file:///a.mkv"_s}).get());
        view.draggingEntered(plainText());
        QVERIFY(!view.isReceivingDrag);
        QVERIFY(!isOutlined(view));
    }

    void leavingPrintsTheSameWordAndClearsTheOutline()
    {
        DragFilesHereView view(QRect(0, 0, 100, 80));
        view.draggingEntered(pasteboardWith({u"file:///a.mkv"_s}).get());
        view.draggingExited();
        QCOMPARE(m_sandbox.printedLines(), QStringList({u"draggingEntered"_s, u"draggingEntered"_s}));
        QVERIFY(!view.isReceivingDrag);
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
        view.draggingExited();
        view.performDragOperation(files.get());
        QCOMPARE(told, QStringList({u"over"_s, u"away"_s}));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(DragFilesHereViewTest)
#include "DragFilesHereViewTest.moc"
