#pragma once
#include <sources/catalogue/CatalogueDatabase.h>
#include <sources/catalogue/import/CatalogueImport.h>
#include <tests/support/Sandbox.h>

/// A catalogue in a sandbox and the files that are entered into it.
class ImportFixture final
{
public:
    using Members = QList<std::pair<QString, QByteArray>>;

    explicit ImportFixture(const Sandbox &sandbox, const QString &name);

    QString path() const { return m_path; }
    QString folder() const { return m_folder; }

    /// A whole subtitle whose one line says `line`.
    static QByteArray cue(const QString &line);
    QString write(const QString &relative, const QByteArray &content) const;
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

    /// "release|language" of what the catalogue finds, in its order.
    QStringList search(const QString &text, const QString &language = {}) const;
    QList<CatalogueEntry> entries(const QString &text) const;
    QByteArray contentOf(qint64 entry) const;
    QStringList faults() const;

private:
    QString m_folder;
    QString m_path;
};
