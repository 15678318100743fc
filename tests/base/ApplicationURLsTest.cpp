#include <base/Workspace.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Takes everything and keeps what it was asked, in place of the desktop.
struct AskedWorkspace final : Workspace
{
    bool openURL(const QUrl &url) override
    {
        asked += url;
        return true;
    }
    bool showInFileBrowser(const QUrl &file) override
    {
        asked += file;
        return true;
    }
    std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString &identifier) override
    {
        asked += QUrl(identifier);
        return identifier;
    }

    QList<QUrl> asked;
};
} // namespace

class ApplicationURLsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noURLCanBeOpened_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("web page") << QUrl(u"https://plovendix.example/donate"_s);
        QTest::newRow("file") << QUrl(u"file:///"_s);
        QTest::newRow("mail") << QUrl(u"mailto:someone@plovendix.example"_s);
        QTest::newRow("unknown scheme") << QUrl(u"tessaly://x"_s);
        QTest::newRow("empty") << QUrl();
    }

    void noURLCanBeOpened()
    {
        QFETCH(QUrl, url);
        const auto workspace = std::make_shared<AskedWorkspace>();
        Workspace::setSharedWorkspace(workspace);
        const bool can = ApplicationURLs::canOpenURL(url);
        const bool opened = ApplicationURLs::openURL(url);
        Workspace::setSharedWorkspace({});
        QCOMPARE(can, false);
        QCOMPARE(opened, false);
        QCOMPARE(workspace->asked, QList<QUrl>()); // the program has no other way to the desktop
    }
};

PLOVENDIX_TEST(ApplicationURLsTest)
#include "ApplicationURLsTest.moc"
