#include <features/feedback/RecentMessages.h>
#include <net/Redactor.h>
#include <tests/support/TestMain.h>

#include <QLoggingCategory>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(ours, "plovendix.test", QtInfoMsg)
Q_LOGGING_CATEGORY(others, "plovendixish.test", QtInfoMsg)

QStringList passedOn; // by the handler that was there before

void noteBefore(QtMsgType, const QMessageLogContext &, const QString &message)
{
    passedOn += message;
}
} // namespace

class RecentMessagesTest final : public QObject
{
    Q_OBJECT

private:
    QtMessageHandler m_before = nullptr;

private Q_SLOTS:
    void init()
    {
        passedOn.clear();
        m_before = qInstallMessageHandler(noteBefore);
        RecentMessages::install();
    }
    void cleanup()
    {
        RecentMessages::uninstall();
        qInstallMessageHandler(m_before);
    }

    void ourOwnMessagesAreNotedAndPassedOn()
    {
        RecentMessages::install(); // a second time
        qCInfo(ours, "one");
        qCWarning(ours, "two");
        qCInfo(others, "three");
        qWarning("four");
        const QStringList noted = RecentMessages::lines();
        const QStringList passed = passedOn;
        QCOMPARE(noted, (QStringList{u"info plovendix.test: one"_s, u"warning plovendix.test: two"_s}));
        QCOMPARE(passed, (QStringList{u"one"_s, u"two"_s, u"three"_s, u"four"_s}));
    }

    void onlyTheLastAreKept()
    {
        for (int i = 0; i < 150; ++i)
            qCInfo(ours, "message %d", i);
        QCOMPARE(RecentMessages::lines().size(), RecentMessages::MaxLines);
        QCOMPARE(RecentMessages::lines().constFirst(), u"info plovendix.test: message 50"_s);
        QCOMPARE(RecentMessages::lines().constLast(), u"info plovendix.test: message 149"_s);
    }

    void afterwardsEverythingIsAsBefore()
    {
        qCInfo(ours, "one");
        RecentMessages::uninstall();
        qCInfo(ours, "two");
        QVERIFY(RecentMessages::lines().isEmpty());
        QCOMPARE(passedOn.size(), 2);
    }

    void everyThreadMayWrite()
    {
        // What was there before is not made for several threads.
        RecentMessages::uninstall();
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        RecentMessages::install();
        const auto write = [] {
            for (int i = 0; i < 30; ++i)
                qCInfo(ours, "message");
        };
        std::thread first(write);
        std::thread second(write);
        write();
        first.join();
        second.join();
        QCOMPARE(RecentMessages::lines().size(), 90);
    }

    void nothingPrivateIsKept_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("kept");
        const auto row = [](const QString &message, const QString &kept) {
            QTest::addRow("%s", qPrintable(message.left(40))) << message << kept;
        };
        row(u"the service has forgotten the login"_s, u"the service has forgotten the login"_s);
        row(u"failed: Api-Key: abcdefgh12345678"_s, u"failed: Api-Key: (hidden)"_s);
        row(u"password=hunter2hunter2 refused"_s, u"password=(hidden) refused"_s);
        row(u"with sesame-open in it"_s, u"with (hidden) in it"_s);
        row(u"/home/jo/Secret Film.mkv cannot be read"_s, u"(path)"_s);
        row(u"/home/jo/x.conf: Permission denied"_s, u"(path): Permission denied"_s);
        row(u"~/Films/x.mkv: gone"_s, u"(path): gone"_s);
        row(u"copied to /media/disk/a b.srt"_s, u"copied to (path)"_s);
        row(u"could not open \"Secret Film.mkv\": busy"_s, u"could not open (…): busy"_s);
        row(u"an open \"quotation of Secret Film"_s, u"an open (…)"_s);
        row(u"“Secret Film” and „Geheim“ and «Secreto»"_s, u"(…) and (…) and (…)"_s);
        row(u"asked https://api.example/x?q=Secret+Film now"_s, u"asked (address) now"_s);
        row(u"file:///home/jo/Secret%20Film.mkv"_s, u"(address)"_s);
        row(u"login of jo@home.example"_s, u"login of (mail)"_s);
        row(u"3 of 5 records and/or 1 left"_s, u"3 of 5 records and/or 1 left"_s);
        row(u"two\nlines"_s, u"two lines"_s);
        row(QString(1000, u'x'), QString(RecentMessages::MaxLineLength, u'x'));
    }
    void nothingPrivateIsKept()
    {
        QFETCH(const QString, message);
        QFETCH(const QString, kept);
        hideSecret(u"sesame-open"_s);
        QCOMPARE(RecentMessages::cleaned(message), kept);
    }
};

PLOVENDIX_TEST(RecentMessagesTest)
#include "RecentMessagesTest.moc"
