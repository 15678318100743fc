#pragma once
#include "FeedbackReport.h"

#include <base/Result.h>

#include <QDateTime>

/// Reports that could not be sent, one file each in a folder of their own that only the person can read.
/// Main thread only.
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

    /// Writes the report to a new file, or over the one it was taken from, and gives its path.
    Result<QString> keep(const FeedbackReport &report, const QDateTime &date, const QString &over = {}) const;
    /// The oldest, or nothing. Files that are no reports stay where they are.
    std::optional<Kept> oldest() const;
    void remove(const QString &path) const;

private:
    QString freePath(const QDateTime &date) const;

    QString m_folder;
};
