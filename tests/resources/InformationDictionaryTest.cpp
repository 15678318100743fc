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
    void everyValueTheProgramShowsIsThere()
    {
        for (const char *key : {"CFBundleIdentifier", "CFBundleName", "CFBundleShortVersionString",
                                "CFBundleVersion", "NSHumanReadableCopyright"}) {
            const QVariant value = Bundle::main().objectForInfoDictionaryKey(QString::fromLatin1(key));
            QVERIFY2(!value.toString().isEmpty(), key);
        }
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
