#include <support/TestMain.h>
#include <views/ApplicationURLs.h>

#include <QDesktopServices>
#include <QTest>

using namespace Qt::StringLiterals;

/// Hears of every URL that the program opens through Qt.
class OpenedURLs final : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl &url) { opened += url; }

public:
    QList<QUrl> opened;
};

class ApplicationURLsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noURLCanBeOpened_data();
    void noURLCanBeOpened();
};

void ApplicationURLsTest::noURLCanBeOpened_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::newRow("web page") << QUrl(u"https://plovendix.example/donate"_s);
    QTest::newRow("file") << QUrl(u"file:///"_s);
    QTest::newRow("mail") << QUrl(u"mailto:someone@plovendix.example"_s);
    QTest::newRow("unknown scheme") << QUrl(u"tessaly://x"_s);
    QTest::newRow("empty") << QUrl();
}

void ApplicationURLsTest::noURLCanBeOpened()
{
    QFETCH(QUrl, url);
    OpenedURLs seen;
    if (!url.isEmpty())
        QDesktopServices::setUrlHandler(url.scheme(), &seen, "open");
    QCOMPARE(ApplicationURLs::canOpenURL(url), false);
    QCOMPARE(ApplicationURLs::openURL(url), false);
    QCOMPARE(seen.opened, QList<QUrl>());
    QDesktopServices::unsetUrlHandler(url.scheme());
}

PLOVENDIX_GUI_TEST(ApplicationURLsTest)
#include "ApplicationURLsTest.moc"
