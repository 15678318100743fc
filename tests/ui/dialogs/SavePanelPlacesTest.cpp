#include "SavePanelFixture.h"

#include <tests/support/TestMain.h>

#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTreeView>

using namespace Qt::StringLiterals;

/// Where a save sheet opens, and what the names in it mean.
class SavePanelPlacesTest : public SavePanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void oddNamesAreShownAndKept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a newline") << u"one\ntwo.en.srt"_s;
        QTest::newRow("a direction mark") << u"abc\u202Etrs.exe.en.srt"_s;
        QTest::newRow("quotes") << u"The \"best\" movie.en.srt"_s;
        QTest::newRow("quotes around") << u"\"a\" \"b\""_s;
        QTest::newRow("a tilde") << u"~someone.en.srt"_s;
        QTest::newRow("spaces") << u"  Movie  .en.srt "_s;
        QTest::newRow("per cent") << u"100%25 #1?.en.srt"_s;
        QTest::newRow("a backslash") << u"a\\b.en.srt"_s;
        QTest::newRow("wildcards") << u"*.[srt]"_s;
        QTest::newRow("a hidden file") << u".en.srt"_s;
        QTest::newRow("another script") << u"Фильм 映画 🎬.en.srt"_s;
        QTest::newRow("no extension") << u"Movie"_s;
    }
    void oddNamesAreShownAndKept()
    {
        QFETCH(QString, name);
        // Neighbours that a sloppy reading of the name would pick.
        for (const QString &neighbour : {u"a"_s, u"best"_s, u"Movie.en.srt"_s})
            QVERIFY(QFile(m_folder + u'/' + neighbour).open(QIODevice::WriteOnly));
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = name;
        QFileDialog *dialog = show();
        QCOMPARE(nameField(*dialog)->text(), name);
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u'/' + name);
    }

    void nameStaysWhenTheFolderHasLoadedAndTheFocusIsElsewhere()
    {
        for (const QString &neighbour : {u"a"_s, u"b"_s})
            QVERIFY(QFile(m_folder + u'/' + neighbour).open(QIODevice::WriteOnly));
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"\"a\" \"b\""_s;
        QFileDialog *dialog = show();
        QSignalSpy loaded(dialog->findChild<QFileSystemModel *>(), &QFileSystemModel::directoryLoaded);
        auto *list = dialog->findChild<QTreeView *>(u"treeView"_s);
        list->setFocus();
        QVERIFY(loaded.count() > 0 || loaded.wait());
        // Both neighbours and the folder of the films.
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 3);
        QCOMPARE(nameField(*dialog)->text(), m_panel->nameFieldStringValue);
        auto *save = dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save);
        QTest::mouseClick(save, Qt::LeftButton);
        QCOMPARE(m_panel->URL()->fileName(), m_panel->nameFieldStringValue);
    }

    void personPicksAFileOfTheFolder()
    {
        QVERIFY(QFile(m_folder + u"/other.srt"_s).open(QIODevice::WriteOnly));
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        auto *list = dialog->findChild<QTreeView *>(u"treeView"_s);
        const QAbstractItemModel *files = list->model();
        QModelIndexList found;
        QTRY_COMPARE(
            (found = files->match(files->index(0, 0, list->rootIndex()), Qt::DisplayRole, u"other.srt"_s))
                .size(),
            1);
        const QModelIndex other = found.constFirst();
        QVERIFY(list->isVisible());
        list->scrollTo(other);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(other).center());
        QCOMPARE(nameField(*dialog)->text(), u"other.srt"_s);
        auto *save = dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save);
        QTest::mouseClick(save, Qt::LeftButton);
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u"/other.srt"_s);
    }

    void suggestedNameCannotLeadOutOfTheFolder()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"../../evil.en.srt"_s;
        QFileDialog *dialog = show();
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u"/.._.._evil.en.srt"_s);
    }

    void opensWhereTheDirectoryURLSays_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a folder") << u"movies"_s << u"movies"_s;
        QTest::newRow("a folder with a slash") << u"movies/"_s << u"movies"_s;
        QTest::newRow("a file") << u"movies/Movie.mkv"_s << u"movies"_s;
        QTest::newRow("a file without extension") << u"movies/Movie"_s << u"movies"_s;
        QTest::newRow("a file that has gone") << u"movies/Gone.mkv"_s << u"movies"_s;
        QTest::newRow("a folder that has gone") << u"movies/gone"_s << u"Videos"_s;
        QTest::newRow("a file in a folder that has gone") << u"gone/Movie.mkv"_s << u"Videos"_s;
        QTest::newRow("an odd folder") << u"odd # %20 ü\nfolder/Movie.mkv"_s << u"odd # %20 ü\nfolder"_s;
    }
    void opensWhereTheDirectoryURLSays()
    {
        QFETCH(QString, place);
        QFETCH(QString, expected);
        makeFolder(u"movies"_s);
        makeFolder(u"odd # %20 ü\nfolder"_s);
        for (const QString &file :
             {u"movies/Movie.mkv"_s, u"movies/Movie"_s, u"odd # %20 ü\nfolder/Movie.mkv"_s})
            QVERIFY(QFile(m_folder + u'/' + file).open(QIODevice::WriteOnly));
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder + u'/' + place);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u'/' + expected + u"/Movie.en.srt"_s);
    }

    void fileURLMayNameThisComputer()
    {
        makeFolder(u"movies"_s);
        for (const QString &host : {u"localhost"_s, QSysInfo::machineHostName()}) {
            QUrl place = QUrl::fromLocalFile(m_folder + u"/movies/Movie.mkv"_s);
            place.setHost(host);
            QVERIFY(place.isValid());
            m_panel->directoryURL = place;
            QFileDialog *dialog = show();
            QCOMPARE(dialog->directory().absolutePath(), m_folder + u"/movies"_s);
            QTest::keyClick(dialog, Qt::Key_Escape);
        }
    }

    void otherURLsThanFilesMeanTheDefaultFolder()
    {
        m_panel->directoryURL = QUrl(u"https://server.example/movies/Movie.mkv"_s);
        QCOMPARE(show()->directory().absolutePath(), m_movies);
    }

    void folderUsedLastIsTheDefault()
    {
        const QString last = makeFolder(u"used last"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(last);
        QFileDialog *dialog = show();
        type(*dialog, u"first.srt"_s);
        QTRY_COMPARE(m_answers.size(), 1);

        m_panel = std::make_shared<SavePanel>();
        QFileDialog *next = show();
        QCOMPARE(next->directory().absolutePath(), last);
        next->close();
        QVERIFY(QDir(last).removeRecursively());
        m_panel = std::make_shared<SavePanel>();
        QCOMPARE(show()->directory().absolutePath(), m_movies);
    }

    void withoutAMoviesFolderItIsHome_data()
    {
        QTest::addColumn<bool>("named");
        QTest::newRow("none named") << false;
        QTest::newRow("the one named is gone") << true;
    }
    void withoutAMoviesFolderItIsHome()
    {
        QFETCH(bool, named);
        const auto gone = named ? std::optional(QUrl::fromLocalFile(m_folder + u"/gone"_s)) : std::nullopt;
        FileManager::setDefaultManager(std::make_shared<MoviesAt>(gone));
        QVERIFY(QDir::homePath() != QDir::currentPath());
        QCOMPARE(show()->directory().absolutePath(), QDir::homePath());
    }

    void rememberedFolderThatIsNoPathIsIgnored()
    {
        UserDefaults::standard().setObject(u"lastSaveFolder"_s, u"."_s);
        QCOMPARE(show()->directory().absolutePath(), m_movies);
    }

    void typingAFolderGoesThereAndKeepsTheName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("its name") << u"inner"_s;
        QTest::newRow("its name with a slash") << u"inner/"_s;
        QTest::newRow("its path") << u"./inner/../inner"_s;
    }
    void typingAFolderGoesThereAndKeepsTheName()
    {
        QFETCH(QString, typed);
        const QString inner = makeFolder(u"inner"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QVERIFY(dialog->isVisible());
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(dialog->directory().absolutePath(), inner);
        QCOMPARE(nameField(*dialog)->text(), u"Movie.en.srt"_s);
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_panel->URL()->toLocalFile(), inner + u"/Movie.en.srt"_s);
        QCOMPARE(UserDefaults::standard().string(u"lastSaveFolder"_s), inner);
    }

    void personTypesAPath_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("relative") << u"inner/a.srt"_s << m_sandbox.path(u"personTypesAPath/inner/a.srt"_s);
        QTest::newRow("upwards") << u"inner/../a.srt"_s << m_sandbox.path(u"personTypesAPath/a.srt"_s);
        QTest::newRow("absolute") << m_sandbox.path(u"a.srt"_s) << m_sandbox.path(u"a.srt"_s);
        QTest::newRow("at home") << u"~/a.srt"_s << QString(QDir::homePath() + u"/a.srt"_s);
    }
    void personTypesAPath()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        makeFolder(u"inner"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QCOMPARE(m_panel->URL(), QUrl::fromLocalFile(expected));
    }

    void nameThatIsNoneIsNotAccepted_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("nothing") << QString();
        QTest::newRow("a folder that is not there") << u"missing/"_s;
    }
    void nameThatIsNoneIsNotAccepted()
    {
        QFETCH(QString, typed);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QVERIFY(dialog->isVisible());
        QVERIFY(m_answers.isEmpty());
    }
};

PLOVENDIX_GUI_TEST(SavePanelPlacesTest)
#include "SavePanelPlacesTest.moc"
