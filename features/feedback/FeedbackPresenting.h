#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>

/// What a feedback window starts with.
struct FeedbackForm
{
    QString text; // of a report that could not be sent before; empty for a new one
    QString hint; // a sentence about it
    QList<std::pair<QString, QString>> parameters; // what is sent with every report, by name
    QStringList log;                               // what may be sent with it
};

/// The window in which a person writes to the maker. Main thread only.
class FeedbackPresenting
{
public:
    /// What the person does there. Only one report is sent at a time: the window asks for no second one.
    class Answering
    {
    public:
        virtual ~Answering() = default;
        virtual void send(const QString &text, bool withLog) = 0;
        /// Ends the sending under way; the text is as it was.
        virtual void stopSending() = 0;
    };

    virtual ~FeedbackPresenting() = default;

    /// Nothing is told after it was set to null. The receiver outlives the window otherwise.
    virtual void setAnswering(Answering *answering) = 0;
    /// Shows the window, ready to write. What the person wrote and did not send stays.
    virtual void showForm(const FeedbackForm &form) = 0;
    /// Shows the window while a report is on its way, or says so in the window that is shown.
    virtual void showSending() = 0;
    virtual void bringForward() = 0;
    /// Told of the end whether or not the window is still shown; it never comes up because of it.
    virtual void showSent() = 0;
    virtual void showFailure(const QString &sentence) = 0;
};
