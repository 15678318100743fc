#include "MainViewFixture.h"

#include <tests/support/DropFixture.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);

/// A file as file managers offer it: its address is a text as well.
QMimeData *draggedFile()
{
    static QMimeData pasteboard;
    pasteboard.setUrls({Video});
    pasteboard.setText(Video.toString());
    return &pasteboard;
}

/// A link as browsers offer it: its address is a text as well.
QMimeData *draggedLink()
{
    static QMimeData pasteboard;
    pasteboard.setData(u"text/uri-list"_s, "https://plovendix.example/film.mkv\r\n");
    pasteboard.setText(u"https://plovendix.example/film.mkv"_s);
    return &pasteboard;
}
} // namespace

/// Drags over every part of the main window.
class WindowDropTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;

    /// What the window system finds at the left edge of the view with that name; "window" is the title bar.
    QWidget *place(const QString &name) const
    {
        if (name == u"window")
            return m_view->window->childAt(m_view->window->width() / 2, m_view->window->shadowMargin() + 8);
        QWidget *named = m_view->widget(qPrintable(name));
        QWidget *inside = named->childAt(2, named->height() / 2);
        return inside ? inside : named;
    }

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void fileIsSearchedForWhereverItIsDropped_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("withResults");
        for (const QString &name : {u"window"_s, u"searchField"_s, u"headerView"_s}) {
            QTest::addRow("%s", qPrintable(name)) << name << false;
            QTest::addRow("%s over results", qPrintable(name)) << name << true;
        }
        QTest::newRow("drop area") << u"dropArea"_s << false;
        QTest::newRow("search button") << u"searchButton"_s << false;
        QTest::newRow("list") << u"tableView"_s << true;
        QTest::newRow("panel") << u"detailView"_s << true;
        QTest::newRow("download button") << u"downloadButton"_s << true;
    }
    void fileIsSearchedForWhereverItIsDropped()
    {
        QFETCH(QString, name);
        QFETCH(bool, withResults);
        if (withResults) {
            m_view->showResults(3);
            m_view->table()->selectRow(0);
        }
        m_view->field()->setText(u"old words"_s);
        QWidget *under = place(name);
        QVERIFY(under && under->isVisible());
        Dragging dragging(*under, *draggedFile());
        QVERIFY(dragging.enter());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(dragging.move());
        QVERIFY(dragging.drop());
        QCOMPARE(m_view->service->hashed, QList<QUrl>{Video});
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    }

    void linkIsRefusedEverywhere_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : {u"window"_s, u"searchField"_s, u"headerView"_s, u"dropArea"_s})
            QTest::addRow("%s", qPrintable(name)) << name;
    }
    void linkIsRefusedEverywhere()
    {
        QFETCH(QString, name);
        Dragging dragging(*place(name), *draggedLink());
        QVERIFY(!dragging.enter());
        QVERIFY(!dragging.move());
        QVERIFY(!dragging.drop());
        QCOMPARE(m_view->service->hashed, QList<QUrl>());
        QCOMPARE(m_view->field()->text(), QString());
    }

    void refusedDragPrintsTwiceEachTime_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : {u"window"_s, u"headerView"_s, u"dropArea"_s})
            QTest::addRow("%s", qPrintable(name)) << name;
    }
    void refusedDragPrintsTwiceEachTime()
    {
        QFETCH(QString, name);
        Dragging dragging(*place(name), *plainText());
        for (int times = 1; times <= 2; ++times) {
            QVERIFY(!dragging.enter());
            dragging.leave();
            QCOMPARE(m_sandbox.printedLines(), QStringList(2 * times, u"draggingEntered"_s));
        }
    }

    void fieldTakesADraggedText()
    {
        Dragging dragging(*m_view->field(), *plainText());
        QVERIFY(dragging.enter());
        QVERIFY(dragging.move());
        QVERIFY(dragging.drop());
        QCOMPARE(m_view->field()->text(), u"just a text"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void windowShownAgainTakesADropOnce()
    {
        m_view->window->hide();
        m_view->window->show();
        Dragging dragging(*place(u"headerView"_s), *draggedFile());
        QVERIFY(dragging.enter());
        QVERIFY(dragging.drop());
        QCOMPARE(m_view->service->hashed.size(), 1);
        QCOMPARE(m_sandbox.printedLines(), QStringList({u"draggingEntered"_s, Video.toString()}));
    }
};

PLOVENDIX_GUI_TEST(WindowDropTest)
#include "WindowDropTest.moc"
