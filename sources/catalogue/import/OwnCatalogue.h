#pragma once
#include "CatalogueStore.h"

#include <sources/catalogue/CatalogueRows.h>

/// A subtitle read from a source and ready to insert.
struct ReadSubtitle
{
    qint64 member = 0; // its number within an archive, from 0; 0 for a plain file
    FilmRecord film;
    SubtitleRecord record;
};

/// The part of a source that one batch inserts.
struct SourceStep
{
    QString path;
    QString stamp; // identifies this state of the file
    QList<ReadSubtitle> subtitles;
    bool isWhole = true; // this is the last part of the source
};

/// The person's own catalogue, opened for writing. Every function is one transaction: after a kill the file
/// holds the result of the last finished one, and repeating a function changes nothing. Functions throw
/// SQLite::Exception. One thread.
class OwnCatalogue final
{
public:
    struct Entered
    {
        qint64 added = 0;
        qint64 duplicates = 0; // came from elsewhere before, or this member is there already
    };

    /// `limits`, if any, must outlive the catalogue.
    static Result<OwnCatalogue> open(const QString &path, CatalogueStore::WaitLimits *limits = nullptr);

    /// Whether all of a source was entered in this state.
    bool isWhole(const QString &path, const QString &stamp);
    bool hasMember(const QString &path, qint64 member);
    /// Whether the file at that path, or one below the folder, is a source.
    bool knowsBelow(const QString &path);
    /// Removes what an earlier state of a source left, first.
    Entered enter(const QList<SourceStep> &steps);

    /// Removes at most `maxSources` sources: the file at that path and those below the folder. Returns their
    /// number; fewer than asked for means that none is left.
    qint64 removeBelow(const QString &path, qint64 maxSources);
    /// The faults that a check of the whole file finds, its text index included; empty when it is sound.
    QStringList faults();
    /// Checks the file and returns unused space to the disk. A damaged file is not changed.
    Result<void> vacuum();
    /// Writes the log back into the file, as far as readers allow.
    void checkpoint();

    /// The exception of a function above as an Error of domain "Catalogue" for the terminal, with a
    /// CatalogueFailure as code.
    base::Error error(const SQLite::Exception &exception) const;

private:
    OwnCatalogue(std::unique_ptr<SQLite::Database> database, const QString &path,
                 CatalogueStore::WaitLimits *limits);
    void enterSubtitle(qint64 source, const ReadSubtitle &subtitle, Entered &counts);
    qint64 sourceRow(const SourceStep &step);
    QList<qint64> sourcesBelow(const QString &path, qint64 maxSources);
    void forgetOrigins(qint64 source);

    std::unique_ptr<SQLite::Database> m_database;
    CatalogueRows m_rows; // these two are destroyed before the database is closed
    PreparedStatements m_statements;
    QString m_path;
    CatalogueStore::WaitLimits *m_waitLimits = nullptr;
};
