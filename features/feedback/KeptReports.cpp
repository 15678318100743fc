#include "KeptReports.h"

#include <base/FileWriting.h>
#include <base/LocalizedString.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxBytes = 1024LL * 1024;

std::optional<FeedbackReport> reportIn(const QFileInfo &entry)
{
    QFile file(entry.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return FeedbackReport::fromJson(file.read(MaxBytes)); // a longer one is no JSON then
}

base::Error notKept(const QString &folder, const base::Error &reason)
{
    const QString sentence = String::localize(u"The report could not be kept in “%@” either."_s);
    return {u"Feedback"_s, 0, String::fill(sentence, {folder}) + u' ' + reason.localizedDescription,
            reason.detail};
}
} // namespace

QByteArray FeedbackReport::toJson() const
{
    QJsonObject named;
    for (const auto &[name, value] : parameters)
        named.insert(name, value);
    QJsonObject report{{u"text"_s, text}, {u"parameters"_s, named}};
    if (!log.isEmpty())
        report.insert(u"log"_s, QJsonArray::fromStringList(log));
    return QJsonDocument(report).toJson(QJsonDocument::Compact);
}

std::optional<FeedbackReport> FeedbackReport::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    FeedbackReport report;
    report.text = object.value("text"_L1).toString();
    if (report.text.isEmpty())
        return std::nullopt;
    const QJsonObject named = object.value("parameters"_L1).toObject();
    for (auto entry = named.begin(); entry != named.end(); ++entry)
        report.parameters.emplaceBack(entry.key(), entry.value().toString());
    const QJsonArray lines = object.value("log"_L1).toArray();
    for (const QJsonValue line : lines)
        report.log += line.toString();
    return report;
}

KeptReports::KeptReports(const QString &folder) : m_folder(folder) {}

QString KeptReports::standardFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Plovendix/feedback"_s;
}

QString KeptReports::freePath(const QDateTime &date) const
{
    const QString stem = m_folder + u"/report-"_s + date.toUTC().toString(u"yyyyMMdd-HHmmss"_s);
    QString path = stem + u".json"_s;
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = u"%1-%2.json"_s.arg(stem).arg(number);
    return path;
}

Result<QString> KeptReports::keep(const FeedbackReport &report, const QDateTime &date,
                                  const QString &over) const
{
    const QString path = over.isEmpty() ? freePath(date) : over;
    const Result<void> written = writeFile(path, report.toJson(), FileAccess::OwnerOnly);
    return written ? Result<QString>(path) : notKept(m_folder, written.error());
}

std::optional<KeptReports::Kept> KeptReports::oldest() const
{
    const auto entries =
        QDir(m_folder).entryInfoList({u"report-*.json"_s}, QDir::Files | QDir::NoSymLinks, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (const auto report = reportIn(entry))
            return Kept{entry.filePath(), *report, entry.lastModified()};
    }
    return std::nullopt;
}

void KeptReports::remove(const QString &path) const
{
    QFile::remove(path);
}
