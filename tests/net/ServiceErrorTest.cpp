#include <net/ServiceError.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QLocale>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class ServiceErrorTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void everyKindHasASentence_data()
    {
        QTest::addColumn<ServiceName>("service");
        QTest::newRow("subtitles") << ServiceName::Subtitles;
        QTest::newRow("films") << ServiceName::Films;
    }
    void everyKindHasASentence()
    {
        QFETCH(const ServiceName, service);
        for (int code = static_cast<int>(ServiceFailure::Offline);
             code <= static_cast<int>(ServiceFailure::ForbiddenAddress); ++code) {
            const auto kind = static_cast<ServiceFailure>(code);
            const base::Error error = serviceError(kind, service, u"why"_s);
            QVERIFY2(error.localizedDescription.size() > 20, qPrintable(QString::number(code)));
            QCOMPARE(kindOf(error), kind);
            QCOMPARE(serviceError(TransportFault{kind, u"why"_s}, service).localizedDescription,
                     error.localizedDescription);
        }
        QCOMPARE(kindOf(base::Error{u"Other"_s, 1, {}}), std::nullopt);
    }

    void commonSentencesNameNoService_data()
    {
        QTest::addColumn<ServiceFailure>("kind");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("address") << ServiceFailure::ForbiddenAddress
                                 << u"The service cannot be asked at the address in the settings: it must "
                                    "begin with https."_s;
        QTest::newRow("proxy") << ServiceFailure::Proxy
                               << u"The proxy of this network refused the connection. Check the proxy "
                                  "settings of this computer."_s;
    }
    void commonSentencesNameNoService()
    {
        QFETCH(const ServiceFailure, kind);
        QFETCH(const QString, sentence);
        QCOMPARE(commonSentence(kind), sentence);
        for (const ServiceName service : {ServiceName::Subtitles, ServiceName::Films})
            QCOMPARE(serviceError(kind, service, {}).localizedDescription, sentence);
    }

    void eachStateHasAnotherSentence()
    {
        QSet<QString> sentences;
        const QList<ServiceFailure> kinds{
            ServiceFailure::Offline,      ServiceFailure::Timeout,      ServiceFailure::Unavailable,
            ServiceFailure::BadAnswer,    ServiceFailure::Insecure,     ServiceFailure::KeyRefused,
            ServiceFailure::LoginRefused, ServiceFailure::LimitReached, ServiceFailure::TooManyRequests};
        for (const ServiceFailure kind : kinds)
            sentences += serviceError(kind, ServiceName::Subtitles, {}).localizedDescription;
        QCOMPARE(sentences.size(), kinds.size());
    }

    void limitSaysWhenItEnds_data()
    {
        QTest::addColumn<int>("allowed");
        QTest::addColumn<int>("secondsToReset");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("in hours")
            << 20 << 3 * 3600 + 12 * 60
            << u"Daily limit reached: all 20 downloads used. New downloads from %1 (in 3 h 12 min)."_s;
        QTest::newRow("in minutes")
            << 5 << 119 << u"Daily limit reached: all 5 downloads used. New downloads from %1 (in 2 min)."_s;
        QTest::newRow("in the past") << 20 << -60
                                     << u"Daily limit reached: all 20 downloads used. Try again tomorrow."_s;
        QTest::newRow("no count") << 0 << 60
                                  << u"Daily download limit reached. New downloads from %1 (in 1 min)."_s;
        QTest::newRow("nothing known") << 0 << 0 << u"The download limit is reached. Try again tomorrow."_s;
    }
    void limitSaysWhenItEnds()
    {
        QFETCH(const int, allowed);
        QFETCH(const int, secondsToReset);
        QFETCH(QString, sentence);
        const QDateTime reset = secondsToReset == 0 ? QDateTime() : m_now.addSecs(secondsToReset);
        const base::Error error =
            limitError(allowed > 0 ? std::optional(allowed) : std::nullopt, reset, m_now, {});
        QCOMPARE(error.localizedDescription, sentence.replace(u"%1"_s, localTime(reset)));
        QCOMPARE(kindOf(error), ServiceFailure::LimitReached);
    }

    void pauseSaysWhenItEnds_data()
    {
        QTest::addColumn<ServiceFailure>("kind");
        QTest::addColumn<ServiceName>("service");
        QTest::addColumn<QString>("sentence");
        const auto row = [](ServiceFailure kind, ServiceName service, const QString &sentence) {
            QTest::newRow(qPrintable(sentence)) << kind << service << sentence;
        };
        row(ServiceFailure::TooManyRequests, ServiceName::Subtitles,
            u"The subtitle service gets too many requests from here. Try again from %1 (in 1 h 0 min)."_s);
        row(ServiceFailure::Unavailable, ServiceName::Subtitles,
            u"The subtitle service is not available right now. Try again from %1 (in 1 h 0 min)."_s);
        row(ServiceFailure::TooManyRequests, ServiceName::Films,
            u"The film database gets too many requests from here. Try again from %1 (in 1 h 0 min)."_s);
        row(ServiceFailure::Unavailable, ServiceName::Films,
            u"The film database is not available right now. Try again from %1 (in 1 h 0 min)."_s);
    }
    void pauseSaysWhenItEnds()
    {
        QFETCH(const ServiceFailure, kind);
        QFETCH(const ServiceName, service);
        QFETCH(QString, sentence);
        const QDateTime end = m_now.addSecs(3600);
        const base::Error error =
            serviceError(TransportFault{kind, {}, TransportFault::Pause{m_now, end}}, service);
        QCOMPARE(error.localizedDescription, sentence.replace(u"%1"_s, localTime(end)));
        QCOMPARE(kindOf(error), kind);
    }

private:
    static QString localTime(const QDateTime &time)
    {
        return time.toLocalTime().time().toString(u"HH:mm"_s); // this locale would count seconds
    }

    Sandbox m_sandbox;
    const QDateTime m_now{QDate(2030, 3, 4), QTime(20, 48), Qt::UTC};
};

PLOVENDIX_TEST(ServiceErrorTest)
#include "ServiceErrorTest.moc"
