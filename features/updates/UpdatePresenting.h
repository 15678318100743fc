#pragma once
#include <QString>
#include <QUrl>

/// A version that the person may get. Every text is plain, whatever it looks like.
struct UpdateOffer
{
    QString version;
    QString installedVersion;
    QString notes; // several lines; empty where the maker wrote none
    QUrl link;     // where to get it
};

/// The window in which a check for updates shows itself. One state at a time; each replaces the one before.
/// Main thread only.
class UpdatePresenting
{
public:
    /// What the person does there. The window stays until it is told to go, except when it was closed.
    class Answering
    {
    public:
        virtual ~Answering() = default;
        virtual void getUpdate() = 0;
        virtual void skipVersion() = 0;
        /// The window was closed: no answer to an offer, and the end of a check under way.
        virtual void windowClosed() = 0;
    };
    enum class Arrival
    {
        Asked,   // the person waits for it
        ByItself // and must not be disturbed in what they type
    };

    virtual ~UpdatePresenting() = default;

    /// Nothing is told after it was set to null. The receiver outlives the window otherwise.
    virtual void setAnswering(Answering *answering) = 0;
    virtual void showChecking() = 0;
    virtual void showUpToDate(const QString &installedVersion) = 0;
    virtual void showOffer(const UpdateOffer &offer, Arrival arrival) = 0;
    virtual void showFailure(const QString &sentence) = 0;
    virtual void bringForward() = 0;
    virtual bool isShown() const = 0;
    /// Takes the window away; nothing is told about that.
    virtual void dismiss() = 0;
};
