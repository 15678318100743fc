#include "CatalogueSchema.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <string>
#include <string_view>

namespace
{
constexpr int ApplicationId = 0x506c7664; // "Plvd"
constexpr int Version = 2;

constexpr char TitleWords[] = "CREATE VIRTUAL TABLE title_words USING fts5(words, content='', prefix='2 3', "
                              "tokenize='unicode61 remove_diacritics 0')";

/// A film is what subtitles are made for: a film, or one episode of a series. It has one main title and any
/// number of others; titles are kept once and their words, folded by `searchWords`, are what a text search
/// looks through. An IMDb id is kept as its number. A digest is the SHA-1 of the content.
///
/// A source is a file that was entered, with a stamp that changes when the file does; it is whole once all
/// its members are in. An origin says which member of which source a subtitle came from; subtitles of the
/// starter catalogue have none. The contents of subtitles from files are kept apart and packed, so that the
/// rows a search reads lie close together; their `subtitle.content` is empty.
constexpr const char *Tables[] = {
    R"(CREATE TABLE film(
    id INTEGER PRIMARY KEY,
    is_series INTEGER NOT NULL DEFAULT 0,
    year INTEGER,
    season INTEGER,
    episode INTEGER,
    imdb INTEGER,
    poster BLOB))",
    R"(CREATE TABLE title(
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL UNIQUE))",
    R"(CREATE TABLE film_title(
    title_id INTEGER NOT NULL,
    film_id INTEGER NOT NULL,
    is_main INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(title_id, film_id)) WITHOUT ROWID)", TitleWords,
    R"(CREATE TABLE subtitle(
    id INTEGER PRIMARY KEY,
    film_id INTEGER NOT NULL,
    language TEXT NOT NULL,
    release TEXT NOT NULL,
    format TEXT NOT NULL,
    downloads INTEGER,
    frames_per_second REAL,
    hearing_impaired INTEGER NOT NULL DEFAULT 0,
    foreign_parts_only INTEGER NOT NULL DEFAULT 0,
    machine_translated INTEGER NOT NULL DEFAULT 0,
    digest BLOB NOT NULL,
    content BLOB NOT NULL))",
    R"(CREATE TABLE video(
    hash TEXT NOT NULL,
    size INTEGER NOT NULL,
    subtitle_id INTEGER NOT NULL,
    PRIMARY KEY(hash, size, subtitle_id)) WITHOUT ROWID)",
    R"(CREATE TABLE source(
    id INTEGER PRIMARY KEY,
    path TEXT NOT NULL UNIQUE,
    stamp TEXT NOT NULL,
    is_whole INTEGER NOT NULL DEFAULT 0))",
    R"(CREATE TABLE origin(
    source_id INTEGER NOT NULL,
    member INTEGER NOT NULL,
    subtitle_id INTEGER NOT NULL,
    PRIMARY KEY(source_id, member)) WITHOUT ROWID)",
    R"(CREATE TABLE content(
    subtitle_id INTEGER PRIMARY KEY,
    packed BLOB NOT NULL))",
};

constexpr const char *Indexes[] = {
    "CREATE INDEX film_imdb ON film(imdb)",
    "CREATE INDEX film_title_film ON film_title(film_id, is_main)",
    "CREATE INDEX subtitle_film ON subtitle(film_id, language)",
    "CREATE INDEX origin_subtitle ON origin(subtitle_id)",
    "CREATE INDEX video_subtitle ON video(subtitle_id)",
};

/// SQLite makes the tables behind the text index. A generated column needs the word "as".
constexpr char DoubtfulIndexTables[] =
    "SELECT name FROM sqlite_schema WHERE name LIKE 'title\\_words\\_%' ESCAPE '\\'"
    " AND (type <> 'table' OR sql NOT LIKE 'CREATE TABLE ''title\\_words\\_%' ESCAPE '\\'"
    " OR sql LIKE '%as%') LIMIT 1";

std::string nameOf(std::string_view table)
{
    constexpr std::string_view Keyword = "TABLE ";
    const std::string_view rest = table.substr(table.find(Keyword) + Keyword.size());
    return std::string(rest.substr(0, rest.find_first_of("( ")));
}

[[noreturn]] void refuse(const std::string &table)
{
    throw SQLite::Exception("the table " + table + " is not one that Plovendix makes", SQLITE_CORRUPT);
}
} // namespace

void CatalogueSchema::create(SQLite::Database &database)
{
    for (const char *table : Tables)
        database.exec(table);
    for (const char *index : Indexes)
        database.exec(index);
    database.exec("PRAGMA application_id = " + std::to_string(ApplicationId));
    database.exec("PRAGMA user_version = " + std::to_string(Version));
}

CatalogueSchema::Owner CatalogueSchema::ownerOf(SQLite::Database &database)
{
    if (database.execAndGet("PRAGMA application_id").getInt() != ApplicationId)
        return Owner::OtherProgram;
    return database.execAndGet("PRAGMA user_version").getInt() == Version ? Owner::Ours : Owner::OtherVersion;
}

void CatalogueSchema::verify(SQLite::Database &database)
{
    SQLite::Statement find(database, "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND sql = ?");
    for (const char *table : Tables) {
        find.reset();
        find.bindNoCopy(1, table);
        if (!find.executeStep())
            refuse(nameOf(table));
    }
    SQLite::Statement doubtful(database, DoubtfulIndexTables);
    if (doubtful.executeStep())
        refuse(doubtful.getColumn(0).getText());
}
