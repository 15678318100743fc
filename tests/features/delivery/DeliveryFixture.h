#pragma once
#include "FakeWorkspace.h"

#include <base/FileManager.h>
#include <features/delivery/CompanionDelivery.h>
#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

/// A file manager on real files whose Movies folder is the test's own. It notes its calls, and fails those it
/// is told to fail.
class MoviesFileManager final : public FileManager
{
public:
    using FileManager::FileManager;

    std::optional<QUrl> movies;
    std::optional<base::Error> createError;
    std::optional<base::Error> moveError;
    mutable QStringList calls;

    Result<void> moveItemReplacing(const QUrl &source, const QUrl &destination) override
    {
        calls += QStringLiteral("replace");
        return moveError ? Result<void>(*moveError) : FileManager::moveItemReplacing(source, destination);
    }
    Result<void> createDirectory(const QUrl &folder) override
    {
        calls += QStringLiteral("create");
        return createError ? Result<void>(*createError) : FileManager::createDirectory(folder);
    }
    bool fileExists(const QUrl &item) const override
    {
        calls += QStringLiteral("exists");
        return FileManager::fileExists(item);
    }
    std::optional<QUrl> moviesFolder() const override
    {
        calls += QStringLiteral("movies");
        return movies;
    }
};

/// A temporary home with a Movies folder and a folder of downloads, and the delivery at work in it.
struct DeliveryFixture
{
    DeliveryFixture();
    ~DeliveryFixture();

    QByteArray path(const QByteArray &relative) const;
    /// Writes a file below the home and gives its URL; the name may hold any bytes.
    QUrl writeFile(const QByteArray &relative, const QByteArray &content) const;
    /// The content of a file below the home, or nothing when there is none.
    std::optional<QByteArray> contentOf(const QByteArray &relative) const;
    /// The names in a folder below the home, in their order.
    QList<QByteArray> namesIn(const QByteArray &relative) const;
    bool makeFolder(const QByteArray &relative) const;

    /// Whether the platform took the reply.
    Result<bool> send(const QUrl &file, const QString &language, const QString &format);

    QTemporaryDir home;
    MoviesFileManager files;
    FakeWorkspace workspace;
    std::optional<ExternalRequestInfo> request =
        ExternalRequestInfo{QStringLiteral("tessaly3"), QStringLiteral("42"), QStringLiteral("Tessaly")};
};
