#pragma once
#include <QObject>
#include <chrono>
#include <optional>
#include <utility>

/// What the services report beside their answers, for display. The process entry fills it. Main thread only.
class ServiceStatus final : public QObject
{
    Q_OBJECT

public:
    /// Why an answer lacks what the network has.
    enum class Missing
    {
        Nothing,
        ByBeingOffline,
        ByAFailure,
        KeyRejected,   // it is not accepted
        ByTheLanguage, // the network has nothing in it
        ByAPause       // the service gets too many requests
    };

    struct Value
    {
        /// Whether searches go beyond what lies on this machine.
        bool asksTheNetwork = true;
        /// How many downloads the network still grants today, once it has said so.
        std::optional<int> remainingDownloads;
        /// What the last answer lacks, said before the answer is given.
        Missing missing = Missing::Nothing;
        /// Why it lacks that, as a sentence, for a pause.
        QString reason = {};
        /// How many more rows there are than that answer has.
        qint64 leftOut = 0;
        /// For how long a search waits, while it does, because the service gets too many requests.
        std::optional<std::chrono::seconds> pause = {};

        bool operator==(const Value &) const = default;
    };

    static ServiceStatus &shared()
    {
        static ServiceStatus instance;
        return instance;
    }

    const Value &value() const { return m_value; }
    void setValue(const Value &value)
    {
        if (std::exchange(m_value, value) != value)
            Q_EMIT changed();
    }

Q_SIGNALS:
    void changed();

private:
    Value m_value;
};
