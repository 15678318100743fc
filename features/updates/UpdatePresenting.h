#pragma once
#include <QString>
#include <QUrl>

/// A version that is offered. All texts are shown as plain text.
struct UpdateOffer
{
    QString version;
    QString installedVersion;
    QString notes; // several lines; empty when there are none
    QUrl link;     // where to get it
};

/// The window of a check for updates. It shows one state at a time; each replaces the one before. Main thread
/// only.
class UpdatePresenting
{
public:
    /// Receives the person's actions. The window stays open until `dismiss`, unless the person closes it.
    class Answering
    {
    public:
        virtual ~Answering() = default;
        virtual void getUpdate() = 0;
        virtual void skipVersion() = 0;
        /// The window was closed: an offer stays unanswered, and a running check ends.
        virtual void windowClosed() = 0;
    };
    enum class Arrival
    {
        Asked,   // the person waits for it
        ByItself // must not disturb the person
    };

    virtual ~UpdatePresenting() = default;

    /// Null stops the calls. Otherwise the receiver must outlive the window.
    virtual void setAnswering(Answering *answering) = 0;
    virtual void showChecking() = 0;
    virtual void showUpToDate(const QString &installedVersion) = 0;
    virtual void showOffer(const UpdateOffer &offer, Arrival arrival) = 0;
    virtual void showFailure(const QString &sentence) = 0;
    virtual void bringForward() = 0;
    virtual bool isShown() const = 0;
    /// Closes the window without calling `windowClosed`.
    virtual void dismiss() = 0;
};
