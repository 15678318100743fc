#include "DownloadFixture.h"

#include <base/FileSystemCalls.h>
#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>

#include <cerrno>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace
{
/// A disk of its own for the videos: the files must be copied there, and making or writing one may fail.
class VideoDisk final : public FileSystemCalls
{
public:
    int renameWithoutReplacing(const QByteArray &, const QByteArray &) override { return -EXDEV; }
    int rename(const QByteArray &from, const QByteArray &to) override
    {
        return from.contains("/downloads/") ? -EXDEV : FileSystemCalls::rename(from, to);
    }
    int link(const QByteArray &, const QByteArray &) override { return -EXDEV; }
    int open(const QByteArray &path, int flags, mode_t mode) override
    {
        return (flags & O_CREAT) && openFailure ? -openFailure : FileSystemCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const char *bytes, std::size_t size) override
    {
        return writeFailure ? -writeFailure : FileSystemCalls::write(descriptor, bytes, size);
    }

    int openFailure = 0;
    int writeFailure = 0;
};
} // namespace

/// What a person sees, and keeps, when the file cannot go where they want it.
class SaveFailuresTest : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void diskThatRefusesIsAnErrorAndNothingIsLost_data()
    {
        QTest::addColumn<int>("openFailure");
        QTest::addColumn<int>("writeFailure");
        QTest::addColumn<QString>("reason");
        QTest::newRow("full disk") << 0 << ENOSPC << u"there is not enough free space"_s;
        QTest::newRow("no room for another file") << ENOSPC << 0 << u"there is not enough free space"_s;
        QTest::newRow("over quota") << 0 << EDQUOT << u"there is not enough free space"_s;
        QTest::newRow("read-only disk") << EROFS << 0 << u"the disk can only be read"_s;
        QTest::newRow("read-only folder") << EACCES << 0 << u"you do not have the permission"_s;
        QTest::newRow("failing disk") << 0 << EIO << u"Input/output error"_s;
    }

    void diskThatRefusesIsAnErrorAndNothingIsLost()
    {
        QFETCH(int, openFailure);
        QFETCH(int, writeFailure);
        QFETCH(QString, reason);
        const auto disk = std::make_shared<VideoDisk>();
        disk->openFailure = openFailure;
        disk->writeFailure = writeFailure;
        FileManager::setDefaultManager(std::make_shared<FileManager>(disk));
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        const QString shown = saveAndReadTheAlert();
        QVERIFY2(shown.contains(u"A.srt"_s) && shown.contains(m_sandbox.path(u"videos"_s)),
                 qUtf8Printable(shown));
        QVERIFY2(shown.contains(reason), qUtf8Printable(shown));
        QVERIFY(QFile::exists(file.toLocalFile()));
        QCOMPARE(QDir(m_sandbox.path(u"videos"_s)).entryList(QDir::Files | QDir::Hidden),
                 QStringList{u"a.b.mp4"_s});
        QVERIFY(!m_view->child<ui::Label>("deliveryLabel")->isVisible());
    }

    void folderThatIsGoneIsAnError()
    {
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        QVERIFY(QDir(m_sandbox.path(u"videos"_s)).removeRecursively());
        QVERIFY(!saveAndReadTheAlert().isEmpty());
        QVERIFY(QFile::exists(file.toLocalFile()));
        QVERIFY(!QFile::exists(m_sandbox.path(u"videos"_s)));
    }

    void folderOfTheNameIsKept()
    {
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        QFileDialog *dialog = sheet();
        QVERIFY(dialog);
        // It appears after the sheet has looked and before the file is moved.
        QTest::keyClick(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
        QVERIFY(QDir().mkpath(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
        const QString shown = alertDuring([this] { m_view->turn(); });
        QVERIFY2(shown.contains(u"a.b.pob.srt"_s), qUtf8Printable(shown));
        QVERIFY(QFile::exists(file.toLocalFile()));
    }

    void errorOfAMoveIsTheFileManagersOwn()
    {
        struct Refusing final : FileManager
        {
            Result<void> moveItem(const QUrl &, const QUrl &) override
            {
                return base::Error{u"Files"_s, 4, u"Not today."_s};
            }
        };
        FileManager::setDefaultManager(std::make_shared<Refusing>());
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        QCOMPARE(saveAndReadTheAlert(), u"Not today."_s);
        QVERIFY(m_sandbox.printedLines().filter(u"Not today"_s).isEmpty());
    }

    void afterATakenNameTheSheetComesBackAsItWas()
    {
        m_sandbox.writeFile(u"videos/sub folder/My name.srt"_s, "mine");
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        sheet()->setDirectory(m_sandbox.path(u"videos/sub folder"_s));
        enter(u"My name.srt"_s);
        const QString shown = saveAndReadTheAlert();
        QVERIFY2(shown.contains(u"already exists"_s), qUtf8Printable(u"shown: "_s + shown));
        QVERIFY(sheet());
        QCOMPARE(name()->text(), u"My name.srt"_s);
        QCOMPARE(sheet()->directory().path(), m_sandbox.path(u"videos/sub folder"_s));
        QVERIFY(QFile::exists(file.toLocalFile()));
        enter(u"My other name.srt"_s);
        QVERIFY(saveAndReadTheAlert().isEmpty());
        QVERIFY(!sheet());
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/sub folder/My other name.srt"_s)));
        QCOMPARE(m_view->child<ui::Label>("deliveryLabel")->text(), u"Saved as My other name.srt"_s);
        QVERIFY(!QFile::exists(file.toLocalFile()));
    }

    void takenNamesMayComeInARow()
    {
        m_sandbox.writeFile(u"videos/a.b.pob.srt"_s, "mine");
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        for (int times = 0; times < 3; ++times) {
            QVERIFY(!saveAndReadTheAlert().isEmpty());
            QVERIFY(sheet());
            QCOMPARE(name()->text(), u"a.b.pob.srt"_s);
        }
        QVERIFY(QFile::remove(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
        QVERIFY(saveAndReadTheAlert().isEmpty());
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/a.b.pob.srt"_s)));
    }

    void afterATakenNameTheSheetMayBeCancelled()
    {
        m_sandbox.writeFile(u"videos/a.b.pob.srt"_s, "mine");
        searchVideo();
        downloadFirst();
        const QUrl file = downloadedFile();
        finishWith(file);
        QVERIFY(!saveAndReadTheAlert().isEmpty());
        answerSheet(false);
        QVERIFY(!sheet());
        QVERIFY(QFile::exists(file.toLocalFile()));
        QVERIFY(!m_view->child<ui::Label>("deliveryLabel")->isVisible());
    }

    void windowThatClosesWithTheAlertGetsNoSheet()
    {
        m_sandbox.writeFile(u"videos/a.b.pob.srt"_s, "mine");
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        const bool came = whileAlertIsUp([this] { answerSheet(true); },
                                         [this] {
                                             m_view->window->setContentViewController({});
                                             dismissAlert();
                                         });
        QVERIFY(came);
        m_view->turn();
        QVERIFY(!sheet());
    }

    void afterAnotherFailureTheSheetStaysAway()
    {
        const auto disk = std::make_shared<VideoDisk>();
        disk->writeFailure = ENOSPC;
        FileManager::setDefaultManager(std::make_shared<FileManager>(disk));
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        QVERIFY(!saveAndReadTheAlert().isEmpty());
        m_view->turn();
        QVERIFY(!sheet());
    }

private:
    QLineEdit *name() const { return sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s); }
    /// Without the list of completions, which would take the Return that follows.
    void enter(const QString &text) const { name()->setText(text); }
    QString saveAndReadTheAlert()
    {
        return alertDuring([this] { answerSheet(true); });
    }
};

PLOVENDIX_GUI_TEST(SaveFailuresTest)
#include "SaveFailuresTest.moc"
