#include "CatalogueImport.h"

#include <media/MovieHash.h>
#include <media/subtitles/SubtitleFile.h>

#include <QDateTime>
#include <QDir>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype BatchItems = 256;
constexpr qint64 BatchMilliseconds = 1000; // the work that a kill may lose
constexpr qsizetype MaxProblems = 20;

/// The text after the file's name, for the terminal.
QString textOf(ImportRefusal why)
{
    using enum ImportRefusal;
    static const QHash<ImportRefusal, QString> texts{
        {NoSubtitle, u"is no subtitle"_s},
        {TooLarge, u"is too large for a subtitle"_s},
        {NotUnpacked, u"cannot be unpacked"_s},
        {DamagedArchive, u"is damaged or not an archive that can be read"_s},
        {LockedArchive, u"is protected by a password"_s},
        {ArchiveBomb, u"unpacks to more than an archive of its size should"_s},
        {Unreadable, u"cannot be read"_s},
        {Gone, u"is not there"_s},
        {EmptiedFolder, u"holds no subtitle files any more; what came from it stays in the catalogue"_s},
        {ClosedFolder, u"is a folder that cannot be read"_s},
        {OtherKind, u"is neither a subtitle nor an archive"_s},
    };
    return texts.value(why);
}

ImportRefusal refusalOf(SubtitleFile::Failure failure)
{
    if (failure == SubtitleFile::Failure::TooLarge)
        return ImportRefusal::TooLarge;
    const bool isArchive =
        failure == SubtitleFile::Failure::Damaged || failure == SubtitleFile::Failure::UnknownArchive;
    return isArchive ? ImportRefusal::NotUnpacked : ImportRefusal::NoSubtitle;
}

QString stampOf(const QFileInfo &file)
{
    return u"%1:%2"_s.arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
}
} // namespace

CatalogueImport::CatalogueImport(OwnCatalogue &catalogue, const QString &language, const GoOn &goOn)
    : m_catalogue(catalogue), m_language(language), m_goOn(goOn)
{
    m_sinceFlush.start();
}

/// Stores what was read also when the person stops, so that it need not be read again.
Result<bool> CatalogueImport::add(const QString &path)
{
    try {
        const bool isDone = addPath(path);
        flush();
        m_catalogue.checkpoint();
        return isDone;
    } catch (const SQLite::Exception &exception) {
        return m_catalogue.error(exception);
    }
}

bool CatalogueImport::addPath(const QString &path)
{
    const QFileInfo info(path);
    const QString absolute = QDir::cleanPath(info.absoluteFilePath());
    if (!info.exists()) {
        const bool isKnown = m_catalogue.knowsBelow(absolute);
        refuse(absolute, ImportRefusal::Gone,
               isKnown ? u"is not there; what came from it stays in the catalogue"_s : QString());
        return true;
    }
    if (info.isDir())
        return addFolder(absolute);
    if (ArchiveMembers::isArchiveName(absolute) || isSubtitleFileName(info.fileName()))
        return addFile(absolute);
    refuse(info.absoluteFilePath(), ImportRefusal::OtherKind);
    return true;
}

bool CatalogueImport::addFolder(const QString &path)
{
    const qint64 before = m_counts.files;
    const bool isDone = FolderFiles::visit(path, [this](FolderFiles::Kind kind, const QString &found) {
        if (kind == FolderFiles::Kind::Source)
            return addFile(found);
        if (kind == FolderFiles::Kind::Other)
            return true;
        ++m_counts.files;
        m_counts.current = found;
        refuse(found, ImportRefusal::ClosedFolder);
        return goOn();
    });
    // An empty folder that held files may be the mount point of a missing disk.
    if (m_counts.files == before && m_catalogue.knowsBelow(path))
        refuse(path, ImportRefusal::EmptiedFolder);
    return isDone;
}

bool CatalogueImport::addFile(const QString &path)
{
    ++m_counts.files;
    m_counts.current = path;
    const QFileInfo info(path);
    if (!info.exists()) {
        refuse(path, ImportRefusal::Gone);
        return goOn();
    }
    if (ArchiveMembers::isArchiveName(path))
        return addArchive(path);
    const SubtitleName name = subtitleName(path);
    const std::optional<QFileInfo> video = m_videos.videoFor(info.path(), name.videoNames);
    SourceStep step = stepFor(info, name, video);
    if (isKnown(path, step.stamp))
        return goOn();
    if (!info.isFile() || info.size() > ArchiveMembers::MaxMemberBytes) {
        refuse(path, ImportRefusal::TooLarge);
        return keep(step);
    }
    const std::optional<QByteArray> bytes = contentOf(path);
    if (!bytes)
        return goOn();
    read(path, path, 0, *bytes, video, step);
    return keep(step);
}

/// The stamp also depends on the video and on the language for unnamed files.
SourceStep CatalogueImport::stepFor(const QFileInfo &file, const SubtitleName &name,
                                    const std::optional<QFileInfo> &video) const
{
    SourceStep step{file.filePath(), stampOf(file), {}, true};
    if (video)
        step.stamp += u'|' + video->fileName() + u':' + stampOf(*video);
    if (name.language.isEmpty() && !m_language.isEmpty())
        step.stamp += u'|' + m_language;
    return step;
}

std::optional<QByteArray> CatalogueImport::contentOf(const QString &path)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    // A read error gives a partial content, which must not replace the whole one.
    if (file.error() == QFileDevice::NoError)
        return bytes;
    refuse(path, ImportRefusal::Unreadable, file.errorString());
    return std::nullopt;
}

bool CatalogueImport::addArchive(const QString &path)
{
    const QString stamp = stampOf(QFileInfo(path)) + u'|' + m_language;
    if (isKnown(path, stamp))
        return goOn();
    if (QFile file(path); !file.open(QIODevice::ReadOnly)) {
        refuse(path, ImportRefusal::Unreadable, file.errorString());
        return goOn();
    }
    const auto isWanted = [&](qint64 number, const QString &member) {
        const QString name = member.section(u'/', -1);
        if (!isSubtitleFileName(name) && !name.endsWith(".zip"_L1, Qt::CaseInsensitive))
            return false;
        const bool isHere = m_catalogue.hasMember(path, number);
        m_counts.known += isHere ? 1 : 0;
        return !isHere;
    };
    const QString folder = QFileInfo(path).completeBaseName(); // names members without a telling name
    const auto take = [&](qint64 number, const QString &member, const QByteArray &content) {
        SourceStep step{path, stamp, {}, false};
        const QString source = path + u": "_s + member;
        if (content.size() > ArchiveMembers::MaxMemberBytes)
            refuse(source, ImportRefusal::TooLarge);
        else
            read(source, folder + u'/' + member, number, content, std::nullopt, step);
        return keep(step);
    };
    return endArchive(path, stamp, ArchiveMembers::visit(path, {isWanted, take, [this] { return goOn(); }}));
}

/// An archive whose disk failed is read again by the next import. An archive that is damaged itself is
/// skipped until it changes.
bool CatalogueImport::endArchive(const QString &path, const QString &stamp, ArchiveMembers::End end)
{
    using End = ArchiveMembers::End;
    static const QHash<End, ImportRefusal> refusals{{End::Unreadable, ImportRefusal::Unreadable},
                                                    {End::Damaged, ImportRefusal::DamagedArchive},
                                                    {End::Locked, ImportRefusal::LockedArchive},
                                                    {End::TooLarge, ImportRefusal::ArchiveBomb}};
    if (end == End::Stopped)
        return false;
    const bool isGone = end == End::Damaged && !QFileInfo::exists(path);
    if (refusals.contains(end))
        refuse(path, isGone ? ImportRefusal::Gone : refusals[end]);
    return isGone || end == End::Unreadable ? goOn() : keep({path, stamp, {}, true});
}

bool CatalogueImport::isKnown(const QString &path, const QString &stamp)
{
    const bool isWhole = m_catalogue.isWhole(path, stamp);
    m_counts.known += isWhole ? 1 : 0;
    return isWhole;
}

void CatalogueImport::read(const QString &source, const QString &path, qint64 member, const QByteArray &bytes,
                           const std::optional<QFileInfo> &video, SourceStep &step)
{
    const SubtitleName name = subtitleName(path);
    const QString language = name.language.isEmpty() ? m_language : name.language;
    const SubtitleFile file = SubtitleFile::read(bytes, language);
    if (file.failure != SubtitleFile::Failure::None)
        return refuse(source, refusalOf(file.failure));
    ReadSubtitle subtitle{member, filmOfRelease(name.release), {}};
    subtitle.record.release = name.release;
    subtitle.record.language = language.isEmpty() ? u"und"_s : language;
    subtitle.record.format = file.extension;
    subtitle.record.hearingImpaired = name.hearingImpaired;
    subtitle.record.foreignPartsOnly = name.foreignPartsOnly;
    subtitle.record.content = StoredContent::packed(file.original);
    if (video) {
        if (const auto hash = movieHash(QUrl::fromLocalFile(video->absoluteFilePath()))) {
            subtitle.record.videoHash = hash->hash;
            subtitle.record.videoSize = hash->size;
        }
    }
    m_counts.unlabelled += language.isEmpty() ? 1 : 0;
    step.subtitles += subtitle;
}

bool CatalogueImport::keep(SourceStep step)
{
    m_batchItems += std::max<qsizetype>(1, step.subtitles.size());
    m_batch += std::move(step);
    if (m_batchItems >= BatchItems || m_sinceFlush.hasExpired(BatchMilliseconds))
        flush();
    return goOn();
}

void CatalogueImport::flush()
{
    if (m_batch.isEmpty())
        return;
    const OwnCatalogue::Entered entered = m_catalogue.enter(m_batch);
    m_counts.added += entered.added;
    m_counts.known += entered.duplicates;
    m_batch.clear();
    m_batchItems = 0;
    m_sinceFlush.restart();
}

void CatalogueImport::refuse(const QString &path, ImportRefusal why, const QString &detail)
{
    ++m_counts.refused;
    if (!m_counts.firstRefused)
        m_counts.firstRefused = ImportCounts::Refused{path, why};
    if (m_counts.problems.size() < MaxProblems)
        m_counts.problems += path + u' ' + (detail.isEmpty() ? textOf(why) : detail);
}
