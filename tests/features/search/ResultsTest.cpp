#include "MainViewFixture.h"

#include <features/search/SubtitleCellView.h>
#include <tests/support/TestMain.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/controls/Label.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>
#include <ui/views/LayoutConstraint.h>

#include <QAccessible>
#include <QScrollBar>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// Has something happen at the very moment the table asks for the number of rows.
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

class ResultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void absentAndEmptyListsHaveNoRows()
    {
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
        m_view->showResults(0);
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
    }

    void cellShowsNameDetailsAndIcon()
    {
        m_view->showResults(2);
        auto *cell = qobject_cast<SubtitleCellView *>(m_view->controller->tableViewViewForRow(1));
        QVERIFY(cell);
        QCOMPARE(cell->titleTextField->text(), u"Film.2"_s);
        QCOMPARE(cell->subtitleTextField->text(), u"Film"_s);
        QVERIFY(cell->imageView()->image());
        QVERIFY(*cell->imageView()->image() == *ui::Image::named(u"SRT"_s));
        QCOMPARE(cell->imageView()->image()->size(), QSizeF(64, 64));
    }

    void unknownFormatShowsTheUnknownIcon()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(someSubtitles(1, u"odd"_s)));
        m_view->turn();
        TableCellView *cell = m_view->controller->tableViewViewForRow(0);
        QVERIFY(*cell->imageView()->image() == *ui::Image::named(u"UNKNOWN"_s));
        QCOMPARE(cell->imageView()->image()->size(), QSizeF(64, 64));
    }

    void formatIsNoPath()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(someSubtitles(1, u"../icons/srt"_s)));
        m_view->turn();
        TableCellView *cell = m_view->controller->tableViewViewForRow(0);
        QVERIFY(*cell->imageView()->image() == *ui::Image::named(u"UNKNOWN"_s));
    }

    void rowsAreReadByTheirNames()
    {
        m_view->showResults(2);
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(m_view->table());
        QCOMPARE(list->text(QAccessible::Name), u"Results"_s);
        QCOMPARE(list->child(0)->text(QAccessible::Name), u"Film.1, Film"_s);
    }

    void selectionFillsAndShowsThePanel()
    {
        m_view->showResults(3);
        select(1);
        QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
        QCOMPARE(label("detailTitleLabel"), u"Film"_s);
        QCOMPARE(label("detailLanguageLabel"), u"English"_s);
        QCOMPARE(constraint()->constant(), 0.0);
        QCOMPARE(scrollView()->contentsMargins(), QMargins(0, 80, 0, 168));
    }

    void selectionWithThePanelShownDoesNotMoveIt()
    {
        m_view->showResults(3);
        select(0);
        int movements = 0;
        connect(constraint(), &LayoutConstraint::constantChanged, this, [&] { ++movements; });
        select(2);
        QCOMPARE(label("detailFileLabel"), u"Film.3"_s);
        QCOMPARE(movements, 0);
        QCOMPARE(constraint()->constant(), 0.0);
    }

    void deselectionHidesThePanel()
    {
        m_view->showResults(3);
        select(0);
        m_view->table()->deselectAll();
        QCOMPARE(constraint()->constant(), -168.0);
        QCOMPARE(scrollView()->contentsMargins(), QMargins(0, 80, 0, 0));
    }

    void panelStartsHiddenWithInsets()
    {
        QCOMPARE(constraint()->constant(), -168.0);
        QCOMPARE(scrollView()->contentsMargins(), QMargins(0, 80, 0, 0));
    }

    void panelIsInPlaceWhenTheViewLoads()
    {
        Animator::setReducedMotion(false);
        const auto controller = ViewController::make<MainViewController>();
        const auto *bottom = static_cast<BottomPanelView *>(controller->view())->bottomConstraint();
        QCOMPARE(bottom->constant(), -168.0);
        QCOMPARE(bottom->presentedConstant(), -168.0);
    }

    void insetsChangeBeforeThePanelMoves()
    {
        Animator::setReducedMotion(false);
        m_view->showResults(3);
        QMargins insetsAtFirstMovement;
        connect(constraint(), &LayoutConstraint::presentedConstantChanged, this, [&] {
            if (insetsAtFirstMovement.isNull())
                insetsAtFirstMovement = scrollView()->contentsMargins();
        });
        select(0);
        QCOMPARE(scrollView()->contentsMargins(), QMargins(0, 80, 0, 168));
        QVERIFY(constraint()->presentedConstant() < 0);
        QTRY_COMPARE(constraint()->presentedConstant(), 0.0);
        QCOMPARE(insetsAtFirstMovement, QMargins(0, 80, 0, 168));
    }

    void shownPanelScrollsToTheSelectedRowWhenAnimated()
    {
        m_view->showResults(50);
        QScrollBar *bar = m_view->table()->verticalScrollBar();
        select(30);
        bar->setValue(0);
        QCOMPARE(bar->value(), 0);
        QTRY_VERIFY((m_view->turn(), bar->value() > 0));
        const QRect row = m_view->table()->visualRect(m_view->table()->model()->index(30, 0));
        QVERIFY(m_view->table()->viewport()->rect().contains(row));
    }

    void shownPanelDoesNotScrollWithoutAnimation()
    {
        m_view->showResults(50);
        QScrollBar *bar = m_view->table()->verticalScrollBar();
        {
            const QSignalBlocker quiet(m_view->table()->selectionModel());
            select(30);
        }
        bar->setValue(0);
        m_view->controller->updateUIState(false);
        QCOMPARE(constraint()->constant(), 0.0);
        m_view->turn();
        QCOMPARE(bar->value(), 0);
    }

    void emptyResultsDropTheSelection()
    {
        m_view->showResults(3);
        select(2);
        m_view->showResults(1);
        QCOMPARE(m_view->table()->selectedRow(), -1);
        QCOMPARE(constraint()->constant(), -168.0);
    }

    void reloadKeepsTheSelectedRow()
    {
        m_view->showResults(3);
        select(1);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        m_view->service->finishLast(answerWith(someSubtitles(3).mid(1)));
        m_view->turn();
        QCOMPARE(m_view->table()->selectedRow(), 1);
        QCOMPARE(label("detailFileLabel"), u"Film.3"_s); // what stands in that row now
        QCOMPARE(constraint()->constant(), 0.0);
    }

    void storedListDoesNotChangeTheRowsShown()
    {
        m_view->showResults(5);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(1));
        QCOMPARE(m_view->table()->numberOfRows(), 5);
        QCOMPARE(qobject_cast<SubtitleCellView *>(m_view->controller->tableViewViewForRow(4))
                     ->titleTextField->text(),
                 u"Film.5"_s);
        select(4); // fills the panel from the rows shown
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

    void selectionOverAnEmptyListIsOnlyPrinted()
    {
        m_view->showResults(3);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(0)); // stored, not shown yet
        m_sandbox.clearPrintedLines();
        select(1);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"This doesn't work"_s});
        QVERIFY(label("detailFileLabel") != u"Film.2"_s);
    }

    void selectionOverAnAbsentListIsPassedOver()
    {
        m_view->showResults(3);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(QueryResult{}); // stored, not shown yet
        m_sandbox.clearPrintedLines();
        select(1);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
        QVERIFY(label("detailFileLabel") != u"Film.2"_s);
        m_view->controller->downloadSelectedSubtitle();
        QCOMPARE(m_view->service->downloadCount(), 0);
    }

    void absentListTakesASelectedRowAway()
    {
        m_view->showResults(3);
        select(1);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(QueryResult{});
        m_sandbox.clearPrintedLines();
        m_view->controller->updateUIState(false); // a row is selected still, and fills nothing
        m_view->controller->downloadSelectedSubtitle();
        QCOMPARE(m_sandbox.printedLines(), QStringList());
        QCOMPARE(m_view->service->downloadCount(), 0);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        m_view->turn();
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        QCOMPARE(m_view->table()->selectedRow(), -1);
        QCOMPARE(constraint()->constant(), -168.0);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
    }

    void fillingThePanelWithoutASelectionIsOnlyPrinted()
    {
        m_view->showResults(3);
        m_sandbox.clearPrintedLines();
        m_view->controller->updateDetailView();
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"No subtitles available"_s});
    }

    void panelThatIsShownIsLeftAlone()
    {
        m_view->showResults(50);
        select(0);
        m_view->turn();
        QScrollBar *bar = m_view->table()->verticalScrollBar();
        scrollView()->setContentsMargins({0, 80, 0, 100});
        select(1);
        bar->setValue(bar->maximum());
        m_view->turn(); // nothing moved, so nothing scrolls
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(scrollView()->contentsMargins(), QMargins(0, 80, 0, 100));
    }

    void panelThatIsHiddenIsLeftAlone()
    {
        m_view->showResults(3);
        scrollView()->setContentsMargins({0, 80, 0, 100});
        m_view->controller->updateUIState(true);
        QCOMPARE(scrollView()->contentsMargins(), QMargins(0, 80, 0, 100));
        QCOMPARE(constraint()->constant(), -168.0);
    }

    void hundredThousandRowsAreShown()
    {
        constexpr int Rows = 100'000;
        m_view->showResults(Rows);
        QCOMPARE(m_view->table()->numberOfRows(), Rows);
        select(Rows - 1);
        m_view->table()->scrollRowToVisible(Rows - 1);
        QVERIFY(!m_view->window->grab().isNull());
        QCOMPARE(label("detailFileLabel"), u"Film.100000"_s);
    }

private:
    QWidget *scrollView() const { return m_view->widget("scrollView"); }
    LayoutConstraint *constraint() const
    {
        return static_cast<BottomPanelView *>(m_view->controller->view())->bottomConstraint();
    }
    QString label(const char *name) const { return m_view->child<ui::Label>(name)->text(); }
    void select(int row) const { m_view->table()->selectRow(row); }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(ResultsTest)
#include "ResultsTest.moc"
