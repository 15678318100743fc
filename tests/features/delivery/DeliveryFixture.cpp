#include "DeliveryFixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

DeliveryFixture::DeliveryFixture()
{
    makeFolder("Movies");
    makeFolder("downloads");
    files.movies = FileManager::urlFromFileSystemPath(path("Movies"));
}

DeliveryFixture::~DeliveryFixture()
{
    // The temporary folder itself cannot remove names that are not UTF-8.
    std::error_code error;
    fs::remove_all(home.path().toStdString(), error);
}

QByteArray DeliveryFixture::path(const QByteArray &relative) const
{
    return home.path().toUtf8() + '/' + relative;
}

QUrl DeliveryFixture::writeFile(const QByteArray &relative, const QByteArray &content) const
{
    std::ofstream(path(relative).toStdString(), std::ios::binary) << content.toStdString();
    return FileManager::urlFromFileSystemPath(path(relative));
}

std::optional<QByteArray> DeliveryFixture::contentOf(const QByteArray &relative) const
{
    std::ifstream file(path(relative).toStdString(), std::ios::binary);
    if (!file)
        return std::nullopt;
    return QByteArray::fromStdString(std::string(std::istreambuf_iterator<char>(file), {}));
}

QList<QByteArray> DeliveryFixture::namesIn(const QByteArray &relative) const
{
    QList<QByteArray> names;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(path(relative).toStdString(), error))
        names += QByteArray::fromStdString(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool DeliveryFixture::makeFolder(const QByteArray &relative) const
{
    return fs::create_directories(path(relative).toStdString());
}

Result<bool> DeliveryFixture::send(const QUrl &file, const QString &language, const QString &format)
{
    Subtitle subtitle;
    subtitle.subLanguageID = language;
    subtitle.subFormat = format;
    const Result<CompanionFile> sent = CompanionDelivery(files, workspace).send(file, subtitle, request);
    return sent ? Result<bool>(sent->isReplyTaken) : Result<bool>(sent.error());
}
