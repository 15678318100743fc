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
    void suggestedNameIsTakenLiterally_data()
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
        QTest::newRow("a way out of the folder") << u"../../evil.en.srt"_s;
    }
    void suggestedNameIsTakenLiterally()
    {
        QFETCH(QString, name);
        // Neighbours that a sloppy reading of the name would pick.
        for (const QString &neighbour : {u"a"_s, u"best"_s, u"Movie.en.srt"_s})
            makeFile(neighbour);
        m_panel->nameFieldStringValue = name;
        name.replace(u'/', u'_');
        QFileDialog *dialog = show();
        QCOMPARE(nameField(*dialog)->text(), name);
        finish(*dialog);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(chosenPath(), m_folder + u'/' + name);
    }

    void nameStaysWhileTheFolderLoadsUntilAFileIsPicked()
    {
        for (const QString &neighbour : {u"a"_s, u"b"_s})
            makeFile(neighbour);
        m_panel->nameFieldStringValue = u"\"a\" \"b\""_s;
        QFileDialog *dialog = show();
        QSignalSpy loaded(dialog->findChild<QFileSystemModel *>(), &QFileSystemModel::directoryLoaded);
        auto *list = dialog->findChild<QTreeView *>(u"treeView"_s);
        list->setFocus();
        QVERIFY(loaded.count() > 0 || loaded.wait());
        // Both neighbours and the folder of the films.
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 3);
        QCOMPARE(nameField(*dialog)->text(), m_panel->nameFieldStringValue);
        const QModelIndex other =
            list->model()
                ->match(list->model()->index(0, 0, list->rootIndex()), Qt::DisplayRole, u"b"_s)
                .value(0);
        list->scrollTo(other);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(other).center());
        QCOMPARE(nameField(*dialog)->text(), u"b"_s);
        auto *save = dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save);
        QTest::mouseClick(save, Qt::LeftButton);
        QCOMPARE(chosenPath(), m_folder + u"/b"_s);
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
            makeFile(file);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder + u'/' + place);
        finish(*show());
        QCOMPARE(chosenPath(), m_folder + u'/' + expected + u'/' + m_name);
    }

    void fileURLMayNameThisComputerButNoServer()
    {
        const QString movies = makeFolder(u"movies"_s);
        const QList<std::pair<QString, QString>> places{
            {u"file://localhost"_s + movies, movies},
            {u"file://"_s + QSysInfo::machineHostName() + movies, movies},
            {u"https://server.example/movies/Movie.mkv"_s, m_movies},
        };
        for (const auto &[place, folder] : places) {
            m_panel->directoryURL = QUrl(place);
            QFileDialog *dialog = show();
            QCOMPARE(dialog->directory().absolutePath(), folder);
            finish(*dialog, Qt::Key_Escape);
        }
    }

    void folderUsedLastIsTheDefault()
    {
        const QString last = makeFolder(u"used last"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(last);
        finish(*show());
        m_panel->directoryURL.reset();
        QFileDialog *next = show();
        QCOMPARE(next->directory().absolutePath(), last);
        finish(*next, Qt::Key_Escape);
        QVERIFY(QDir(last).removeRecursively());
        next = show();
        QCOMPARE(next->directory().absolutePath(), m_movies);
        finish(*next, Qt::Key_Escape);
        UserDefaults::standard().setObject(u"lastSaveFolder"_s, u"."_s);
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
        FakeFileManager::install(named ? m_folder + u"/gone"_s : QString());
        m_panel->directoryURL.reset();
        QVERIFY(QDir::homePath() != QDir::currentPath());
        QCOMPARE(show()->directory().absolutePath(), QDir::homePath());
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
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QVERIFY(dialog->isVisible());
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(dialog->directory().absolutePath(), inner);
        QCOMPARE(nameField(*dialog)->text(), m_name);
        finish(*dialog);
        QCOMPARE(chosenPath(), inner + u'/' + m_name);
        QCOMPARE(UserDefaults::standard().string(u"lastSaveFolder"_s), inner);
    }

    void personTypesAPath_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a name") << u"other.srt"_s << m_sandbox.path(u"personTypesAPath/other.srt"_s);
        QTest::newRow("relative") << u"inner/a.srt"_s << m_sandbox.path(u"personTypesAPath/inner/a.srt"_s);
        QTest::newRow("upwards") << u"inner/../a.srt"_s << m_sandbox.path(u"personTypesAPath/a.srt"_s);
        QTest::newRow("absolute") << m_sandbox.path(u"a.srt"_s) << m_sandbox.path(u"a.srt"_s);
        QTest::newRow("at home") << u"~/a.srt"_s << QString(QDir::homePath() + u"/a.srt"_s);
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("a folder that is not there") << u"missing/"_s << QString();
    }
    void personTypesAPath()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        makeFolder(u"inner"_s);
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QCOMPARE(visibleDialog(*m_window) != nullptr, expected.isEmpty());
        QCOMPARE(m_answers.isEmpty(), expected.isEmpty());
        QCOMPARE(chosenPath(), expected);
    }
};

PLOVENDIX_GUI_TEST(SavePanelPlacesTest)
#include "SavePanelPlacesTest.moc"
