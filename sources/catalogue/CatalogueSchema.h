#pragma once

/// The schema of a catalogue. Files of another version and files whose tables were not made by exactly these
/// statements are refused: each change of a statement needs a new version.
namespace CatalogueSchema
{
inline constexpr int ApplicationId = 0x506c7664; // "Plvd"
inline constexpr int Version = 2;

/// A film is what subtitles are made for: a film, or one episode of a series. It has one main title and any
/// number of others; titles are kept once and their words, folded by `searchWords`, are what a text search
/// looks through. An IMDb id is kept as its number. A digest is the SHA-1 of the content.
///
/// A source is a file that was entered, with a stamp that changes when the file does; it is whole once all
/// its members are in. An origin says which member of which source a subtitle came from; subtitles of the
/// starter catalogue have none. The contents of subtitles from files are kept apart and packed, so that the
/// rows a search reads lie close together; their `subtitle.content` is empty.
inline constexpr char Statements[] = R"(
CREATE TABLE film(
    id INTEGER PRIMARY KEY,
    is_series INTEGER NOT NULL DEFAULT 0,
    year INTEGER,
    season INTEGER,
    episode INTEGER,
    imdb INTEGER,
    poster BLOB);
CREATE INDEX film_imdb ON film(imdb);
CREATE TABLE title(
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL UNIQUE);
CREATE TABLE film_title(
    title_id INTEGER NOT NULL,
    film_id INTEGER NOT NULL,
    is_main INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(title_id, film_id)) WITHOUT ROWID;
CREATE INDEX film_title_film ON film_title(film_id, is_main);
CREATE VIRTUAL TABLE title_words USING fts5(words, content='', prefix='2 3', tokenize='unicode61 remove_diacritics 0');
CREATE TABLE subtitle(
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
    content BLOB NOT NULL);
CREATE INDEX subtitle_film ON subtitle(film_id, language);
CREATE TABLE video(
    hash TEXT NOT NULL,
    size INTEGER NOT NULL,
    subtitle_id INTEGER NOT NULL,
    PRIMARY KEY(hash, size, subtitle_id)) WITHOUT ROWID;
CREATE TABLE source(
    id INTEGER PRIMARY KEY,
    path TEXT NOT NULL UNIQUE,
    stamp TEXT NOT NULL,
    is_whole INTEGER NOT NULL DEFAULT 0);
CREATE TABLE origin(
    source_id INTEGER NOT NULL,
    member INTEGER NOT NULL,
    subtitle_id INTEGER NOT NULL,
    PRIMARY KEY(source_id, member)) WITHOUT ROWID;
CREATE INDEX origin_subtitle ON origin(subtitle_id);
CREATE INDEX video_subtitle ON video(subtitle_id);
CREATE TABLE content(
    subtitle_id INTEGER PRIMARY KEY,
    packed BLOB NOT NULL);
)";
} // namespace CatalogueSchema
