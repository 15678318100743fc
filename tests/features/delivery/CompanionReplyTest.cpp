#include "DeliveryFixture.h"

#include <base/URLComponents.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

/// The URL by which a companion application learns where its subtitle lies.
class CompanionReplyTest final : public QObject
{
    Q_OBJECT

private:
    /// Sends "A.srt" and gives the URL that was opened.
    static QUrl replyTo(DeliveryFixture &fixture, const QByteArray &name = "A.srt")
    {
        const auto sent = fixture.send(fixture.writeFile("downloads/" + name, "1\n"), u"en"_s, u"srt"_s);
        return sent && *sent && fixture.workspace.opened.size() == 1 ? fixture.workspace.opened.first()
                                                                     : QUrl();
    }

private Q_SLOTS:
    void valuesSurviveTheURL_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("docID");
        QTest::newRow("plain") << QByteArray("A.srt") << u"42"_s;
        QTest::newRow("ampersand and equals") << QByteArray("a&docid=1.srt") << u"7&filepath=/etc/passwd"_s;
        QTest::newRow("plus") << QByteArray("a+b.srt") << u"1+1"_s;
        QTest::newRow("percent") << QByteArray("100%41.srt") << u"%41%"_s;
        QTest::newRow("number sign") << QByteArray("#1.srt") << u"#frag"_s;
        QTest::newRow("space and question mark") << QByteArray("who is it?.srt") << u"a b?"_s;
        QTest::newRow("quotes") << QByteArray("\"a' <b>.srt") << u"\"'<>"_s;
        QTest::newRow("beyond ASCII") << QByteArray("\xc3\xbc\xe6\x97\xa5.srt") << u"ü日𝄞"_s;
        QTest::newRow("line break") << QByteArray("a\nb.srt") << u"1\n2"_s;
        QTest::newRow("semicolon and slash") << QByteArray("a;b.srt") << u"a;b/c"_s;
        QTest::newRow("empty document") << QByteArray("A.srt") << u""_s;
    }
    void valuesSurviveTheURL()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, docID);
        DeliveryFixture fixture;
        fixture.request->docID = docID;
        const QUrl reply = replyTo(fixture, name);
        QVERIFY(reply.isValid());
        const auto parts = URLComponents::fromURL(reply);
        QVERIFY(parts);
        QCOMPARE(parts->scheme, u"tessaly3"_s);
        QCOMPARE(parts->host, u"plovendix-file"_s);
        const QByteArray file =
            fixture.path("Movies/Plovendix/" + fixture.namesIn("Movies/Plovendix").value(0));
        const QList<URLQueryItem> items = {{u"filepath"_s, QString::fromUtf8(file)}, {u"docid"_s, docID}};
        QCOMPARE(parts->queryItems, items);
    }

    void emptyDocumentIsAnEmptyValue()
    {
        DeliveryFixture fixture;
        fixture.request->docID = QString();
        QVERIFY(replyTo(fixture).toEncoded().endsWith(".srt&docid="));
    }

    void nameThatIsNotUTF8IsSpelledByteByByte()
    {
        DeliveryFixture fixture;
        const QUrl reply = replyTo(fixture, "caf\xe9.srt");
        QVERIFY2(reply.toEncoded().endsWith("/Plovendix/caf%E9.en.srt&docid=42"),
                 reply.toEncoded().constData());
    }

    void withoutRequestThereIsNeitherSchemeNorDocument()
    {
        DeliveryFixture fixture;
        fixture.request = std::nullopt;
        const QUrl reply = replyTo(fixture);
        QCOMPARE(reply.toEncoded(), "//plovendix-file?filepath=" + fixture.path("Movies/Plovendix/A.en.srt"));
    }

    void strangersSchemeIsUsedAsItIs_data()
    {
        QTest::addColumn<QString>("scheme");
        for (const QString &scheme :
             {u"tessaly"_s, u"verbrook3"_s, u"glimmet"_s, u"x-player+1.0"_s, u"httpsplayer"_s})
            QTest::newRow(qPrintable(scheme)) << scheme;
    }
    void strangersSchemeIsUsedAsItIs()
    {
        QFETCH(QString, scheme);
        DeliveryFixture fixture;
        fixture.request->urlScheme = scheme;
        QVERIFY(replyTo(fixture).toEncoded().startsWith(scheme.toLatin1() + "://plovendix-file?filepath="));
    }

    void senderThatIsNoSchemeGetsNoReply_data()
    {
        QTest::addColumn<QString>("scheme");
        QTest::newRow("space") << u"tessaly 3"_s;
        QTest::newRow("digit first") << u"3tessaly"_s;
        QTest::newRow("colon") << u"https:"_s;
        QTest::newRow("a whole URL") << u"https://example.org/?"_s;
        QTest::newRow("slash") << u"a/b"_s;
        QTest::newRow("beyond ASCII") << u"tessalü"_s;
        QTest::newRow("line break") << u"a\nb"_s;
        QTest::newRow("NUL") << u"a\0b"_s;
    }
    void senderThatIsNoSchemeGetsNoReply()
    {
        QFETCH(QString, scheme);
        DeliveryFixture fixture;
        fixture.request->urlScheme = scheme;
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(sent);
        QVERIFY(!*sent);
        QVERIFY(fixture.workspace.opened.isEmpty());
        // The file has moved all the same.
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
        QCOMPARE(fixture.contentOf("downloads/A.srt"), std::nullopt);
    }

    void schemesThatAreNoCompanionsAreRefusedUntouched_data()
    {
        QTest::addColumn<QString>("scheme");
        for (const char *scheme : {"http", "https", "HTTPS", "ftp", "file", "smb", "sftp", "javascript",
                                   "data", "mailto", "plovendix", "Plovendix", "recent"})
            QTest::newRow(scheme) << QString::fromLatin1(scheme);
    }
    void schemesThatAreNoCompanionsAreRefusedUntouched()
    {
        QFETCH(QString, scheme);
        DeliveryFixture fixture;
        fixture.workspace.ownSchemes = QStringList{u"recent"_s};
        fixture.request->urlScheme = scheme;
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QCOMPARE(fixture.workspace.opened, QList<QUrl>());
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"CompanionDelivery"_s);
        QCOMPARE(fixture.files.calls, QStringList());
        QCOMPARE(fixture.contentOf("downloads/A.srt"), QByteArray("1\n"));
    }

    void unhandledReplyIsFalse()
    {
        DeliveryFixture fixture;
        fixture.workspace.takesURLs = false;
        const auto sent = fixture.send(fixture.writeFile("downloads/A.srt", "1\n"), u"en"_s, u"srt"_s);
        QVERIFY(sent);
        QVERIFY(!*sent);
        QCOMPARE(fixture.workspace.opened.size(), 1);
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
    }
};

PLOVENDIX_TEST(CompanionReplyTest)
#include "CompanionReplyTest.moc"
