#include <base/SafeFileName.h>
#include <tests/support/TestMain.h>

#include <QTest>

class SafeFileNameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("name");
        const auto row = [](const char *label, const QString &text, const char *extension, const char *name) {
            QTest::newRow(label) << text << QString::fromUtf8(extension) << QString::fromUtf8(name);
        };
        row("plain", QStringLiteral("Harbour.Lights.2019"), "srt", "Harbour.Lights.2019.srt");
        row("extension there already", QStringLiteral("Lights.SRT"), "srt", "Lights.srt");
        row("folders", QStringLiteral("../../etc/Lights"), "srt", "Lights.srt");
        row("folders of another system", QStringLiteral("C:\\films\\Lights"), "srt", "Lights.srt");
        row("only folders", QStringLiteral("../.."), "srt", "subtitle.srt");
        row("hidden", QStringLiteral("..bashrc"), "srt", "bashrc.srt");
        row("spaces and dots around", QStringLiteral("  Lights . "), "srt", "Lights.srt");
        row("line break", QStringLiteral("Har\nbour"), "srt", "Harbour.srt");
        row("text direction", QStringLiteral("Lights\u202etrs.exe"), "srt", "Lightstrs.exe.srt");
        row("NUL", QStringLiteral("Lights\0x"), "srt", "Lightsx.srt");
        row("half a surrogate pair", QString(QChar(0xd83d)) + QStringLiteral("x"), "srt", "x.srt");
        row("empty", QString(), "srt", "subtitle.srt");
        row("other scripts", QStringLiteral("港の灯"), "ass", "港の灯.ass");
        row("extension in capitals", QStringLiteral("Lights"), "ASS", "Lights.ass");
        row("extension with a path", QStringLiteral("Lights"), "/../x", "Lights.x");
        row("no extension", QStringLiteral("Lights"), "", "Lights.txt");
        row("long extension", QStringLiteral("Lights"), "abcdefghijkl", "Lights.abcdefgh");
    }

    void names()
    {
        QFETCH(QString, text);
        QFETCH(QString, extension);
        QFETCH(QString, name);
        QCOMPARE(safeFileName(text, extension), name);
    }

    void longNamesFitAndStayWhole_data()
    {
        QTest::addColumn<QString>("part");
        QTest::newRow("Latin") << QStringLiteral("a");
        QTest::newRow("three bytes") << QStringLiteral("灯");
        QTest::newRow("four bytes") << QStringLiteral("\U0001F3EE");
    }

    void longNamesFitAndStayWhole()
    {
        QFETCH(QString, part);
        const QString name = safeFileName(part.repeated(5000), QStringLiteral("srt"));
        QVERIFY(name.toUtf8().size() <= 200);
        QVERIFY(name.toUtf8().size() > 190);
        QVERIFY(name.endsWith(QStringLiteral(".srt")));
        QCOMPARE(QString::fromUtf8(name.toUtf8()), name);
    }
};

PLOVENDIX_TEST(SafeFileNameTest)
#include "SafeFileNameTest.moc"
