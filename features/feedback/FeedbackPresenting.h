#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>

/// The initial content of a feedback window.
struct FeedbackForm
{
    QString text; // of a report that could not be sent before; empty for a new one
    QString hint; // a sentence about that report
    QList<std::pair<QString, QString>> parameters; // sent with every report, by name
    QStringList log;                               // may be sent with the report
};

/// The window for writing a report. Main thread only.
class FeedbackPresenting
{
public:
    /// Receives the person's actions. The window sends one report at a time.
    class Answering
    {
    public:
        virtual ~Answering() = default;
        virtual void send(const QString &text, bool withLog) = 0;
        /// Cancels a running transfer; the text stays unchanged.
        virtual void stopSending() = 0;
    };

    virtual ~FeedbackPresenting() = default;

    /// Null stops the calls. Otherwise the receiver must outlive the window.
    virtual void setAnswering(Answering *answering) = 0;
    /// Shows the window with the form. Unsent text in the window stays.
    virtual void showForm(const FeedbackForm &form) = 0;
    /// Shows that a report is being sent.
    virtual void showSending() = 0;
    virtual void bringForward() = 0;
    /// Called at the end even if the window is closed; does not open the window.
    virtual void showSent() = 0;
    virtual void showFailure(const QString &sentence) = 0;
};
