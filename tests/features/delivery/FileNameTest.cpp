#include <features/delivery/FileName.h>
#include <tests/support/TestMain.h>

#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class FileNameTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastComponentOfAPath_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("name");
        const auto row = [](const QByteArray &path, const QByteArray &name) {
            QTest::newRow(path.isEmpty() ? "empty" : path.constData()) << path << name;
        };
        row("/a/b.srt", "b.srt");
        row("b.srt", "b.srt");
        row("/a/b.srt/", "b.srt");
        row("/a/b.srt///", "b.srt");
        row("/b", "b");
        row("/a/..", "..");
        row("/", "");
        row("///", "");
        row("", "");
        row("/a/\xff\xfe.srt", "\xff\xfe.srt");
    }
    void lastComponentOfAPath()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, name);
        QCOMPARE(FileName::lastPathComponent(path), name);
    }

    void lastComponentOfAURL_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("file") << "file:///v/My%20film.mkv"_ba
                              << "My film.mkv"_ba;
        QTest::newRow("folder") << "file:///v/Disc/"_ba
                                << "Disc"_ba;
        QTest::newRow("not UTF-8") << "file:///v/caf%E9.mkv"_ba
                                   << "caf\xe9.mkv"_ba;
        QTest::newRow("escaped signs") << "file:///v/50%25%20%231%3F.mkv"_ba
                                       << "50% #1?.mkv"_ba;
        QTest::newRow("another machine") << "file://there/v/a.mkv"_ba
                                         << "a.mkv"_ba;
        QTest::newRow("web page") << "https://there.example/v/a.mkv?b=c/d.mkv#e/f.mkv"_ba
                                  << "a.mkv"_ba;
        QTest::newRow("without a path") << "https://there.example"_ba << QByteArray();
        QTest::newRow("only a slash") << "file:///"_ba << QByteArray();
    }
    void lastComponentOfAURL()
    {
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, name);
        QCOMPARE(FileName::lastPathComponent(QUrl::fromEncoded(url)), name);
    }

    void onlyTheLastExtensionGoes_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const QByteArray &name, const QByteArray &expected) {
            QTest::newRow(name.isEmpty() ? "empty" : name.constData()) << name << expected;
        };
        row("a.srt", "a");
        row("a.b.srt", "a.b");
        row("a", "a");
        row(".profile", ".profile");
        row(".profile.srt", ".profile");
        row("a.", "a.");
        row("a..", "a..");
        row("a..srt", "a.");
        row("..", "..");
        row("...", "...");
        row("", "");
        row("\xff.\xfe", "\xff");
    }
    void onlyTheLastExtensionGoes()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, expected);
        QCOMPARE(FileName::deletingPathExtension(name), expected);
    }

    void extensionIsAppendedWhenItCanBeOne_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("plain") << QByteArray("a") << u"srt"_s << QByteArray("a.srt");
        QTest::newRow("second") << QByteArray("a.b") << u"srt"_s << QByteArray("a.b.srt");
        QTest::newRow("dot at the end") << QByteArray("a.") << u"srt"_s << QByteArray("a..srt");
        QTest::newRow("beyond ASCII") << QByteArray("\xff") << u"ü"_s << QByteArray("\xff.\xc3\xbc");
        QTest::newRow("empty") << QByteArray("a") << u""_s << QByteArray("a");
        QTest::newRow("with a slash") << QByteArray("a") << u"x/y"_s << QByteArray("a");
        QTest::newRow("upwards") << QByteArray("a") << u"/../../x"_s << QByteArray("a");
        QTest::newRow("with NUL") << QByteArray("a") << u"x\0y"_s << QByteArray("a");
    }
    void extensionIsAppendedWhenItCanBeOne()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, extension);
        QFETCH(QByteArray, expected);
        QCOMPARE(FileName::appendingPathExtension(name, extension), expected);
    }

    void plainNamesNameAFileInsideAFolder_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("plain");
        QTest::newRow("plain") << QByteArray("a.srt") << true;
        QTest::newRow("three dots") << QByteArray("...") << true;
        QTest::newRow("not UTF-8") << QByteArray("\xff") << true;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("the folder") << QByteArray(".") << false;
        QTest::newRow("its parent") << QByteArray("..") << false;
        QTest::newRow("with a slash") << QByteArray("a/b") << false;
        QTest::newRow("with NUL") << QByteArray("a\0b", 3) << false;
    }
    void plainNamesNameAFileInsideAFolder()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, plain);
        QCOMPARE(FileName::isPlain(name), plain);
    }
};

PLOVENDIX_TEST(FileNameTest)
#include "FileNameTest.moc"
