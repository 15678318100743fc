#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// When the button that cancels and clears shows, and how it comes and goes.
class CancelButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_view = std::make_unique<MainViewFixture>(); }
    void cleanup() { m_view.reset(); }

    void revealOfAnEarlierSearchServesALaterOne()
    {
        m_view->controller->searchForText(u"first"_s, std::nullopt);
        m_view->advance(4s);
        m_view->controller->cancelQuery(nullptr);
        m_view->controller->searchForText(u"second"_s, std::nullopt);
        m_view->advance(5999ms);
        QVERIFY(m_view->cancelButton()->isHidden());
        m_view->advance(1ms); // ten seconds after the first began, six after the second
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void buttonStaysAsItWasWhenAnotherSearchStarts()
    {
        m_view->showResults(2);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void buttonStaysHiddenAfterACancelledSearchStartsAnew()
    {
        m_view->showResults(2);
        m_view->controller->cancelQuery(nullptr);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        QVERIFY(m_view->cancelButton()->isHidden());
        m_view->service->finishLast(answerWith(0)); // the search that finds nothing ends like any other
        m_view->turn();
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void revealAfterTheControllerHasGoneDoesNothing()
    {
        m_view->controller->searchForText(u"first"_s, std::nullopt);
        const std::weak_ptr<MainViewController> gone = m_view->controller;
        m_view->window.reset();
        m_view->controller.reset();
        QVERIFY(gone.expired()); // the block that waits does not keep it
        m_view->advance(20s);
        m_view = std::make_unique<MainViewFixture>();
        QVERIFY(m_view->cancelButton()->isHidden());
    }

    void buttonComesAndGoesAnimated()
    {
        Animator::setReducedMotion(false);
        QVERIFY(!isFading());
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QVERIFY(m_view->cancelButton()->isVisible());
        QVERIFY(isFading());
        QTRY_VERIFY(!isFading());
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(m_view->cancelButton()->isHidden());
        QVERIFY(isFading());
        QTRY_VERIFY(!isFading());
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->advance(10s);
        QVERIFY(m_view->cancelButton()->isVisible());
        QVERIFY(isFading());
    }

    void clickCancelsARunningSearchAndKeepsTheText()
    {
        m_view->field()->setText(u"typed"_s);
        m_view->controller->doSearch(nullptr);
        m_view->advance(10s);
        QTest::mouseClick(m_view->cancelButton(), Qt::LeftButton);
        QCOMPARE(m_view->service->cancellations, 1);
        QCOMPARE(m_view->field()->text(), u"typed"_s);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->cancelButton()->isHidden());
        QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
    }

private:
    bool isFading() const
    {
        const auto widgets = m_view->window->findChildren<QWidget *>();
        return std::any_of(widgets.begin(), widgets.end(),
                           [](const QWidget *widget) { return widget->inherits("FadingSnapshot"); });
    }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(CancelButtonTest)
#include "CancelButtonTest.moc"
