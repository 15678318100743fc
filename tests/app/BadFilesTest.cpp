#include <tests/features/search/MainViewFixture.h>
#include <base/Bundle.h>
#include <base/FileManager.h>
#include <features/search/DragFilesHereView.h>
#include <sources/catalogue/CatalogueService.h>
#include <sources/combined/CombinedSubtitleService.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace
{
const QString NoHash = u"Failed to create a file hash for the url"_s;

QUrl urlOf(const QByteArray &path)
{
    return FileManager::urlFromFileSystemPath(path);
}
} // namespace

/// The main window with the catalogue behind it meets what a person may drop that is no video, and catalogues
/// that are no catalogues.
class BadFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        const auto starter = Bundle::main().pathForResource(u"starter"_s, u"sqlite"_s);
        QVERIFY(starter);
        useCatalogue(*starter);
        m_sandbox.clearPrintedLines();
    }

    void cleanup() { m_view.reset(); }

    void whatHasNoHashIsSearchedByItsName_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QString>("name");
        const auto row = [this](const char *description, const QByteArray &file, const QString &name) {
            QTest::newRow(description) << urlOf("/videos/" + file) << name;
        };
        row("folder with a slash", "A Folder.mkv/", u"A Folder.mkv"_s);
        row("no such file", "nothing there.mkv", u"nothing there.mkv"_s);
        row("newline", "two\nlines.mkv", u"two\nlines.mkv"_s);
        row("not UTF-8", "caf\xe9.mkv", u"caf\uFFFD.mkv"_s);
        row("written from right to left", "\xe2\x80\xaevkm.txt", u"\u202Evkm.txt"_s);
        row("signs that URLs escape", "50% #1?&x=y.mkv", u"50% #1?&x=y.mkv"_s);
        QTest::newRow("NUL") << QUrl(u"file:///videos/a%00b.mkv"_s) << u"ab.mkv"_s;
        QTest::newRow("another machine") << QUrl(u"file://elsewhere/videos/Film.mkv"_s) << u"Film.mkv"_s;
    }

    void whatHasNoHashIsSearchedByItsName()
    {
        QFETCH(QUrl, url);
        QFETCH(QString, name);
        drop(url);
        QCOMPARE(m_view->field()->text(), name);
        QCOMPARE(m_sandbox.printedLines(), QStringList({url.toString(QUrl::FullyEncoded), NoHash}));
        waitForTitle();
        QCOMPARE(m_view->field()->text(), name);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void nonFilesAreSearchedByName_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QString>("name");
        QTest::newRow("web page") << QUrl(u"https://films.example/some/Film%202019.mkv?x=y/z.mkv#top"_s)
                                  << u"Film 2019.mkv"_s;
        QTest::newRow("network folder") << QUrl(u"smb://server/share/Film.mkv"_s) << u"Film.mkv"_s;
        QTest::newRow("no path") << QUrl(u"mailto:someone@films.example"_s) << u"someone@films.example"_s;
    }

    /// None of them is taken as a drop, but a player may ask for any.
    void nonFilesAreSearchedByName()
    {
        QFETCH(QUrl, url);
        QFETCH(QString, name);
        m_view->controller->searchForFile(url, std::nullopt);
        QCOMPARE(m_view->field()->text(), name);
        QCOMPARE(m_sandbox.printedLines(), QStringList(NoHash));
        waitForTitle();
        QCOMPARE(m_view->field()->text(), name);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void fileThatVanishesIsSearchedByItsName()
    {
        const QString path = m_sandbox.writeFile(u"Vanishing.mkv"_s, QByteArray(200'000, 'v'));
        drop(QUrl::fromLocalFile(path));
        QVERIFY(!m_sandbox.printedLines().contains(NoHash));
        waitForTitle();
        QVERIFY(QFile::remove(path));
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s); // searches for it again
        QVERIFY(m_sandbox.printedLines().contains(NoHash));
        QCOMPARE(m_view->field()->text(), u"Vanishing.mkv"_s);
        waitForTitle();
    }

    void catalogueThatIsNoneIsAnError_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("damaged") << QByteArray("SQLite format 3\0 and then nothing that makes sense", 50);
        QTest::newRow("foreign") << QByteArray("a text");
        QTest::newRow("missing") << QByteArray();
    }

    void catalogueThatIsNoneIsAnError()
    {
        QFETCH(QByteArray, content);
        const QString path = m_sandbox.path(u"catalogue.sqlite"_s);
        QFile::remove(path);
        if (!content.isEmpty())
            m_sandbox.writeFile(u"catalogue.sqlite"_s, content);
        useCatalogue(path);
        m_view->field()->setText(u"harbour"_s);
        m_view->controller->doSearch(nullptr);
        const QString shown =
            alertDuring([this] { QTRY_VERIFY((m_view->turn(), !m_view->controller->isSearching())); });
        QVERIFY(!shown.isEmpty());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: "_s + shown});
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(m_view->field()->text(), u"harbour"_s);
    }

private:
    static void useCatalogue(const QString &path)
    {
        const auto names = std::make_shared<VideoNames>();
        const auto catalogue = std::make_shared<CatalogueService>(standardCataloguePlaces(path), names);
        SubtitleService::setShared(std::make_shared<CombinedSubtitleService>(
            QList<CombinedSubtitleService::Source>{{CatalogueService::name(), catalogue, {}}}, names,
            [] { return RankingPreferences(); }));
    }
    void drop(const QUrl &url) const
    {
        QMimeData pasteboard;
        pasteboard.setData(u"text/uri-list"_s, url.toEncoded() + "\r\n");
        QVERIFY(m_view->child<DragFilesHereView>("dragFilesHereView")->performDragOperation(&pasteboard));
    }
    /// Waits until a search has shown its end.
    void waitForTitle() const
    {
        QTRY_VERIFY(
            (m_view->turn(), m_view->title() != u"Plovendix"_s && !m_view->controller->isSearching()));
    }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(BadFilesTest)
#include "BadFilesTest.moc"
