#pragma once
#include "FeedbackSender.h"
#include "KeptReports.h"

#include "FeedbackPresenting.h"
#include "FeedbackReporting.h"

#include <optional>

/// The feedback reporter: shows the form with all data of a report, and posts the report to the address in
/// the setting "FeedbackURL". A report that could not be sent, or was being sent when the program ended, is
/// kept in a file and offered the next time. Main thread only.
class FRFeedbackReporter final : public FeedbackReporting, private FeedbackPresenting::Answering
{
public:
    /// Both must outlive the reporter.
    FRFeedbackReporter(Clock &clock, FeedbackPresenting &window);
    ~FRFeedbackReporter() override;
    FRFeedbackReporter(const FRFeedbackReporter &) = delete;
    FRFeedbackReporter &operator=(const FRFeedbackReporter &) = delete;

    void setDelegate(Delegate *delegate) override;
    void reportFeedback() override;

private:
    void send(const QString &text, bool withLog) override;
    void stopSending() override;

    QList<std::pair<QString, QString>> parameters() const;
    void finish(const Result<void> &outcome);
    Result<QString> keep();

    Clock &m_clock;
    FeedbackPresenting &m_window;
    FeedbackSender m_sender;
    KeptReports m_kept;
    Delegate *m_delegate = nullptr;
    FeedbackForm m_form; // as shown last
    QString m_keptPath;  // of the kept report in the form; empty for a new one
    FeedbackReport m_report;
    HttpClient::Call m_sending;
};
