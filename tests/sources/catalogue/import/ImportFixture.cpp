#include "ImportFixture.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
/// What a test builds on must be there; without it nothing it says counts.
void demand(bool fact, const QString &what)
{
    if (!fact)
        qFatal("%s", qUtf8Printable(what));
}

template <class Value>
Value demanded(Result<Value> result)
{
    demand(result.hasValue(), result ? QString() : result.error().localizedDescription);
    return std::move(result).value();
}

CatalogueDatabase opened(const QString &path)
{
    return demanded(CatalogueDatabase::open(path, CatalogueErrors()));
}
} // namespace

ImportFixture::ImportFixture(const Sandbox &sandbox) : m_sandbox(sandbox)
{
    static int number = 0;
    const QString place = QString::fromLatin1(QTest::currentTestFunction()) + QString::number(++number);
    m_folder = sandbox.path(place + u"/files"_s);
    m_path = sandbox.path(place + u"/catalogue.sqlite"_s);
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
    demand(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), path);
    return path;
}

void ImportFixture::writeEpisodes(int end, int first) const
{
    for (int i = first; i < end; ++i)
        write(u"Harbour.Lights.S01E%1.en.srt"_s.arg(i + 1, 3, 10, QChar(u'0')), cue(QString::number(i)));
}

QString ImportFixture::writeArchive(const QString &relative, const Members &members,
                                    const QByteArray &password, Sizes sizes) const
{
    const QString path = m_folder + u'/' + relative;
    archive *writer = archive_write_new();
    archive_write_set_format_filter_by_ext(writer, qPrintable(relative));
    const bool isLocked =
        password.isEmpty() ||
        (archive_write_set_format_option(writer, "zip", "encryption", "traditional") == ARCHIVE_OK &&
         archive_write_set_passphrase(writer, password.constData()) == ARCHIVE_OK);
    demand(isLocked, path);
    demand(archive_write_open_filename(writer, QFile::encodeName(path).constData()) == ARCHIVE_OK, path);
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
    OwnCatalogue catalogue = demanded(OwnCatalogue::open(m_path));
    CatalogueImport import(catalogue, language, [](const ImportCounts &) { return true; });
    demanded(import.add(path.isEmpty() ? m_folder : path));
    return import.counts();
}

bool ImportFixture::addUntil(const CatalogueImport::GoOn &goOn) const
{
    OwnCatalogue catalogue = demanded(OwnCatalogue::open(m_path));
    CatalogueImport import(catalogue, {}, goOn);
    return !demanded(import.add(m_folder));
}

qint64 ImportFixture::remove(const QString &path) const
{
    return demanded(OwnCatalogue::open(m_path)).removeBelow(path, 1000);
}

void ImportFixture::withoutRights(const QString &closed, const std::function<void()> &work) const
{
    const auto change = [](const QString &file, mode_t rights) {
        demand(::chmod(QFile::encodeName(file).constData(), rights) == 0, file);
    };
    for (const QString &place : {m_sandbox.path({}), QFileInfo(m_path).path(), m_folder})
        change(place, 0777);
    change(closed, 0);
    {
        const UnprivilegedUser user;
        work();
    }
    change(closed, 0755);
}

QStringList ImportFixture::search(const QString &text) const
{
    QStringList lines;
    for (const CatalogueEntry &entry : entries(text))
        lines += entry.subtitle.subFileName + u'|' + entry.subtitle.subLanguageID;
    return lines;
}

QList<CatalogueEntry> ImportFixture::entries(const QString &text) const
{
    return demanded(opened(m_path).entriesForText(text, {}));
}

QByteArray ImportFixture::contentOf(qint64 entry) const
{
    return demanded(opened(m_path).file(entry)).value_or(CatalogueFile()).content;
}

QStringList ImportFixture::faults() const
{
    return demanded(OwnCatalogue::open(m_path)).faults();
}

std::unique_ptr<SQLite::Database> ImportFixture::connection() const
{
    return std::make_unique<SQLite::Database>(QFile::encodeName(m_path).toStdString(),
                                              SQLite::OPEN_READWRITE);
}
