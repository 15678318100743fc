#include "Output.h"
#include "SqlRecorder.h"

#include <sources/catalogue/CatalogueSchema.h>
#include <sources/catalogue/SearchWords.h>
#include <sources/catalogue/import/OwnCatalogue.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <functional>

namespace
{
using namespace Qt::StringLiterals;

constexpr int Files = 50'000;
constexpr int QuickFiles = 10'000;
constexpr int BatchFiles = 256; // as an import of a folder writes them
constexpr int FilesOfAFilm = 12;
constexpr int Rounds = 5;

/// What an import has read of the files and is about to write: one subtitle a file, packed.
QList<SourceStep> readFiles(int count)
{
    QList<SourceStep> steps;
    for (int file = 0; file < count; ++file) {
        const int film = file / FilesOfAFilm;
        ReadSubtitle subtitle;
        subtitle.film.titles = {u"The Film Number %1 of %2"_s.arg(film * 7919 % 100'003).arg(film % 97)};
        subtitle.film.year = 1950 + film % 75;
        subtitle.record.release = u"Film.%1.Release.%2.1080p.WEB"_s.arg(film).arg(file);
        subtitle.record.language = file % 2 ? u"eng"_s : u"ger"_s;
        subtitle.record.format = u"srt"_s;
        subtitle.record.content = StoredContent::packed(QByteArray::number(file).repeated(400));
        steps += {u"/videos/%1/%2.srt"_s.arg(film).arg(file), u"%1:1"_s.arg(file), {subtitle}, true};
    }
    return steps;
}

double millisecondsOf(const std::function<void()> &work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

void import(const QString &path, const QList<SourceStep> &steps)
{
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(path);
    if (!catalogue)
        qFatal("%s", qUtf8Printable(catalogue.error().localizedDescription));
    for (qsizetype first = 0; first < steps.size(); first += BatchFiles)
        catalogue.value().enter(steps.mid(first, BatchFiles));
    catalogue.value().checkpoint();
}

const std::string &withTables(const std::string &path)
{
    SQLite::Database database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec("PRAGMA journal_mode = WAL");
    SQLite::Transaction transaction(database);
    CatalogueSchema::create(database);
    transaction.commit();
    return path;
}

/// The same rows, known beforehand: nothing is looked up.
class BareImport final
{
public:
    explicit BareImport(const std::string &path) : m_database(withTables(path), true)
    {
        m_database.execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA cache_size = -65536;"
                           "PRAGMA journal_size_limit = 67108864");
        m_film = prepared("INSERT INTO film(id, is_series, year) VALUES(?, 0, ?)");
        m_title = prepared("INSERT INTO title(id, name) VALUES(?, ?)");
        m_words = prepared("INSERT INTO title_words(rowid, words) VALUES(?, ?)");
        m_filmTitle = prepared("INSERT INTO film_title(title_id, film_id, is_main) VALUES(?, ?, 1)");
        m_subtitle = prepared("INSERT INTO subtitle(id, film_id, language, release, format, digest, content)"
                              " VALUES(?, ?, ?, ?, ?, ?, x'')");
        m_content = prepared("INSERT INTO content(subtitle_id, packed) VALUES(?, ?)");
        m_source = prepared("INSERT INTO source(id, path, stamp, is_whole) VALUES(?, ?, ?, 1)");
        m_origin = prepared("INSERT INTO origin(source_id, member, subtitle_id) VALUES(?, 0, ?)");
    }
    ~BareImport()
    {
        for (sqlite3_stmt *statement : m_all)
            sqlite3_finalize(statement);
    }
    BareImport(const BareImport &) = delete;
    BareImport &operator=(const BareImport &) = delete;

    void begin() { m_database.execute("BEGIN IMMEDIATE"); }
    void commit() { m_database.execute("COMMIT"); }
    void checkpoint() { m_database.execute("PRAGMA wal_checkpoint(TRUNCATE)"); }

    void enterFilm(qint64 film, const std::string &title, const std::string &words, int year)
    {
        run(m_film, film, year);
        run(m_title, film, title);
        run(m_words, film, words);
        run(m_filmTitle, film, film);
    }

    void enterFile(qint64 file, qint64 film, const std::vector<std::string> &texts,
                   const StoredContent &content)
    {
        run(m_source, file, texts[0], texts[1]);
        run(m_subtitle, file, film, texts[2], texts[3], texts[4], content.digest);
        run(m_content, file, content.apart);
        run(m_origin, file, file);
    }

private:
    sqlite3_stmt *prepared(const char *text)
    {
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(m_database.handle(), text, -1, &statement, nullptr) != SQLITE_OK)
            qFatal("%s: %s", text, sqlite3_errmsg(m_database.handle()));
        m_all.push_back(statement);
        return statement;
    }

    static void bind(sqlite3_stmt *statement, int index, qint64 value)
    {
        sqlite3_bind_int64(statement, index, value);
    }
    static void bind(sqlite3_stmt *statement, int index, int value)
    {
        sqlite3_bind_int(statement, index, value);
    }
    static void bind(sqlite3_stmt *statement, int index, const std::string &value)
    {
        sqlite3_bind_text(statement, index, value.c_str(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    static void bind(sqlite3_stmt *statement, int index, const QByteArray &value)
    {
        sqlite3_bind_blob(statement, index, value.constData(), static_cast<int>(value.size()), SQLITE_STATIC);
    }

    template <class... Values>
    void run(sqlite3_stmt *statement, const Values &...values)
    {
        int index = 0;
        (bind(statement, ++index, values), ...);
        if (sqlite3_step(statement) != SQLITE_DONE)
            qFatal("%s", sqlite3_errmsg(m_database.handle()));
        sqlite3_reset(statement);
    }

    BareDatabase m_database;
    std::vector<sqlite3_stmt *> m_all;
    sqlite3_stmt *m_film;
    sqlite3_stmt *m_title;
    sqlite3_stmt *m_words;
    sqlite3_stmt *m_filmTitle;
    sqlite3_stmt *m_subtitle;
    sqlite3_stmt *m_content;
    sqlite3_stmt *m_source;
    sqlite3_stmt *m_origin;
};

/// Everything as bytes before the clock starts.
struct BareFile
{
    std::vector<std::string> texts;
    std::string title;
    std::string words;
    int year = 0;
    StoredContent content;
};

std::vector<BareFile> bareFiles(const QList<SourceStep> &steps)
{
    std::vector<BareFile> files;
    for (const SourceStep &step : steps) {
        const ReadSubtitle &subtitle = step.subtitles.first();
        const QString &title = subtitle.film.titles.first();
        files.push_back(
            {{step.path.toStdString(), step.stamp.toStdString(), subtitle.record.language.toStdString(),
              subtitle.record.release.toStdString(), subtitle.record.format.toStdString()},
             title.toStdString(),
             searchWords(title).join(u' ').toStdString(),
             *subtitle.film.year,
             subtitle.record.content});
    }
    return files;
}

void insertBare(const std::string &path, const std::vector<BareFile> &files)
{
    BareImport import(path);
    for (std::size_t first = 0; first < files.size(); first += BatchFiles) {
        import.begin();
        const std::size_t end = std::min(files.size(), first + BatchFiles);
        for (std::size_t index = first; index < end; ++index) {
            const BareFile &file = files[index];
            const auto film = static_cast<qint64>(index / FilesOfAFilm + 1);
            if (index % FilesOfAFilm == 0)
                import.enterFilm(film, file.title, file.words, file.year);
            import.enterFile(static_cast<qint64>(index + 1), film, file.texts, file.content);
        }
        import.commit();
    }
    import.checkpoint();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int rowsIn(const QString &path)
{
    return BareDatabase(path.toStdString())
        .read("SELECT s.id FROM subtitle s JOIN origin o ON o.subtitle_id = s.id");
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const bool isQuick = application.arguments().contains(u"--quick"_s);
    const QList<SourceStep> steps = readFiles(isQuick ? QuickFiles : Files);
    const std::vector<BareFile> files = bareFiles(steps);
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() + u"/import-XXXXXX"_s);
    std::vector<double> values;
    std::vector<double> floors;
    for (int round = 0; round < Rounds; ++round) {
        const QString ours = folder.filePath(u"ours-%1.sqlite"_s.arg(round));
        const QString bare = folder.filePath(u"bare-%1.sqlite"_s.arg(round));
        values.push_back(millisecondsOf([&] { import(ours, steps); }));
        floors.push_back(millisecondsOf([&] { insertBare(bare.toStdString(), files); }));
        if (rowsIn(ours) != steps.size() || rowsIn(bare) != steps.size())
            qFatal("not every file was entered");
    }
    std::fprintf(measuredOutput(),
                 R"({"name": "catalogue_import", "value": %.3f, "floor": %.3f, "unit": "ms"})"
                 "\n",
                 median(values), median(floors));
    return 0;
}
