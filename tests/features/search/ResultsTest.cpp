#include "MainViewFixture.h"

#include <base/Bundle.h>
#include <features/search/SubtitleCellView.h>
#include <model/LocaleUtilities.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/views/ImageView.h>

#include <QAccessible>
#include <QDir>

using namespace Qt::StringLiterals;

namespace
{
/// Has something happen while the table counts its rows.
class InterruptedController final : public MainViewController
{
public:
    std::function<void()> interrupt;

    int numberOfRowsInTableView() override
    {
        if (const auto once = std::exchange(interrupt, nullptr))
            once();
        return MainViewController::numberOfRowsInTableView();
    }
};
} // namespace

/// The list of results, its cells, and the lists for bindings.
class ResultsTest final : public MainViewTest
{
    Q_OBJECT

private:
    QString label(const char *name) const { return m_view->child<ui::Label>(name)->text(); }
    SubtitleCellView *cell(int row) const
    {
        return qobject_cast<SubtitleCellView *>(m_view->controller->tableViewViewForRow(row));
    }
    void showFormat(const QString &format) const
    {
        m_view->search();
        m_view->answer(answerWith(someSubtitles(1, format)));
    }

private Q_SLOTS:
    void absentListHasNoRows()
    {
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
        QVERIFY(!cell(0));
        QCOMPARE(m_view->controller->tableViewAccessibleTextForRow(0), QString());
    }

    void cellShowsNameAndDetails()
    {
        m_view->showResults(2);
        QCOMPARE(cell(1)->titleTextField->text(), u"Film.2"_s);
        QCOMPARE(cell(1)->subtitleTextField->text(), u"Film"_s);
        QVERIFY(!cell(1)->posterImageView); // takes part in the layout only
    }

    void iconIsNamedByTheFormatInCapitals_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("icon");
        QTest::newRow("small") << u"srt"_s << u"SRT"_s;
        QTest::newRow("mixed") << u"Ass"_s << u"ASS"_s;
        QTest::newRow("unknown") << u"odd"_s << u"UNKNOWN"_s;
        QTest::newRow("a path") << u"../icons/srt"_s << u"UNKNOWN"_s;
    }
    void iconIsNamedByTheFormatInCapitals()
    {
        QFETCH(QString, format);
        QFETCH(QString, icon);
        showFormat(format);
        const auto image = cell(0)->imageView()->image();
        QVERIFY(*image == *ui::Image::named(icon));
        QCOMPARE(image->size(), QSizeF(64, 64));
    }

    void iconIsShownInItsOneSize()
    {
        showFormat(u"odd"_s);
        const QString whole = Bundle::main().folder();
        for (const QString &name : {u"ODD"_s, u"UNKNOWN"_s}) {
            m_sandbox.writeFile(name + u"/icons/"_s + name + u".svg"_s,
                                "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"20\"/>");
            Bundle::setMainFolder(m_sandbox.path(name));
            const auto icon = cell(0)->imageView()->image();
            Bundle::setMainFolder(whole);
            QVERIFY(icon);
            QCOMPARE(icon->size(), QSizeF(64, 64));
        }
    }

    void missingUnknownIconStopsTheProgram()
    {
        showFormat(u"odd"_s);
        const QString whole = Bundle::main().folder();
        QVERIFY(QDir().mkpath(m_sandbox.path(u"bundle/icons"_s)));
        Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
        QString fault;
        {
            const FatalFaultTrap trap;
            try {
                cell(0);
            } catch (const FatalFaultCaught &caught) {
                fault = caught.message;
            }
        }
        Bundle::setMainFolder(whole);
        QVERIFY2(fault.contains(u"UNKNOWN"_s), qUtf8Printable(fault));
    }

    void thereIsNoCellWhereTheLayoutHasNone()
    {
        m_view->table()->setCellStoryboard(QString());
        m_view->showResults(2);
        QVERIFY(!cell(0));
        QVERIFY(!m_view->window->grab().isNull()); // an empty row is drawn all the same
    }

    void rowsAreReadByTheirNames()
    {
        m_view->showResults(2);
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(m_view->table());
        QCOMPARE(list->text(QAccessible::Name), u"Results"_s);
        QCOMPARE(list->child(0)->text(QAccessible::Name), u"Film.1, Film"_s);
    }

    void oddTextsAreShownAsTheyAre()
    {
        const QString odd = u"<b>two\nlines</b> \u202Evkm %1 %@ &amp;"_s;
        auto subtitle = std::make_shared<Subtitle>();
        subtitle->subFileName = odd;
        subtitle->languageName = odd;
        m_view->search();
        m_view->answer(answerWith({subtitle, std::make_shared<Subtitle>()}));
        QCOMPARE(cell(0)->titleTextField->text(), odd);
        QCOMPARE(m_view->controller->tableViewAccessibleTextForRow(0), odd); // no details, no comma
        m_view->table()->selectRow(0);
        QCOMPARE(label("detailFileLabel"), odd);
        QCOMPARE(label("detailLanguageLabel"), odd);
        QVERIFY(!m_view->window->grab().isNull());
    }

    void reloadKeepsTheSelectedRowWhereItExists()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(1);
        m_view->search();
        m_view->answer(answerWith(someSubtitles(3).mid(1)));
        QCOMPARE(m_view->table()->selectedRow(), 1);
        QCOMPARE(label("detailFileLabel"), u"Film.3"_s); // what stands in that row now
        m_view->showResults(1);
        QCOMPARE(m_view->table()->selectedRow(), -1);
    }

    void storedListDoesNotChangeTheRowsShown()
    {
        m_view->showResults(5);
        m_view->search();
        m_view->service->finishLast(answerWith(1));
        QCOMPARE(m_view->table()->numberOfRows(), 5);
        QCOMPARE(cell(4)->titleTextField->text(), u"Film.5"_s);
        m_view->table()->selectRow(4); // fills the panel from the rows shown
        QCOMPARE(label("detailFileLabel"), u"Film.5"_s);
    }

    void listStoredDuringAReloadIsShownWholeOrNotAtAll()
    {
        const auto controller = ViewController::make<InterruptedController>();
        m_view->window->setContentViewController(controller);
        controller->searchForText(u"a"_s, std::nullopt);
        controller->searchForText(u"b"_s, std::nullopt);
        m_view->service->finish(0, answerWith(2));
        controller->interrupt = [this] { m_view->service->finish(1, answerWith(5)); };
        QStringList rows;
        MainQueue::shared().async([&] { // before the steps of the second search
            for (int row = 0; row < m_view->table()->numberOfRows(); ++row)
                rows += controller->tableViewAccessibleTextForRow(row);
        });
        m_view->turn();
        QCOMPARE(rows, (QStringList{u"Film.1, Film"_s, u"Film.2, Film"_s}));
        m_view->turn();
        QCOMPARE(m_view->table()->numberOfRows(), 5);
    }

    void selectionOverAListThatIsGoneFillsNothing_data()
    {
        QTest::addColumn<bool>("isEmpty");
        QTest::addColumn<QStringList>("printed");
        QTest::newRow("empty") << true << QStringList{u"This doesn't work"_s};
        QTest::newRow("absent") << false << QStringList();
    }
    void selectionOverAListThatIsGoneFillsNothing()
    {
        QFETCH(bool, isEmpty);
        QFETCH(QStringList, printed);
        m_view->showResults(3);
        m_view->search();
        m_view->service->finishLast(isEmpty ? answerWith(0) : QueryResult{}); // stored, not shown yet
        m_sandbox.clearPrintedLines();
        m_view->table()->selectRow(1);
        QCOMPARE(m_sandbox.printedLines(), printed);
        QVERIFY(label("detailFileLabel") != u"Film.2"_s);
        m_view->controller->downloadSelectedSubtitle();
        QCOMPARE(m_view->service->downloadCount(), isEmpty ? 1 : 0);
        m_view->controller->updateUIState(false);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        m_view->turn();
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        QCOMPARE(m_view->table()->selectedRow(), -1);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
    }

    void fillingThePanelWithoutASelectionIsOnlyPrinted()
    {
        m_view->showResults(3);
        m_sandbox.clearPrintedLines();
        m_view->controller->updateDetailView();
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"No subtitles available"_s});
    }

    void hundredThousandRowsAreShown()
    {
        constexpr int Rows = 100'000;
        m_view->showResults(Rows);
        QCOMPARE(m_view->table()->numberOfRows(), Rows);
        m_view->table()->selectRow(Rows - 1);
        m_view->table()->scrollRowToVisible(Rows - 1);
        QVERIFY(!m_view->window->grab().isNull());
        QCOMPARE(label("detailFileLabel"), u"Film.100000"_s);
    }

    void languagesAreThoseOfTheControllersConstruction()
    {
        const auto controller = ViewController::make<MainViewController>();
        const QList<Language> languages = LocaleUtilities::shared().languages();
        QCOMPARE(controller->property("languagesArray").value<QList<Language>>(), languages);
        qputenv("LC_ALL", "de_DE.UTF-8");
        const auto later = controller->property("languagesArray").value<QList<Language>>();
        qputenv("LC_ALL", "en_US.UTF-8");
        QCOMPARE(later.first().name(), u"English"_s);
    }

    void companionsAreReadAnewEachTime()
    {
        const auto desktop = FakeWorkspace::install();
        QStringList names;
        for (const QString &app : {u"Verbrook"_s, u"Glimmet"_s}) {
            desktop->installed = QStringList{u"com.quorvane."_s + app};
            const QVariant apps = m_view->controller->property("quorvaneAppsArray");
            names += apps.value<QList<ExternalAppInfo>>().first().name;
        }
        Workspace::setSharedWorkspace({});
        QCOMPARE(names, QStringList({u"Verbrook"_s, u"Glimmet"_s}));
    }
};

PLOVENDIX_GUI_TEST(ResultsTest)
#include "ResultsTest.moc"
