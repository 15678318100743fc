#include "FeedbackReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

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
