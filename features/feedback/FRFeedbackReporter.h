#pragma once
#include "FeedbackSender.h"
#include "KeptReports.h"

#include "FeedbackPresenting.h"
#include "FeedbackReporting.h"

#include <optional>

/// The feedback reporter: lets the person write, shows what goes along, and posts it to the address in the
/// setting "FeedbackURL". A report that cannot be sent is kept in a file and offered the next time; so is one
/// that is on its way when the program ends. Main thread only.
class FRFeedbackReporter final : public FeedbackReporting, private FeedbackPresenting::Answering
{
public:
    /// Both outlive the reporter.
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
    FeedbackForm m_form; // as last shown
    QString m_keptPath;  // of the report the form began with; empty for a new one
    FeedbackReport m_report;
    HttpClient::Call m_sending;
};
