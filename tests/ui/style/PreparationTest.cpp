#include <base/Locale.h>
#include <tests/support/Sandbox.h>
#include <ui/style/Preparation.h>

#include <fontconfig/fontconfig.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// How many of fontconfig's caches the process has read.
qsizetype fontCachesInMemory()
{
    QFile maps(u"/proc/self/maps"_s);
    if (!maps.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression cache(u"\\.cache-\\d+$"_s);
    return QString::fromLocal8Bit(maps.readAll()).split(u'\n').filter(cache).size();
}
} // namespace

class PreparationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// As the toolkit does at its end. What it keeps it finds by offsets, which would look like leaks.
    void cleanupTestCase() { FcFini(); }

    void fontsAreReadBeforeAnybodyAsks()
    {
        QCOMPARE(fontCachesInMemory(), 0);
        Preparation preparation;
        preparation.finish();
        QVERIFY(fontCachesInMemory() > 0);
    }

    void mayBeFinishedTwiceOrNever()
    {
        {
            const Preparation unfinished;
        }
        Preparation preparation;
        preparation.finish();
        preparation.finish();
        QCOMPARE(Locale(u"de_DE"_s).localizedStringForLanguageCode(u"en"_s), u"Englisch"_s);
    }

    void namesDoNotDependOnWhoAsksFirst()
    {
        Preparation preparation;
        const Locale locale = Locale::current();
        QStringList during;
        for (const QString &code : Locale::isoLanguageCodes())
            during += locale.localizedStringForLanguageCode(code).value_or(QString());
        preparation.finish();
        QStringList afterwards;
        for (const QString &code : Locale::isoLanguageCodes())
            afterwards += locale.localizedStringForLanguageCode(code).value_or(QString());
        QCOMPARE(during, afterwards);
        QVERIFY(during.contains(u"German"_s));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(PreparationTest)
#include "PreparationTest.moc"
