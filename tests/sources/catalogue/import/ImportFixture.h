#pragma once
#include "UnprivilegedUser.h"

#include <sources/catalogue/CatalogueDatabase.h>
#include <sources/catalogue/import/CatalogueImport.h>
#include <tests/support/Sandbox.h>

/// A catalogue of the running test function, and the files that are entered into it.
class ImportFixture final
{
public:
    using Members = QList<std::pair<QString, QByteArray>>;

    explicit ImportFixture(const Sandbox &sandbox);

    QString path() const { return m_path; }
    QString folder() const { return m_folder; }

    /// A whole subtitle whose one line says `line`.
    static QByteArray cue(const QString &line);
    QString write(const QString &relative, const QByteArray &content) const;
    /// Writes a subtitle for each episode from `first` up to, but not including, `end`; all contents differ.
    void writeEpisodes(int end, int first = 0) const;
    /// What the headers of an archive's members say about their sizes.
    enum class Sizes
    {
        Stated,
        Unstated // in a zip alone; they follow the members then
    };
    /// An archive of a kind that libarchive knows by its extension (".zip", ".tar.gz" …). Only a zip can be
    /// locked by a password.
    QString writeArchive(const QString &relative, const Members &members, const QByteArray &password = {},
                         Sizes sizes = Sizes::Stated) const;

    /// Opens the catalogue, adds the path (the whole folder when none is given) and gives what happened.
    ImportCounts add(const QString &path = {}, const QString &language = {}) const;
    /// Adds the folder until `goOn` says no; false when it never did.
    bool addUntil(const CatalogueImport::GoOn &goOn) const;
    qint64 remove(const QString &path) const;
    /// Runs `work` as somebody who may not read `closed`, but may do everything else here.
    void withoutRights(const QString &closed, const std::function<void()> &work) const;

    /// "release|language" of what the catalogue finds, in its order.
    QStringList search(const QString &text) const;
    QList<CatalogueEntry> entries(const QString &text) const;
    QByteArray contentOf(qint64 entry) const;
    QStringList faults() const;
    /// Another connection to the catalogue, for as long as it lives.
    std::unique_ptr<SQLite::Database> connection() const;

private:
    const Sandbox &m_sandbox;
    QString m_folder;
    QString m_path;
};
