#pragma once
#include <QMap>
#include <QString>
#include <memory>

/// The feedback reporter as the program sees it: a window in which a person writes a report, and what sends
/// it. Main thread only.
class FeedbackReporting
{
public:
    /// Adds to the reports.
    class Delegate
    {
    public:
        virtual ~Delegate() = default;
        /// Extra fields of a report, by name.
        virtual QMap<QString, QString> customParametersForFeedbackReport() const = 0;
    };

    virtual ~FeedbackReporting() = default;

    /// The delegate outlives the reporter.
    virtual void setDelegate(Delegate *delegate) = 0;
    /// Shows the window. Returns at once.
    virtual void reportFeedback() = 0;

    /// What the process entry installed, or nothing.
    static std::shared_ptr<FeedbackReporting> sharedReporter();
    static void setSharedReporter(std::shared_ptr<FeedbackReporting> reporter);
};
