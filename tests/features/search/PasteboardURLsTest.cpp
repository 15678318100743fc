#include <tests/support/RawPasteboard.h>

#include <features/search/PasteboardURLs.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString ListType = u"text/uri-list"_s;

std::optional<QList<QUrl>> read(const QByteArray &content)
{
    const RawPasteboard pasteboard(ListType, content);
    return readURLs(&pasteboard, ListType);
}
} // namespace

class PasteboardURLsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreURLs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QList<QUrl>>("urls");
        const QUrl film(u"file:///films/a%20film.mkv"_s);
        QTest::newRow("one line") << "file:///films/a%20film.mkv"_ba << QList<QUrl>{film};
        QTest::newRow("several lines")
            << "file:///a.mkv\r\nfile:///b.mkv\r\nfile:///c.mkv\r\n"_ba
            << QList<QUrl>{QUrl(u"file:///a.mkv"_s), QUrl(u"file:///b.mkv"_s), QUrl(u"file:///c.mkv"_s)};
        QTest::newRow("other line ends") << "file:///a.mkv\n\nfile:///b.mkv"_ba
                                         << QList<QUrl>{QUrl(u"file:///a.mkv"_s), QUrl(u"file:///b.mkv"_s)};
        QTest::newRow("comment") << "# a list\r\nfile:///films/a%20film.mkv\r\n"_ba << QList<QUrl>{film};
        QTest::newRow("comments only") << "# a list\r\n#another\r\n"_ba << QList<QUrl>{};
        QTest::newRow("closing zero") << QByteArray("file:///films/a%20film.mkv\0", 27) << QList<QUrl>{film};
        QTest::newRow("unescaped space") << "file:///films/a film.mkv"_ba << QList<QUrl>{film};
        QTest::newRow("localhost") << "file://localhost/films/a%20film.mkv"_ba
                                   << QList<QUrl>{QUrl(u"file://localhost/films/a%20film.mkv"_s)};
        QTest::newRow("another machine")
            << "file://elsewhere/a.mkv"_ba << QList<QUrl>{QUrl(u"file://elsewhere/a.mkv"_s)};
        QTest::newRow("web page") << "https://plovendix.example/film"_ba
                                  << QList<QUrl>{QUrl(u"https://plovendix.example/film"_s)};
    }

    void linesAreURLs()
    {
        QFETCH(QByteArray, content);
        QFETCH(QList<QUrl>, urls);
        const auto found = read(content);
        QVERIFY(found);
        QCOMPARE(*found, urls);
    }

    void malformedListsGiveNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("a path") << "/films/a.mkv"_ba;
        QTest::newRow("a word") << "film"_ba;
        QTest::newRow("one line that is none") << "file:///a.mkv\r\nno URL\r\n"_ba;
        QTest::newRow("a broken one") << "file:///a.mkv\r\nhttp://host:port/\r\n"_ba;
    }

    void malformedListsGiveNothing()
    {
        QFETCH(QByteArray, content);
        QVERIFY(!read(content));
    }

    void oneFileURLMakesAFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isFile");
        QTest::newRow("file") << "file:///films/a%20film.mkv\r\n"_ba << true;
        QTest::newRow("upper case") << "FILE:///films/a.mkv"_ba << true;
        QTest::newRow("file after a link") << "https://plovendix.example/film\r\nfile:///a.mkv"_ba << true;
        QTest::newRow("file beside what is no URL") << "no URL\r\nfile:///a.mkv"_ba << true;
        QTest::newRow("link") << "https://plovendix.example/film.mkv"_ba << false;
        QTest::newRow("share") << "smb://server/film.mkv"_ba << false;
        QTest::newRow("file in a comment") << "# file:///a.mkv\r\nhttps://plovendix.example/"_ba << false;
        QTest::newRow("path") << "/films/a.mkv"_ba << false;
        QTest::newRow("nothing") << QByteArray() << false;
    }

    void oneFileURLMakesAFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, isFile);
        const RawPasteboard pasteboard(ListType, content);
        QCOMPARE(offersFile(&pasteboard, ListType), isFile);
    }

    void noPasteboardGivesNothing()
    {
        QVERIFY(!offersFile(nullptr, ListType));
        QVERIFY(!readURLs(nullptr, ListType));
        QMimeData text;
        text.setText(u"file:///a.mkv"_s);
        QVERIFY(!readURLs(&text, ListType));
    }

    void listSetAsURLsIsReadBack()
    {
        QMimeData pasteboard;
        const QList<QUrl> urls{QUrl::fromLocalFile(u"/films/100% \u00e9t\u00e9 #1.mkv"_s),
                               QUrl(u"file:///b.mkv"_s)};
        pasteboard.setUrls(urls);
        const auto found = readURLs(&pasteboard, ListType);
        QVERIFY(found);
        QCOMPARE(found->first().toLocalFile(), u"/films/100% \u00e9t\u00e9 #1.mkv"_s);
        QCOMPARE(found->size(), 2);
    }
};

PLOVENDIX_TEST(PasteboardURLsTest)
#include "PasteboardURLsTest.moc"
