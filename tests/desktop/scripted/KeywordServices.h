#pragma once
#include <model/MetadataService.h>
#include <model/SubtitleService.h>
#include <QFileSystemWatcher>
#include <QObject>
#include <functional>
#include <vector>

/// A subtitle service that does what the words of a search (or of the video's name) say, for tests that look
/// at the program from outside:
///   "nothing"  answers with no result            "refuse"  fails with "The scripted service refuses."
///   "never"    is not answered                   "later"   is answered once the file "answer" appears in the
///   folder a number   is how many results come, 3 without one
/// A download does the same by the words of the search that found it. Answers come on a thread of their own.
class KeywordSubtitleService final : public QObject, public SubtitleService
{
    Q_OBJECT

public:
    /// `folder` is watched for "answer" and takes the downloaded files; beside it "FOLDER.queries" gets a
    /// line for each query: its language and its words.
    explicit KeywordSubtitleService(const QString &folder);

    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override;
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override { m_held.clear(); }

protected:
    std::optional<VideoHash> computeHash(const QUrl &url) override;
    VideoFileComponents componentsOf(const QUrl &url) override;

private:
    void note(const QString &query) const;
    void answer(const QString &words, std::function<void()> give);
    void answerHeld();

    QString m_folder;
    QFileSystemWatcher m_watcher;
    QString m_hashedName;
    std::vector<std::function<void()>> m_held;
    int m_downloads = 0;
};

/// Knows no film.
class EmptyMetadataService final : public MetadataService
{
public:
    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;
};
