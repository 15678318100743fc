#pragma once
#include <base/Result.h>
#include <QDateTime>
#include <QList>
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

/// Reports that could not be sent, one file each in a folder with mode 0700. Main thread only.
class KeptReports final
{
public:
    struct Kept
    {
        QString path;
        FeedbackReport report;
        QDateTime date; // when it was kept
    };

    explicit KeptReports(const QString &folder = standardFolder());

    /// $XDG_DATA_HOME/Plovendix/feedback.
    static QString standardFolder();

    /// Writes the report to a new file, or to the file it was loaded from, and returns its path.
    Result<QString> keep(const FeedbackReport &report, const QDateTime &date, const QString &over = {}) const;
    /// The oldest report, or none. Invalid files are left in place.
    std::optional<Kept> oldest() const;
    void remove(const QString &path) const;

private:
    QString freePath(const QDateTime &date) const;

    QString m_folder;
};
