#pragma once
#include <base/Result.h>
#include <sources/catalogue/CatalogueWriter.h>
#include <sources/catalogue/StoredContent.h>
#include <QList>
#include <memory>

class CatalogueRows;
namespace CatalogueStore
{
struct WaitLimits;
}

/// A subtitle read from a source and ready to insert.
struct ReadSubtitle
{
    qint64 member = 0; // its number within an archive, from 0; 0 for a plain file
    FilmRecord film;
    SubtitleRecord record; // without its content
    StoredContent content;
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
/// holds the result of the last finished one, and repeating a function changes nothing. Errors have the
/// domain "Catalogue" and are for the terminal, with a CatalogueFailure as code. One thread.
class OwnCatalogue final
{
public:
    enum class SourceState
    {
        Unknown, // new, or changed since
        Begun,
        Whole
    };
    struct Entered
    {
        qint64 added = 0;
        qint64 duplicates =
            0; // the same subtitle came from elsewhere before, or this member is there already
    };

    /// `limits`, if any, must outlive the catalogue.
    static Result<OwnCatalogue> open(const QString &path, const CatalogueStore::WaitLimits *limits = nullptr);
    ~OwnCatalogue();
    OwnCatalogue(OwnCatalogue &&) noexcept;
    OwnCatalogue &operator=(OwnCatalogue &&) = delete;

    Result<SourceState> stateOf(const QString &path, const QString &stamp);
    Result<bool> hasMember(const QString &path, qint64 member);
    /// Whether the file at that path, or one below the folder, is a source.
    Result<bool> knowsBelow(const QString &path);
    /// Removes what an earlier state of a source left, first.
    Result<Entered> enter(const QList<SourceStep> &steps);

    /// Removes at most `maxSources` sources: the file at that path and those below the folder. Returns their
    /// number; fewer than asked for means that none is left.
    Result<qint64> removeBelow(const QString &path, qint64 maxSources);
    /// Checks the file and returns unused space to the disk. A damaged file is not changed.
    Result<void> vacuum();
    /// Writes the log back into the file, as far as readers allow.
    void checkpoint();

private:
    OwnCatalogue(std::unique_ptr<SQLite::Database> database, const QString &path,
                 const CatalogueStore::WaitLimits *limits);
    template <class Value, class Work>
    Result<Value> inTransaction(const Work &work);
    void enterStep(const SourceStep &step, Entered &counts);
    void enterSubtitle(qint64 source, const ReadSubtitle &subtitle, Entered &counts);
    qint64 sourceRow(const SourceStep &step);
    QList<qint64> sourcesBelow(const QString &path, qint64 maxSources);
    void forgetOrigins(qint64 source);
    void execute(const char *text, qint64 first, qint64 second);

    std::unique_ptr<SQLite::Database> m_database;
    std::unique_ptr<CatalogueRows> m_rows; // these two are destroyed before the database is closed
    std::unique_ptr<class PreparedStatements> m_statements;
    QString m_path;
    const CatalogueStore::WaitLimits *m_waitLimits = nullptr;
};
