#pragma once
#include <QObject>
#include <optional>

/// What the services say of themselves beside their answers, for whoever shows it. Filled by the process
/// entry. Main thread only.
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
        ByTheKey,     // it is not accepted
        ByTheLanguage // the network has nothing in it
    };

    struct Value
    {
        /// Whether searches go beyond what lies on this machine.
        bool asksTheNetwork = true;
        /// How many downloads the network still grants today, once it has said so.
        std::optional<int> remainingDownloads;
        /// Said of the last answer that had rows, before anybody is given it.
        Missing missing = Missing::Nothing;

        bool operator==(const Value &) const = default;
    };

    static ServiceStatus &shared();

    const Value &value() const { return m_value; }
    void setValue(const Value &value);

Q_SIGNALS:
    void changed();

private:
    Value m_value;
};
