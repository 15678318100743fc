#pragma once
#include <model/MetadataService.h>
#include <model/SubtitleService.h>

/// A subtitle service that does what the words of a search (or of the video's name) say, for tests that look
/// at the program from outside:
///   "nothing"  answers with no result
///   "refuse"   fails with "The scripted service refuses."
///   "never"    is not answered
///   a number   is how many results come, 3 without one
/// A download does the same by the words of the search that found it. Answers come on another thread.
class KeywordSubtitleService final : public SubtitleService
{
public:
    /// `folder` takes the downloaded files; beside it "FOLDER.queries" gets a line for each query: its
    /// language and its words.
    explicit KeywordSubtitleService(const QString &folder) : m_folder(folder) {}

    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override {}
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override {}

protected:
    std::optional<VideoHash> computeHash(const QUrl &url) override;
    VideoFileComponents componentsOf(const QUrl &url) override;

private:
    void note(const QString &query) const;

    QString m_folder;
    QString m_hashedName;
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
