#include "MainViewFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

/// Answers that have come and wait for the main queue when the person cancels.
class CancelledAnswerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_view = std::make_unique<MainViewFixture>(); }
    void cleanup() { m_view.reset(); }

    /// Nothing found by a file's hash leads to a search for words, but not once the person has cancelled.
    void answerThatWaitsIsDroppedByACancel()
    {
        m_view->controller->searchForFile(QUrl(u"file:///videos/Some.Film.2019.mkv"_s), std::nullopt);
        m_view->service->finishLast(answerWith(0));
        m_view->controller->cancelQuery(nullptr);
        m_view->turn();
        QCOMPARE(m_view->service->queries.size(), 1);
        QCOMPARE(m_view->title(), u"Plovendix"_s);
        QVERIFY(!m_view->controller->isQuerying());
        QVERIFY(m_view->cancelButton()->isHidden());
    }

    void failureThatWaitsIsDroppedByACancel()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(base::Error{u"Service"_s, 7, u"The service refuses."_s});
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(alertDuring([this] { m_view->turn(); }), QString());
        QVERIFY(m_view->cancelButton()->isHidden());
    }

    void cancelledAnswerLeavesTheNextSearchAlone()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(2));
        m_view->controller->cancelQuery(nullptr);
        m_view->controller->searchForText(u"b"_s, std::nullopt);
        m_view->turn();
        QVERIFY(m_view->controller->isSearching());
        m_view->service->finishLast(answerWith(3));
        m_view->turn();
        QVERIFY(!m_view->controller->isSearching());
        QCOMPARE(m_view->table()->numberOfRows(), 3);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(CancelledAnswerTest)
#include "CancelledAnswerTest.moc"
