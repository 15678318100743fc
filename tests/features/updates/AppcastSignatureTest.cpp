#include <features/updates/AppcastSignature.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString Program = u"com.quorvane.Plovendix"_s;
}

class AppcastSignatureTest final : public QObject
{
    Q_OBJECT

private:
    AppcastSignature::KeyPair m_pair = AppcastSignature::makeKeyPair();

    AppcastItem signedItem() const
    {
        AppcastItem item{u"1.1"_s, u"https://get.example/1.1"_s, u"New: é"_s, {}};
        item.signature = AppcastSignature::sign(Program, item, m_pair.secretKey);
        return item;
    }

private Q_SLOTS:
    void signedBytesAreAsDocumented()
    {
        QCOMPARE(AppcastSignature::signedBytes(Program, signedItem()),
                 "plovendix-update-1\n22:com.quorvane.Plovendix,3:1.1,23:https://get.example/1.1,7:New: "
                 "\xc3\xa9,");
        QCOMPARE(AppcastSignature::signedBytes({}, AppcastItem()), "plovendix-update-1\n0:,0:,0:,0:,");
        AppcastFeed feed{{signedItem()}, u"2030-03-01T12:00:00Z"_s, {}};
        feed.items[0].signature = "\1\2\3";
        QCOMPARE(AppcastSignature::signedBytes(Program, feed),
                 "plovendix-feed-1\n22:com.quorvane.Plovendix,20:2030-03-01T12:00:00Z,4:AQID,");
    }

    void dateAndItemsOfAFeedBelongTogether()
    {
        AppcastFeed feed{{signedItem()}, u"2030-03-01T12:00:00Z"_s, {}};
        feed.signature = AppcastSignature::sign(Program, feed, m_pair.secretKey);
        QVERIFY(AppcastSignature::isValid(Program, feed, m_pair.publicKey));
        AppcastFeed redated = feed;
        redated.date = u"2030-03-02T12:00:00Z"_s;
        QVERIFY(!AppcastSignature::isValid(Program, redated, m_pair.publicKey));
        AppcastFeed shortened = feed;
        shortened.items.clear();
        QVERIFY(!AppcastSignature::isValid(Program, shortened, m_pair.publicKey));
        QVERIFY(!AppcastSignature::isValid(u"com.quorvane.Tessaly"_s, feed, m_pair.publicKey));
    }

    void nothingCanBeExchanged_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<AppcastItem>("item");
        QVERIFY(AppcastSignature::isValid(Program, signedItem(), m_pair.publicKey));
        const auto row = [this](const char *name, auto change) {
            AppcastItem item = signedItem();
            QString program = Program;
            change(item, program);
            QTest::newRow(name) << program << item;
        };
        row("version", [](AppcastItem &item, QString &) { item.version = u"1.2"_s; });
        row("link", [](AppcastItem &item, QString &) { item.link = u"https://get.example/1.2"_s; });
        row("notes", [](AppcastItem &item, QString &) { item.notes += u' '; });
        row("program", [](AppcastItem &, QString &program) { program = u"com.quorvane.Tessaly"_s; });
        row("signature",
            [](AppcastItem &item, QString &) { item.signature[5] = char(item.signature[5] ^ 1); });
        row("no signature", [](AppcastItem &item, QString &) { item.signature.clear(); });
        row("short signature", [](AppcastItem &item, QString &) { item.signature.chop(1); });
        row("long signature", [](AppcastItem &item, QString &) { item.signature += '\0'; });
        row("zeros", [](AppcastItem &item, QString &) { item.signature.fill('\0'); });
    }
    void nothingCanBeExchanged()
    {
        QFETCH(const QString, program);
        QFETCH(const AppcastItem, item);
        QVERIFY(!AppcastSignature::isValid(program, item, m_pair.publicKey));
    }

    void otherKeysNeverFit_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::newRow("another's") << AppcastSignature::makeKeyPair().publicKey;
        QTest::newRow("none") << QByteArray();
        QTest::newRow("short") << m_pair.publicKey.left(31);
        QTest::newRow("long") << m_pair.publicKey + '\0';
        QTest::newRow("zeros") << QByteArray(32, '\0');
    }
    void otherKeysNeverFit()
    {
        QFETCH(const QByteArray, key);
        QVERIFY(!AppcastSignature::isValid(Program, signedItem(), key));
    }

    void nothingIsSignedWithoutASecretKey()
    {
        QVERIFY(AppcastSignature::sign(Program, signedItem(), m_pair.publicKey).isEmpty());
    }
};

PLOVENDIX_TEST(AppcastSignatureTest)
#include "AppcastSignatureTest.moc"
