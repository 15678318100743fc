#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

/// What a person sends to the maker: nothing but what the window shows. A plain value.
struct FeedbackReport
{
    QString text;
    QList<std::pair<QString, QString>> parameters; // by name
    QStringList log;                               // empty unless the person wanted it sent

    QByteArray toJson() const;
    /// Nothing for what is no report.
    static std::optional<FeedbackReport> fromJson(const QByteArray &json);
};
