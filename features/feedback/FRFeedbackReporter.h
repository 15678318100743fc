#pragma once
#include "FeedbackReporting.h"
#include "KeptReports.h"

#include <net/HttpClient.h>
#include <QObject>

class FeedbackViewController;
namespace ui
{
class Window;
}

/// The feedback reporter: shows the form with all data of a report, and posts the report to the address in
/// the setting "FeedbackURL". A report that could not be sent, or was being sent when the program ended, is
/// kept in a file and offered the next time. Main thread only.
class FRFeedbackReporter final : public QObject, public FeedbackReporting
{
    Q_OBJECT

public:
    /// The clock must outlive the reporter.
    explicit FRFeedbackReporter(Clock &clock);
    ~FRFeedbackReporter() override;

    void setDelegate(Delegate *delegate) override { m_delegate = delegate; }
    void reportFeedback() override;

private:
    FeedbackViewController &panel();
    void send(const QString &text, bool withLog);
    QList<std::pair<QString, QString>> parameters() const;
    void finish(const Result<void> &outcome);
    Result<QString> keep();

    Clock &m_clock;
    std::unique_ptr<ui::Window> m_window; // made on first use and kept
    std::shared_ptr<FeedbackViewController> m_panel;
    HttpClient m_client;
    KeptReports m_kept;
    Delegate *m_delegate = nullptr;
    FeedbackReport m_form;   // as shown last
    QString m_keptPath;      // of the kept report in the form; empty for a new one
    FeedbackReport m_report; // as sent last
    HttpCall m_sending;
};
