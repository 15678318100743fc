#pragma once
#include <base/FileManager.h>
#include <QStringList>

/// The real file manager with a Movies folder that the test names. It keeps the calls that it gets, and fails
/// those that the test says.
class FakeFileManager final : public FileManager
{
public:
    using FileManager::FileManager;

    /// Makes a new one the default manager; an empty path is no Movies folder.
    /// `FileManager::setDefaultManager({})` restores the real one.
    static std::shared_ptr<FakeFileManager> install(const QString &moviesPath = {})
    {
        auto manager = std::make_shared<FakeFileManager>();
        manager->setMovies(moviesPath);
        setDefaultManager(manager);
        return manager;
    }

    void setMovies(const QString &path)
    {
        movies = path.isEmpty() ? std::nullopt : std::optional(QUrl::fromLocalFile(path));
    }

    std::optional<QUrl> movies;
    std::optional<base::Error> createError;
    std::optional<base::Error> moveError; // of both moves
    mutable QStringList calls;            // "move", "replace", "create", "exists", "movies"

    Result<void> moveItem(const QUrl &source, const QUrl &destination) override
    {
        calls += QStringLiteral("move");
        return moveError ? Result<void>(*moveError) : FileManager::moveItem(source, destination);
    }
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
