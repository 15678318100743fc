#include "MainViewFixture.h"

#include <tests/support/DropFixture.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

namespace
{
/// A file or a link as file managers and browsers offer it: its address is a text as well.
std::unique_ptr<QMimeData> dragged(const QUrl &url)
{
    auto pasteboard = std::make_unique<QMimeData>();
    pasteboard->setUrls({url});
    pasteboard->setText(url.toString());
    return pasteboard;
}
} // namespace

/// Drags over every part of the main window.
class WindowDropTest final : public MainViewTest
{
    Q_OBJECT

private:
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
    void fileIsSearchedForWhereverItIsDroppedAndALinkNowhere_data()
    {
        QTest::addColumn<bool>("withResults");
        QTest::newRow("window") << false;
        QTest::newRow("searchField") << false;
        QTest::newRow("headerView") << false;
        QTest::newRow("dropArea") << false;
        QTest::newRow("searchButton") << false;
        QTest::newRow("tableView") << true;
        QTest::newRow("detailView") << true;
        QTest::newRow("downloadButton") << true;
    }
    void fileIsSearchedForWhereverItIsDroppedAndALinkNowhere()
    {
        QFETCH(bool, withResults);
        if (withResults) {
            m_view->showResults(3);
            m_view->table()->selectRow(0);
        }
        m_view->field()->setText(u"old words"_s);
        QWidget *under = place(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(under && under->isVisible());
        const auto link = dragged(QUrl(u"https://plovendix.example/film.mkv"_s));
        Dragging refused(*under, *link);
        QVERIFY(!refused.enter());
        QVERIFY(!refused.move());
        QVERIFY(!refused.drop());
        QCOMPARE(m_view->field()->text(), u"old words"_s);
        const auto file = dragged(m_view->video);
        Dragging dragging(*under, *file);
        QVERIFY(dragging.enter());
        QCOMPARE(dragging.action, Qt::CopyAction);
        QVERIFY(dragging.move());
        QVERIFY(dragging.drop());
        QCOMPARE(m_view->service->hashed, QList<QUrl>{m_view->video});
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
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
        const auto file = dragged(m_view->video);
        Dragging dragging(*place(u"headerView"_s), *file);
        QVERIFY(dragging.enter());
        QVERIFY(dragging.drop());
        QCOMPARE(m_view->service->hashed.size(), 1);
        QCOMPARE(m_sandbox.printedLines(), QStringList({u"draggingEntered"_s, m_view->video.toString()}));
    }
};

PLOVENDIX_GUI_TEST(WindowDropTest)
#include "WindowDropTest.moc"
