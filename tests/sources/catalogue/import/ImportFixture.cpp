#include "ImportFixture.h"

#include <QDir>
#include <QFile>

#include <archive.h>
#include <archive_entry.h>

using namespace Qt::StringLiterals;

namespace
{
/// What a test builds on must be there; without it nothing it says counts.
template <class Value>
const Value &demanded(const Result<Value> &result)
{
    if (!result)
        qFatal("%s", qUtf8Printable(result.error().localizedDescription));
    return result.value();
}
} // namespace

ImportFixture::ImportFixture(const Sandbox &sandbox, const QString &name)
    : m_folder(sandbox.path(name + u"/files"_s)), m_path(sandbox.path(name + u"/catalogue.sqlite"_s))
{
    QDir().mkpath(m_folder);
}

QByteArray ImportFixture::cue(const QString &line)
{
    return "1\n00:00:01,000 --> 00:00:02,000\n" + line.toUtf8() + "\n\n";
}

QString ImportFixture::write(const QString &relative, const QByteArray &content) const
{
    const QString path = m_folder + u'/' + relative;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qUtf8Printable(path));
    return path;
}

QString ImportFixture::writeArchive(const QString &relative, const Members &members,
                                    const QByteArray &password, Sizes sizes) const
{
    const QString path = m_folder + u'/' + relative;
    archive *writer = archive_write_new();
    archive_write_set_format_filter_by_ext(writer, qPrintable(relative));
    if (!password.isEmpty() &&
        (archive_write_set_format_option(writer, "zip", "encryption", "traditional") != ARCHIVE_OK ||
         archive_write_set_passphrase(writer, password.constData()) != ARCHIVE_OK))
        qFatal("%s cannot be locked", qUtf8Printable(path));
    if (archive_write_open_filename(writer, QFile::encodeName(path).constData()) != ARCHIVE_OK)
        qFatal("%s cannot be written", qUtf8Printable(path));
    for (const auto &[name, content] : members) {
        archive_entry *entry = archive_entry_new();
        archive_entry_set_pathname(entry, qUtf8Printable(name));
        if (sizes == Sizes::Stated)
            archive_entry_set_size(entry, content.size());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_perm(entry, 0644);
        archive_write_header(writer, entry);
        archive_write_data(writer, content.constData(), static_cast<std::size_t>(content.size()));
        archive_entry_free(entry);
    }
    archive_write_free(writer);
    return path;
}

ImportCounts ImportFixture::add(const QString &path, const QString &language) const
{
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_path);
    demanded(catalogue);
    CatalogueImport import(catalogue.value(), language, [](const ImportCounts &) { return true; });
    demanded(import.add(path.isEmpty() ? m_folder : path));
    return import.counts();
}

QList<CatalogueEntry> ImportFixture::entries(const QString &text) const
{
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, CatalogueErrors());
    return demanded(demanded(database).entriesForText(text, {}));
}

QStringList ImportFixture::search(const QString &text, const QString &language) const
{
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, CatalogueErrors());
    const Result<QList<CatalogueEntry>> found = demanded(database).entriesForText(text, language);
    QStringList lines;
    for (const CatalogueEntry &entry : demanded(found))
        lines += entry.subtitle.subFileName + u'|' + entry.subtitle.subLanguageID;
    return lines;
}

QByteArray ImportFixture::contentOf(qint64 entry) const
{
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(m_path, CatalogueErrors());
    const Result<std::optional<CatalogueFile>> file = demanded(database).file(entry);
    return demanded(file) ? (*file)->content : QByteArray();
}

QStringList ImportFixture::faults() const
{
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(m_path);
    demanded(catalogue);
    return catalogue.value().faults();
}
