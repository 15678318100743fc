#pragma once
#include <QMap>
#include <QString>
#include <memory>
#include <utility>

/// The program's interface to the feedback reporter, which shows a window and sends reports. Main thread
/// only.
class FeedbackReporting
{
public:
    /// Provides additional data of reports.
    class Delegate
    {
    public:
        virtual ~Delegate() = default;
        /// Extra fields of a report, by name.
        virtual QMap<QString, QString> customParametersForFeedbackReport() const = 0;
    };

    virtual ~FeedbackReporting() = default;

    /// The delegate must outlive the reporter.
    virtual void setDelegate(Delegate *delegate) = 0;
    /// Shows the window. Returns at once.
    virtual void reportFeedback() = 0;

    /// The reporter that the process entry installed, or null.
    static std::shared_ptr<FeedbackReporting> sharedReporter() { return s_shared; }
    static void setSharedReporter(std::shared_ptr<FeedbackReporting> reporter)
    {
        s_shared = std::move(reporter);
    }

private:
    static inline std::shared_ptr<FeedbackReporting> s_shared;
};
