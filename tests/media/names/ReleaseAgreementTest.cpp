#include <media/names/ReleaseAgreement.h>
#include <tests/support/TestMain.h>

#include <QTest>

class ReleaseAgreementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void betterReleaseAgreesMore_data()
    {
        QTest::addColumn<QString>("better");
        QTest::addColumn<QString>("worse");
        QTest::newRow("same release") << "Harbour.Lights.2019.1080p.BluRay.x264-GRP"
                                      << "Harbour.Lights.2019.1080p.BluRay.x264-OTHER";
        QTest::newRow("group before source") << "Harbour.Lights.2019.720p.WEB-GRP"
                                             << "Harbour.Lights.2019.BluRay-OTHER";
        QTest::newRow("source before resolution") << "Harbour.Lights.BluRay"
                                                  << "Harbour.Lights.1080p.WEB";
        QTest::newRow("resolution before codec") << "Harbour.Lights.1080p"
                                                 << "Harbour.Lights.x264";
        QTest::newRow("spelled otherwise") << "harbour lights blu-ray"
                                           << "harbour lights dvdrip";
        QTest::newRow("edition") << "Harbour.Lights.Extended"
                                 << "Harbour.Lights.Unrated";
    }

    void betterReleaseAgreesMore()
    {
        QFETCH(QString, better);
        QFETCH(QString, worse);
        const QString video = QStringLiteral("Harbour.Lights.2019.Extended.1080p.BluRay.x264-GRP.mkv");
        QVERIFY(releaseAgreement(better, video) > releaseAgreement(worse, video));
    }

    void titleAloneSaysNothing()
    {
        QCOMPARE(releaseAgreement(QStringLiteral("Harbour.Lights.2019"),
                                  QStringLiteral("Harbour.Lights.2019.mkv")),
                 0);
        QCOMPARE(releaseAgreement(QStringLiteral("Harbour.Lights.1080p"), QString()), 0);
    }

    void languageOfTheSoundSaysNothing()
    {
        QCOMPARE(releaseAgreement(QStringLiteral("Lights.German"), QStringLiteral("Lights.German.mkv")), 0);
    }
};

PLOVENDIX_TEST(ReleaseAgreementTest)
#include "ReleaseAgreementTest.moc"
