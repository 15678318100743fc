#pragma once
#include <base/FatalFault.h>
#include <base/Result.h>
#include <QImage>
#include <QList>
#include <QSize>
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// Sources of external identifiers.
enum class ExternalSource
{
    imdb = 0
};

/// One film or show of the metadata service; opaque to other code.
struct TmdbItem
{
    QVariant handle;
};

struct FindResult
{
    QList<TmdbItem> movieResults;
    QList<TmdbItem> personResults;
    QList<TmdbItem> tvResults;
};

enum class ImageKind
{
    Poster
};

/// Finds films and their pictures. Called on the main thread; completions are called there, after the call
/// has returned.
class MetadataService
{
public:
    using FindCompletion = std::function<void(Result<FindResult>)>;
    using ImageCompletion = std::function<void(Result<QImage>)>;

    virtual ~MetadataService() = default;

    /// The service that the process entry installed; a fatal fault before that.
    static MetadataService &shared()
    {
        if (!s_shared)
            fatalFault(QStringLiteral("No metadata service was installed"));
        return *s_shared;
    }
    static void setShared(std::shared_ptr<MetadataService> service) { s_shared = std::move(service); }

    /// The language of titles and images as the stored two-letter code; none leaves the choice to the
    /// service.
    std::optional<QString> preferredLanguage;

    virtual void findExternally(const QString &id, ExternalSource source, FindCompletion completion) = 0;
    /// `size` in points; the picture's device pixel ratio says how many pixels a point has.
    virtual void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                            ImageCompletion completion) = 0;

private:
    static inline std::shared_ptr<MetadataService> s_shared;
};
