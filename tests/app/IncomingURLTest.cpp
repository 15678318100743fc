#include <app/AppDelegate.h>
#include <app/AppScenes.h>
#include <app/MainWindowController.h>
#include <base/MainQueue.h>
#include <features/search/MainViewController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/scenes/Storyboard.h>
#include <ui/system/URLEventCentre.h>
#include <ui/window/Window.h>

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{
/// Reads every alert and closes it.
class AlertReader final : public QObject
{
public:
    AlertReader()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!alert)
                return;
            texts += alert->text();
            if (whileShown)
                std::exchange(whileShown, {})();
            alert->close();
        });
        m_timer.start(0);
    }

    QStringList texts;
    std::function<void()> whileShown;

private:
    QTimer m_timer;
};

void sendURL(const QString &text)
{
    URLEventCentre::shared().send({text});
}

QString request(const QString &query)
{
    return u"plovendix://search?"_s + query;
}
} // namespace

class IncomingURLTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerScenes(); }
    void init()
    {
        m_service = ScriptedSubtitleService::install();
        m_metadata = ScriptedMetadataService::install();
        m_delegate = std::make_unique<AppDelegate>();
        m_delegate->applicationWillFinishLaunching();
        m_sandbox.clearPrintedLines();
    }
    void cleanup()
    {
        m_window.reset();
        m_delegate.reset();
        MainQueue::shared().clear();
    }

    void urlThatStartsTheProgramReachesTheHandler()
    {
        m_delegate.reset();
        sendURL(request(u"fileurl=file:///v/A.mkv&docid=42&sender=tessaly3"_s));
        m_delegate = std::make_unique<AppDelegate>();
        showMainWindow();
        QVERIFY(m_service->hashed.isEmpty());
        m_delegate->applicationWillFinishLaunching();
        QCOMPARE(m_service->hashed, QList<QUrl>{QUrl(u"file:///v/A.mkv"_s)});
    }

    void requestSearchesAndNamesTheButton_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("title");
        QTest::newRow("Tessaly") << u"fileurl=file:///v/A.mkv&docid=42&sender=tessaly3"_s
                                 << u"Send to Tessaly"_s;
        QTest::newRow("no sender") << u"fileurl=file:///v/A.mkv&docid=42"_s << u"Download"_s;
    }
    void requestSearchesAndNamesTheButton()
    {
        QFETCH(QString, query);
        QFETCH(QString, title);
        showMainWindow();
        sendURL(request(query));
        QCOMPARE(m_service->hashed, QList<QUrl>{QUrl(u"file:///v/A.mkv"_s)});
        QCOMPARE(m_window->window()->findChild<QLineEdit *>(u"searchField"_s)->text(), u"A.mkv"_s);
        QCOMPARE(m_window->window()->findChild<QPushButton *>(u"downloadButton"_s)->text(), title);
    }

    void nothingThatIsNoURLDoesAnything_data()
    {
        QTest::addColumn<GetURLEvent>("event");
        QTest::newRow("no parameter") << GetURLEvent{};
        QTest::newRow("empty") << GetURLEvent{QString()};
    }
    void nothingThatIsNoURLDoesAnything()
    {
        QFETCH(GetURLEvent, event);
        AlertReader reader;
        showMainWindow();
        m_sandbox.clearPrintedLines();
        URLEventCentre::shared().send(event);
        QVERIFY(m_service->hashed.isEmpty());
        QVERIFY(reader.texts.isEmpty());
        QVERIFY(m_sandbox.printedLines().isEmpty());
        QVERIFY(!m_delegate->externalRequest);
    }

    void requestWithoutAFileIsAnErrorShown()
    {
        AlertReader reader;
        showMainWindow();
        sendURL(request(u"docid=42&sender=tessaly3"_s));
        QCOMPARE(reader.texts,
                 QStringList{u"Cannot create URL from plovendix://search?docid=42&sender=tessaly3. "
                             "Contact support@quorvane.example"_s});
        QVERIFY(m_service->hashed.isEmpty());
    }

    void errorsDoNotPileUp()
    {
        AlertReader reader;
        showMainWindow();
        reader.whileShown = [this] {
            sendURL(request(u"docid=2"_s));
            sendURL(request(u"docid=3"_s));
            sendURL(request(u"fileurl=/v/A.mkv"_s));
        };
        sendURL(request(u"docid=1"_s));
        QCOMPARE(reader.texts.size(), 2);
        QVERIFY(reader.texts.last().contains(u"docid=3"_s));
        QCOMPARE(m_service->hashed.size(), 1);
    }

    void requestWithoutAWindowIsDropped()
    {
        sendURL(request(u"fileurl=/v/A.mkv"_s));
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"No window open?"_s});
        QVERIFY(!m_delegate->externalRequest);
        m_delegate->open({u"file:///v/A.mkv"_s});
        QCOMPARE(m_sandbox.printedLines().size(), 2);
        QVERIFY(!m_delegate->externalRequest);
    }

    void requestBeforeTheMainViewIsParkedAndTheLatestServed()
    {
        {
            ui::Window empty;
            empty.show();
            sendURL(request(u"fileurl=/v/One.mkv&docid=1&sender=verbrook3"_s));
            QCOMPARE(m_delegate->externalRequest->requestInfo->name, u"Verbrook"_s);
            m_delegate->open({u"file:///v/Two.mkv"_s});
            QVERIFY(!m_delegate->externalRequest->requestInfo);
            sendURL(request(u"fileurl=file:///v/Three.mkv&docid=3&sender=glimmet"_s));
            QVERIFY(m_service->hashed.isEmpty());
        }
        showMainWindow();
        QCOMPARE(m_service->hashed, QList<QUrl>{QUrl(u"file:///v/Three.mkv"_s)});
        QVERIFY(!m_delegate->externalRequest);
        QCOMPARE(m_window->window()->findChild<QPushButton *>(u"downloadButton"_s)->text(),
                 u"Send to Glimmet"_s);
    }

    void otherWindowsNeverSwallowARequest()
    {
        showMainWindow();
        ui::Window preferences;
        preferences.makeKeyAndOrderFront();
        sendURL(request(u"fileurl=/v/A.mkv"_s));
        QCOMPARE(m_service->hashed.size(), 1);
        QTRY_VERIFY(m_window->window()->isActiveWindow());
    }

    void minimisedWindowComesBack()
    {
        showMainWindow();
        m_window->window()->showMinimized();
        m_delegate->activate();
        QVERIFY(!m_window->window()->isMinimized());
        QTRY_VERIFY(m_window->window()->isActiveWindow());
    }

    void filesAreSearchedForLikeADrop_data()
    {
        QTest::addColumn<QStringList>("uris");
        QTest::addColumn<QList<QUrl>>("hashed");
        const QUrl one(u"file:///v/One.mkv"_s);
        QTest::newRow("one") << QStringList{u"file:///v/One.mkv"_s} << QList<QUrl>{one};
        QTest::newRow("first of several")
            << QStringList{u"file:///v/One.mkv"_s, u"file:///v/Two.mkv"_s} << QList<QUrl>{one};
        QTest::newRow("any case") << QStringList{u"FILE:///v/One.mkv"_s} << QList<QUrl>{one};
        QTest::newRow("unescaped") << QStringList{u"file:///v/One B.mkv"_s}
                                   << QList<QUrl>{QUrl(u"file:///v/One%20B.mkv"_s)};
        QTest::newRow("beside a request")
            << QStringList{u"plovendix:?fileurl=file:///v/Two.mkv"_s, u"file:///v/One.mkv"_s}
            << QList<QUrl>{QUrl(u"file:///v/Two.mkv"_s), one};
        QTest::newRow("broken") << QStringList{u"file://[x"_s} << QList<QUrl>();
        QTest::newRow("nothing") << QStringList() << QList<QUrl>();
        QTest::newRow("no URL") << QStringList{u"rubbish"_s, QString()} << QList<QUrl>();
    }
    void filesAreSearchedForLikeADrop()
    {
        QFETCH(QStringList, uris);
        QFETCH(QList<QUrl>, hashed);
        AlertReader reader;
        showMainWindow();
        m_delegate->open(uris);
        QCOMPARE(m_service->hashed, hashed);
        // Alone "rubbish" is a URL of a kind, but one that names no video.
        QCOMPARE(reader.texts.size(), uris.contains(u"rubbish"_s) ? 1 : 0);
    }

    void hugeRequestIsTaken()
    {
        showMainWindow();
        sendURL(request(u"x="_s + QString(1'000'000, u'a') + u"&fileurl=/v/A.mkv"_s));
        QCOMPARE(m_service->hashed.size(), 1);
    }

private:
    void showMainWindow()
    {
        m_window = std::make_unique<MainWindowController>();
        m_window->showWindow();
    }

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedSubtitleService> m_service;
    std::shared_ptr<ScriptedMetadataService> m_metadata;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<MainWindowController> m_window;
};

PLOVENDIX_GUI_TEST(IncomingURLTest)
#include "IncomingURLTest.moc"
