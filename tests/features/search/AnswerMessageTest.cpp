#include "MainViewFixture.h"

#include <model/ServiceStatus.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QLabel>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QString NotFound = u"Nothing found for “Some.Film.2019.mkv” in English"_s;
const QString GoingOn = u"Searching for “words from name”…"_s;
} // namespace

/// What the window says of the last answer, of a search that goes on and of the services.
class AnswerMessageTest final : public MainViewTest
{
    Q_OBJECT

private:
    static void say(const ServiceStatus::Value &value) { ServiceStatus::shared().setValue(value); }
    QString headline() const { return m_view->child<QLabel>("dropHeadline")->text(); }
    QString hint() const { return m_view->child<QLabel>("dropHint")->text(); }
    /// The text of a label; empty while it is not shown.
    template <class LabelClass>
    QString shown(const char *name) const
    {
        const auto *label = m_view->child<LabelClass>(name);
        return label->isVisible() ? label->text() : QString();
    }
    QString aboveRows() const { return shown<ui::Label>("languageNotice"); }
    QString saveTarget() const { return shown<ui::Label>("saveTargetLabel"); }
    /// Answers the last query with a failure, and the alert.
    void failLast() const
    {
        QCOMPARE(alertDuring([this] { m_view->answer(refusal()); }), refusal().localizedDescription);
    }
    void answerAndSelect(int row) const
    {
        m_view->answer(2);
        m_view->table()->selectRow(row);
        QVERIFY(m_view->downloadButton()->isVisible());
    }

private Q_SLOTS:
    void failedSearchLeavesNothingFound()
    {
        m_view->showResults(0);
        const QString advice = hint();
        QVERIFY(!advice.isEmpty());
        m_view->search(u"another"_s);
        failLast();
        QCOMPARE(headline(), u"Nothing found for “anything” in English"_s);
        QCOMPARE(hint(), advice);
    }

    void failedSearchLeavesTheLineAboveTheRows()
    {
        say({true, std::nullopt, ServiceStatus::Missing::ByBeingOffline});
        m_view->showResults(2);
        const QString said = u"Offline: showing the local catalogue"_s;
        QCOMPARE(aboveRows(), said);
        m_view->search();
        QCOMPARE(aboveRows(), said);
        failLast();
        QCOMPARE(aboveRows(), said);
        QCOMPARE(m_view->table()->numberOfRows(), 2);
    }

    void nextAnswerTakesThePlaceOfTheMessage()
    {
        m_view->showResults(0);
        m_view->search(u"another"_s);
        m_view->answer(0);
        QCOMPARE(headline(), u"Nothing found for “another” in English"_s);
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(headline(), u"Drop a video here"_s);
        QCOMPARE(hint(), u"or type a title above"_s);
    }

    void wordsSearchSaysThatItGoesOn()
    {
        m_view->searchFile();
        QCOMPARE(headline(), u"Drop a video here"_s);
        m_view->answer(0);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->controller->isQuerying());
        QCOMPARE(headline(), GoingOn);
        QVERIFY(!hint().isEmpty());
        m_view->answer(0);
        QVERIFY(!m_view->controller->isQuerying());
        QCOMPARE(headline(), u"Nothing found for “words from name” in English"_s);
    }

    void wordsSearchSaysSoAboveTheEmptyListToo()
    {
        m_view->showResults(3);
        m_view->searchFile();
        QCOMPARE(aboveRows(), QString());
        m_view->answer(0);
        QCOMPARE(aboveRows(), GoingOn);
        m_view->answer(2);
        QCOMPARE(aboveRows(), QString());
        QCOMPARE(m_view->table()->numberOfRows(), 2);
    }

    void failedWordsSearchLeavesTheAnswerOfTheHash()
    {
        m_view->showResults(3);
        m_view->searchFile();
        m_view->answer(0);
        QString behindTheAlert;
        QVERIFY(whileAlertIsUp([this] { m_view->answer(refusal()); },
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
        m_view->search();
        m_view->searchFile();
        m_view->answer(0);
        m_view->service->finish(0, refusal());
        QVERIFY(!alertDuring([this] { m_view->turn(); }).isEmpty());
        QCOMPARE(headline(), GoingOn);
        m_view->answer(0);
        QVERIFY(headline().startsWith(u"Nothing found"_s));
    }

    void cancelEndsEveryQuery()
    {
        m_view->searchFile();
        m_view->answer(0);
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
        const QString beside = u"Saves beside “Some.Film.2019.mkv”"_s;
        m_view->searchFile();
        answerAndSelect(0);
        QCOMPARE(saveTarget(), beside);
        m_view->search(); // words sent by Return keep the file
        answerAndSelect(1);
        QCOMPARE(saveTarget(), beside);
        m_view->controller->searchForText(u"words"_s, tessaly()); // a requester takes its results over
        QCOMPARE(saveTarget(), QString());
        m_view->searchFile();
        answerAndSelect(0);
        QCOMPARE(saveTarget(), QString());
        m_view->controller->cancelQuery(nullptr); // forgets the requester
        m_view->searchFile();
        answerAndSelect(0);
        QCOMPARE(saveTarget(), beside);
        m_view->controller->doSearch(nullptr); // the search button forgets the file
        answerAndSelect(0);
        QCOMPARE(saveTarget(), QString());
        m_view->service->hash.reset(); // a file without a hash is not kept
        m_view->searchFile();
        m_view->turn();
        answerAndSelect(0);
        QCOMPARE(saveTarget(), QString());
    }

    void statusChangesNotifyOnce()
    {
        const QSignalSpy changes(&ServiceStatus::shared(), &ServiceStatus::changed);
        say({true, 4});
        say({true, 4});
        QCOMPARE(changes.count(), 1);
    }

    void panelSaysHowManyDownloadsAreLeft()
    {
        m_view->showResults(1);
        m_view->table()->selectRow(0);
        QCOMPARE(shown<ui::Label>("remainingLabel"), QString());
        say({true, 17});
        QCOMPARE(shown<ui::Label>("remainingLabel"), u"Downloads left: 17"_s);
        say({true, 0});
        QCOMPARE(shown<ui::Label>("remainingLabel"), u"Downloads left: 0"_s);
        say({true, std::nullopt}); // another account
        QCOMPARE(shown<ui::Label>("remainingLabel"), QString());
        say({true, 3}); // before the view is there
        m_view.reset();
        m_view = std::make_unique<MainViewFixture>();
        QCOMPARE(m_view->child<ui::Label>("remainingLabel")->text(), u"Downloads left: 3"_s);
    }

    void nothingFoundOfflineSaysWhereKeysAreOnce()
    {
        const auto *label = m_view->child<QLabel>("dropHint");
        m_view->showResults(0);
        QVERIFY(!hint().contains(offlineHint())); // it was found on the network
        say({false, std::nullopt});
        m_view->showResults(2);
        QVERIFY(!hint().contains(offlineHint()));
        QCOMPARE(label->contentsMargins(), QMargins());
        m_view->showResults(0);
        QCOMPARE(hint(), u"Try fewer words or another language\n"_s + offlineHint());
        // The texts stay inside the drop area.
        QVERIFY(label->contentsMargins().bottom() > 0);
        for (const char *name : {"dropHeadline", "dropHint"}) {
            const auto *text = m_view->child<QLabel>(name);
            QTRY_VERIFY2(text->height() >= text->heightForWidth(text->width()), name);
            QTRY_VERIFY2(text->geometry().bottom() - text->contentsMargins().bottom() <
                             m_view->widget("dropArea")->height() - 20,
                         name);
        }
        m_view->showResults(0);
        QVERIFY(!hint().contains(offlineHint()));
        QCOMPARE(label->contentsMargins(), QMargins());
    }

    void rowsAreSaidNotToBeAll_data()
    {
        using Missing = ServiceStatus::Missing;
        QTest::addColumn<int>("missing");
        QTest::addColumn<qint64>("leftOut");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, Missing missing, qint64 leftOut, const QString &text) {
            QTest::newRow(name) << static_cast<int>(missing) << leftOut << text;
        };
        row("offline", Missing::ByBeingOffline, 0, u"Offline: showing the local catalogue"_s);
        row("key", Missing::KeyRejected, 0,
            u"The online service does not accept the key (see the preferences):\n"
            "showing the local catalogue"_s);
        row("language", Missing::ByTheLanguage, 0,
            u"The online service has no subtitles in this language:\nshowing the local catalogue"_s);
        row("pause", Missing::ByAPause, 0, u"Wait until 14:05.\nShowing the local catalogue"_s);
        row("failure", Missing::ByAFailure, 0,
            u"The online service could not be used: showing the local catalogue"_s);
        row("left out", Missing::Nothing, 1000, u"Showing 2 of 1,002 results; more words find the others"_s);
    }
    void rowsAreSaidNotToBeAll()
    {
        QFETCH(const int, missing);
        QFETCH(const qint64, leftOut);
        m_view->showResults(2);
        QCOMPARE(aboveRows(), QString());
        say({true, {}, static_cast<ServiceStatus::Missing>(missing), u"Wait until 14:05."_s, leftOut});
        m_view->showResults(2);
        QTEST(aboveRows(), "text");
        const auto *notice = m_view->child<ui::Label>("languageNotice");
        QTRY_VERIFY(notice->height() >= notice->sizeHint().height());
        QVERIFY(notice->width() >= notice->sizeHint().width());
        say({}); // the next answer is whole again
        m_view->showResults(2);
        QCOMPARE(aboveRows(), QString());
    }

    void pauseIsSaidWhileASearchWaits()
    {
        ServiceStatus::Value waits;
        waits.pause = 3s;
        say(waits);
        QCOMPARE(shown<QLabel>("pauseHint"), u"Too many requests, trying again in 3 s"_s);
        say({});
        QCOMPARE(shown<QLabel>("pauseHint"), QString());
        m_view->showResults(2);
        QCOMPARE(shown<ui::Label>("pauseNotice"), QString());
        say(waits);
        QCOMPARE(shown<ui::Label>("pauseNotice"), u"Too many requests, trying again in 3 s"_s);
        say({});
        QCOMPARE(shown<ui::Label>("pauseNotice"), QString());
    }
};

PLOVENDIX_GUI_TEST(AnswerMessageTest)
#include "AnswerMessageTest.moc"
