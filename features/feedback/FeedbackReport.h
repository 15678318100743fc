#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

/// A report to the maker, with exactly the data that the window shows. A plain value.
struct FeedbackReport
{
    QString text;
    QList<std::pair<QString, QString>> parameters; // by name
    QStringList log;                               // empty unless the person includes it

    QByteArray toJson() const;
    /// None when the JSON is not a report.
    static std::optional<FeedbackReport> fromJson(const QByteArray &json);
};
