#include "MainViewFixture.h"

#include <features/search/DropAreaMessage.h>
#include <model/ServiceStatus.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QLabel>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What the main view shows of what the services say of themselves.
class ServiceStatusTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;

    static void say(const ServiceStatus::Value &value) { ServiceStatus::shared().setValue(value); }
    ui::Label *remaining() const { return m_view->child<ui::Label>("remainingLabel"); }
    QString hint() const { return m_view->child<QLabel>("dropHint")->text(); }

private Q_SLOTS:
    void init()
    {
        say({});
        m_view = std::make_unique<MainViewFixture>();
    }
    void cleanup()
    {
        m_view.reset();
        say({});
    }

    void changesNotifyOnce()
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
        QVERIFY(!remaining()->isVisibleTo(m_view->window.get()));
        say({true, 17});
        QVERIFY(remaining()->isVisibleTo(m_view->window.get()));
        QCOMPARE(remaining()->text(), u"Downloads left: 17"_s);
        say({true, 0});
        QCOMPARE(remaining()->text(), u"Downloads left: 0"_s);
        say({true, std::nullopt}); // somebody else's account
        QVERIFY(!remaining()->isVisibleTo(m_view->window.get()));
    }

    void whatWasSaidBeforeTheViewIsShownToo()
    {
        say({true, 3});
        m_view.reset();
        m_view = std::make_unique<MainViewFixture>();
        QCOMPARE(remaining()->text(), u"Downloads left: 3"_s);
    }

    void nothingFoundOfflineSaysWhereKeysAreOnce()
    {
        say({false, std::nullopt});
        m_view->showResults(0);
        QVERIFY(hint().contains(offlineHint()));
        QVERIFY(hint().startsWith(u"Try fewer words"_s));
        m_view->showResults(0);
        QVERIFY(!hint().contains(offlineHint()));
    }

    void shortHintNeedsNoRoomBelow()
    {
        const auto *hint = m_view->child<QLabel>("dropHint");
        say({false, std::nullopt});
        m_view->showResults(0);
        QVERIFY(hint->contentsMargins().bottom() > 0);
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(hint->contentsMargins(), QMargins());
    }

    void longHintStaysInsideTheDropArea()
    {
        say({false, std::nullopt});
        m_view->showResults(0);
        const auto *area = m_view->widget("dropArea");
        for (const char *name : {"dropHeadline", "dropHint"}) {
            const auto *label = m_view->child<QLabel>(name);
            QTRY_VERIFY2(label->height() >= label->heightForWidth(label->width()), name);
            QTRY_VERIFY2(label->geometry().bottom() - label->contentsMargins().bottom() < area->height() - 20,
                         name);
        }
    }

    void rowsOfThisMachineAloneAreSaidToBe_data()
    {
        QTest::addColumn<int>("missing");
        QTest::addColumn<QString>("text");
        QTest::newRow("offline") << static_cast<int>(ServiceStatus::Missing::ByBeingOffline)
                                 << u"Offline: showing the local catalogue"_s;
        QTest::newRow("key") << static_cast<int>(ServiceStatus::Missing::KeyRejected)
                             << u"The online service does not accept the key (see the preferences):\n"
                                "showing the local catalogue"_s;
        QTest::newRow("language") << static_cast<int>(ServiceStatus::Missing::ByTheLanguage)
                                  << u"The online service has no subtitles in this language:\n"
                                     "showing the local catalogue"_s;
        QTest::newRow("pause") << static_cast<int>(ServiceStatus::Missing::ByAPause)
                               << u"Wait until 14:05.\nShowing the local catalogue"_s;
        QTest::newRow("failure") << static_cast<int>(ServiceStatus::Missing::ByAFailure)
                                 << u"The online service could not be used: showing the local catalogue"_s;
    }
    void rowsOfThisMachineAloneAreSaidToBe()
    {
        QFETCH(const int, missing);
        const auto *notice = m_view->child<ui::Label>("languageNotice");
        m_view->showResults(2);
        QVERIFY(!notice->isVisibleTo(m_view->window.get()));
        say({true, std::nullopt, static_cast<ServiceStatus::Missing>(missing), u"Wait until 14:05."_s});
        m_view->showResults(2);
        QVERIFY(notice->isVisibleTo(m_view->window.get()));
        QTEST(notice->text(), "text");
        QTRY_VERIFY(notice->height() >= notice->sizeHint().height());
        QVERIFY(notice->width() >= notice->sizeHint().width());
        QVERIFY(m_view->table()->isVisibleTo(m_view->window.get()));
        // The next answer is whole again.
        say({});
        m_view->showResults(2);
        QVERIFY(!notice->isVisibleTo(m_view->window.get()));
    }

    void rowsLeftOutAreSaid()
    {
        const auto *notice = m_view->child<ui::Label>("languageNotice");
        ServiceStatus::Value status;
        status.leftOut = 1000;
        say(status);
        m_view->showResults(2);
        QVERIFY(notice->isVisibleTo(m_view->window.get()));
        QCOMPARE(notice->text(), u"Showing 2 of 1,002 results; more words find the others"_s);
        say({});
        m_view->showResults(2);
        QVERIFY(!notice->isVisibleTo(m_view->window.get()));
    }

    void pauseIsSaidWhileASearchWaits()
    {
        const auto *hint = m_view->child<QLabel>("pauseHint");
        const auto *notice = m_view->child<ui::Label>("pauseNotice");
        ServiceStatus::Value waits;
        waits.pause = 3s;
        say(waits);
        QVERIFY(hint->isVisibleTo(m_view->window.get()));
        QCOMPARE(hint->text(), u"Too many requests, trying again in 3 s"_s);
        say({});
        QVERIFY(!hint->isVisibleTo(m_view->window.get()));
        m_view->showResults(2);
        QVERIFY(!notice->isVisibleTo(m_view->window.get()));
        say(waits);
        QVERIFY(notice->isVisibleTo(m_view->window.get()));
        QCOMPARE(notice->text(), u"Too many requests, trying again in 3 s"_s);
        say({});
        QVERIFY(!notice->isVisibleTo(m_view->window.get()));
    }

    void nothingFoundOnTheNetworkSaysNothingOfKeys()
    {
        m_view->showResults(0);
        QVERIFY(!hint().contains(offlineHint()));
        say({false, std::nullopt}); // the key was taken away: still to be said once
        m_view->showResults(2);
        QVERIFY(!hint().contains(offlineHint()));
        m_view->showResults(0);
        QVERIFY(hint().contains(offlineHint()));
    }
};

PLOVENDIX_GUI_TEST(ServiceStatusTest)
#include "ServiceStatusTest.moc"
