#pragma once
#include <model/MetadataService.h>
#include <model/SubtitleService.h>
#include <QStringList>
#include <map>

/// Where a scripted answer is given.
enum class AnswerOn
{
    MainThread,
    WorkerThread
};

/// A subtitle service that answers when and where the test says, and keeps what it was asked. With an
/// `answer` or a `file` it answers by itself, on a later turn of the main queue.
class ScriptedSubtitleService final : public SubtitleService
{
public:
    /// Installs a new one as the shared service.
    static std::shared_ptr<ScriptedSubtitleService> install();

    struct Download
    {
        SubtitlePtr subtitle;
        DownloadCompletion completion;
    };

    QList<QList<Arg>> queries; // in the order asked, cancelled ones included
    int cancellations = 0;
    int downloadCancellations = 0;
    QList<QUrl> hashed;
    std::optional<VideoHash> hash = VideoHash{QStringLiteral("0123456789abcdef"), 1'234'567};
    QString searchString = QStringLiteral("words from name");

    std::function<Result<QueryResult>(const QList<Arg> &)> answer;
    std::optional<Result<QUrl>> file;
    bool ignoresCancelling = false; // true: queries can be answered after they were cancelled

    /// Answers the query at `index` of `queries` and returns when the completion has run.
    void finish(qsizetype index, const Result<QueryResult> &result, AnswerOn thread = AnswerOn::WorkerThread);
    void finishLast(const Result<QueryResult> &result, AnswerOn thread = AnswerOn::WorkerThread);
    qsizetype downloadCount() const { return static_cast<qsizetype>(m_downloads.size()); }
    SubtitlePtr downloaded(qsizetype index) const
    {
        return m_downloads.at(static_cast<std::size_t>(index)).subtitle;
    }
    void finishDownload(qsizetype index, const Result<QUrl> &result,
                        AnswerOn thread = AnswerOn::WorkerThread);
    /// Removes and returns a query's completion; the test calls it on any thread.
    QueryCompletion takeCompletion(qsizetype index);
    DownloadCompletion takeDownloadCompletion(qsizetype index);

    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override
    {
        ++cancellations;
        if (!ignoresCancelling)
            m_open.clear();
    }
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override;

protected:
    std::optional<VideoHash> computeHash(const QUrl &url) override
    {
        hashed += url;
        return hash;
    }
    VideoFileComponents componentsOf(const QUrl &) override
    {
        return {.searchString = searchString, .title = searchString};
    }

private:
    std::map<qsizetype, QueryCompletion> m_open;
    std::vector<Download> m_downloads;
};

/// A metadata service of the same kind. Tests call the completions themselves, unless they give `answer` and
/// `picture`.
class ScriptedMetadataService final : public MetadataService
{
public:
    static std::shared_ptr<ScriptedMetadataService> install();

    QStringList finds;
    std::function<Result<FindResult>(const QString &id)> answer;
    std::function<Result<QImage>(const TmdbItem &item, const QSize &size)> picture;
    QList<QSize> fetchSizes;
    QList<TmdbItem> fetchedItems;
    std::vector<FindCompletion> findCompletions;
    std::vector<ImageCompletion> imageCompletions;

    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;
};

/// Results to answer with, named "Film.1", "Film.2" and so on.
QList<SubtitlePtr> someSubtitles(int count, const QString &format = QStringLiteral("srt"));
Result<QueryResult> answerWith(int count);
Result<QueryResult> answerWith(const QList<SubtitlePtr> &subtitles);
