#include "MainViewFixture.h"

#include <base/Bundle.h>
#include <features/search/SubtitleCellView.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/views/ImageView.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

/// The cells of the results where something is missing.
class ResultCellTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_view = std::make_unique<MainViewFixture>(); }
    void cleanup() { m_view.reset(); }

    void thereIsNoCellWithoutResults()
    {
        QVERIFY(!m_view->controller->tableViewViewForRow(0));
        QCOMPARE(m_view->controller->tableViewAccessibleTextForRow(0), QString());
    }

    void thereIsNoCellWhereTheLayoutHasNone()
    {
        m_view->table()->setCellStoryboard(QString());
        m_view->showResults(2);
        QVERIFY(!m_view->controller->tableViewViewForRow(0));
        QVERIFY(!m_view->window->grab().isNull()); // an empty row is drawn all the same
        QCOMPARE(m_view->table()->numberOfRows(), 2);
    }

    void iconIsNamedByTheFormatInCapitals()
    {
        for (const QString &format : {u"vtt"_s, u"Ass"_s, u"SUB"_s}) {
            answerWithFormat(format);
            TableCellView *cell = m_view->controller->tableViewViewForRow(0);
            QVERIFY(*cell->imageView()->image() == *ui::Image::named(format.toUpper()));
        }
    }

    void iconIsShownInItsOneSize()
    {
        answerWithFormat(u"odd"_s);
        const QString whole = Bundle::main().folder();
        for (const QString &name : {u"ODD"_s, u"UNKNOWN"_s}) {
            m_sandbox.writeFile(name + u"/icons/"_s + name + u".svg"_s,
                                "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"20\"/>");
            Bundle::setMainFolder(m_sandbox.path(name));
            const auto icon = m_view->controller->tableViewViewForRow(0)->imageView()->image();
            Bundle::setMainFolder(whole);
            QVERIFY(icon);
            QCOMPARE(icon->size(), QSizeF(64, 64));
        }
    }

    void missingUnknownIconStopsTheProgram()
    {
        answerWithFormat(u"odd"_s);
        const QString whole = Bundle::main().folder();
        QVERIFY(QDir().mkpath(m_sandbox.path(u"bundle/icons"_s)));
        Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
        QString fault;
        {
            const FatalFaultTrap trap;
            try {
                m_view->controller->tableViewViewForRow(0);
            } catch (const FatalFaultCaught &caught) {
                fault = caught.message;
            }
        }
        Bundle::setMainFolder(whole);
        QVERIFY2(fault.contains(u"UNKNOWN"_s), qUtf8Printable(fault));
        QVERIFY(m_view->controller->tableViewViewForRow(0));
    }

    void oddTextsAreShownAsTheyAre()
    {
        const QString odd = u"<b>two\nlines</b> \u202Evkm %1 %@ &amp;"_s;
        auto subtitle = std::make_shared<Subtitle>();
        subtitle->subFileName = odd;
        subtitle->languageName = odd;
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith({subtitle, std::make_shared<Subtitle>()}));
        m_view->turn();
        auto *cell = qobject_cast<SubtitleCellView *>(m_view->controller->tableViewViewForRow(0));
        QCOMPARE(cell->titleTextField->text(), odd);
        QCOMPARE(m_view->controller->tableViewAccessibleTextForRow(0), odd); // no details, no comma
        m_view->table()->selectRow(0);
        QCOMPARE(m_view->child<ui::Label>("detailFileLabel")->text(), odd);
        QCOMPARE(m_view->child<ui::Label>("detailLanguageLabel")->text(), odd);
        QVERIFY(!m_view->window->grab().isNull());
    }

    void cellFromItsSceneHasAllItsParts()
    {
        const auto cell = SubtitleCellView::fromScene();
        QVERIFY(cell->titleTextField);
        QVERIFY(cell->subtitleTextField);
        QVERIFY(cell->imageView());
        QVERIFY(!cell->posterImageView);
    }

private:
    void answerWithFormat(const QString &format) const
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(someSubtitles(1, format)));
        m_view->turn();
    }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(ResultCellTest)
#include "ResultCellTest.moc"
