#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class InformationDictionaryTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void everyValueTheProgramShowsIsThere_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::newRow("identifier") << u"CFBundleIdentifier"_s << u"com.quorvane.Plovendix"_s;
        QTest::newRow("name") << u"CFBundleName"_s << u"Plovendix"_s;
        QTest::newRow("version") << u"CFBundleShortVersionString"_s << u"1.0"_s;
        QTest::newRow("build") << u"CFBundleVersion"_s << u"100"_s;
        QTest::newRow("copyright") << u"NSHumanReadableCopyright"_s << u"Copyright © 2026 Quorvane"_s;
    }
    void everyValueTheProgramShowsIsThere()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QCOMPARE(Bundle::main().objectForInfoDictionaryKey(key), QVariant(value));
    }

    void updatesAreTakenFromOneKey()
    {
        constexpr qsizetype KeyBytes = 32; // of Ed25519
        const QString key = Bundle::main().objectForInfoDictionaryKey(u"SUPublicEDKey"_s).toString();
        QCOMPARE(QByteArray::fromBase64(key.toLatin1(), QByteArray::AbortOnBase64DecodingErrors).size(),
                 KeyBytes);
    }
};

PLOVENDIX_TEST(InformationDictionaryTest)
#include "InformationDictionaryTest.moc"
