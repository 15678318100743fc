#include "MainViewFixture.h"

#include <model/ServiceStatus.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QLabel>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const QString NotFound = u"Nothing found for “Some.Film.2019.mkv” in English"_s;
const QString GoingOn = u"Searching for “words from name”…"_s;

base::Error refusal()
{
    return base::Error{u"Service"_s, 7, u"The service refuses."_s};
}
} // namespace

/// What the window says of the last answer, and of a search that goes on.
class AnswerMessageTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;

    QString headline() const { return m_view->child<QLabel>("dropHeadline")->text(); }
    QString hint() const { return m_view->child<QLabel>("dropHint")->text(); }
    /// The line above the rows; empty while none is shown.
    QString aboveRows() const
    {
        const auto *line = m_view->child<ui::Label>("languageNotice");
        return line->isVisible() ? line->text() : QString();
    }
    ui::Label *saveTarget() const { return m_view->child<ui::Label>("saveTargetLabel"); }
    /// Answers the last query with a failure, and the alert.
    void failLast() const
    {
        m_view->service->finishLast(refusal());
        QCOMPARE(alertDuring([this] { m_view->turn(); }), u"The service refuses."_s);
    }
    /// Answers the last query with so many results.
    void answerLast(int count) const
    {
        m_view->service->finishLast(answerWith(count));
        m_view->turn();
    }

private Q_SLOTS:
    void init()
    {
        ServiceStatus::shared().setValue({});
        m_view = std::make_unique<MainViewFixture>();
    }
    void cleanup()
    {
        m_view.reset();
        ServiceStatus::shared().setValue({});
    }

    void failedSearchLeavesNothingFound()
    {
        m_view->showResults(0);
        const QString said = headline();
        const QString advice = hint();
        QCOMPARE(said, u"Nothing found for “anything” in English"_s);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        failLast();
        QCOMPARE(headline(), said);
        QCOMPARE(hint(), advice);
    }

    void failedSearchLeavesTheLineAboveTheRows()
    {
        ServiceStatus::shared().setValue({true, std::nullopt, ServiceStatus::Missing::ByBeingOffline});
        m_view->showResults(2);
        const QString said = aboveRows();
        QCOMPARE(said, u"Offline: showing the local catalogue"_s);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        QCOMPARE(aboveRows(), said);
        failLast();
        QCOMPARE(aboveRows(), said);
        QCOMPARE(m_view->table()->numberOfRows(), 2);
    }

    void nextAnswerTakesThePlaceOfTheMessage()
    {
        m_view->showResults(0);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        answerLast(0);
        QCOMPARE(headline(), u"Nothing found for “another” in English"_s);
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(headline(), u"Drop a video here"_s);
        QCOMPARE(hint(), u"or type a title above"_s);
    }

    void wordsSearchSaysThatItGoesOn()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        QCOMPARE(headline(), u"Drop a video here"_s);
        answerLast(0);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->controller->isQuerying());
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(headline(), GoingOn);
        QVERIFY(!hint().isEmpty());
        answerLast(0);
        QVERIFY(!m_view->controller->isQuerying());
        QCOMPARE(headline(), u"Nothing found for “words from name” in English"_s);
    }

    void wordsSearchSaysSoAboveTheEmptyListToo()
    {
        m_view->showResults(3);
        m_view->controller->searchForFile(Video, std::nullopt);
        QCOMPARE(aboveRows(), QString());
        answerLast(0);
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        QCOMPARE(aboveRows(), GoingOn);
        answerLast(2);
        QCOMPARE(aboveRows(), QString());
        QCOMPARE(m_view->table()->numberOfRows(), 2);
    }

    void failedWordsSearchLeavesTheAnswerOfTheHash()
    {
        m_view->showResults(3);
        m_view->controller->searchForFile(Video, std::nullopt);
        answerLast(0);
        m_view->service->finishLast(refusal());
        QString behindTheAlert;
        QVERIFY(whileAlertIsUp([this] { m_view->turn(); },
                               [&] {
                                   behindTheAlert = aboveRows();
                                   dismissAlert();
                               }));
        QCOMPARE(behindTheAlert, NotFound);
        QCOMPARE(aboveRows(), NotFound);
        QCOMPARE(headline(), NotFound);
    }

    void failureBesideAnOpenSearchLeavesItsMessage()
    {
        m_view->controller->searchForText(u"first"_s, std::nullopt);
        m_view->controller->searchForFile(Video, std::nullopt);
        answerLast(0);
        m_view->service->finish(0, refusal());
        QVERIFY(!alertDuring([this] { m_view->turn(); }).isEmpty());
        QCOMPARE(headline(), GoingOn);
        answerLast(0);
        QVERIFY(headline().startsWith(u"Nothing found"_s));
    }

    void cancelEndsEveryQuery()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        answerLast(0);
        const QSignalSpy changes(m_view->controller.get(), &MainViewController::isQueryingChanged);
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(!m_view->controller->isQuerying());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(headline(), u"Drop a video here"_s);
        m_view->turn();
        QCOMPARE(headline(), u"Drop a video here"_s);
    }

    void panelSaysWhichVideoASaveGoesBeside()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        answerLast(2);
        m_view->table()->selectRow(0);
        QVERIFY(saveTarget()->isVisible());
        QCOMPARE(saveTarget()->text(), u"Saves beside “Some.Film.2019.mkv”"_s);
        // Words that are typed and sent by Return keep the file.
        m_view->controller->searchForText(u"other words"_s, std::nullopt);
        answerLast(2);
        m_view->table()->selectRow(1);
        QVERIFY(saveTarget()->isVisible());
        QCOMPARE(saveTarget()->text(), u"Saves beside “Some.Film.2019.mkv”"_s);
        // The search button forgets it.
        m_view->field()->setText(u"other words"_s);
        m_view->controller->doSearch(nullptr);
        answerLast(2);
        m_view->table()->selectRow(0);
        QVERIFY(m_view->downloadButton()->isVisible());
        QVERIFY(!saveTarget()->isVisible());
    }

    void panelNamesNoVideoWhileARequesterWaits()
    {
        const ExternalRequestInfo tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
        m_view->controller->searchForFile(Video, tessaly);
        answerLast(2);
        m_view->table()->selectRow(0);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
        QVERIFY(!saveTarget()->isVisible());
        // A cancelled search forgets the requester.
        m_view->controller->cancelQuery(nullptr);
        m_view->controller->searchForFile(Video, std::nullopt);
        answerLast(2);
        m_view->table()->selectRow(0);
        QVERIFY(saveTarget()->isVisible());
        // A requester that comes with words takes over the file's results.
        m_view->controller->searchForText(u"words"_s, tessaly);
        QVERIFY(!saveTarget()->isVisible());
    }

    void panelSaysNothingOfAVideoWithoutAHash()
    {
        m_view->service->hash.reset();
        m_view->controller->searchForFile(Video, std::nullopt);
        m_view->turn();
        answerLast(1);
        m_view->table()->selectRow(0);
        QVERIFY(m_view->downloadButton()->isVisible());
        QVERIFY(!saveTarget()->isVisible());
    }
};

PLOVENDIX_GUI_TEST(AnswerMessageTest)
#include "AnswerMessageTest.moc"
