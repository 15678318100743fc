#pragma once
#include <QObject>
#include <optional>

/// What the services say of themselves beside their answers, for whoever shows it. Filled by the process
/// entry. Main thread only.
class ServiceStatus final : public QObject
{
    Q_OBJECT

public:
    struct Value
    {
        /// Whether searches go beyond what lies on this machine.
        bool asksTheNetwork = true;
        /// How many downloads the network still grants today, once it has said so.
        std::optional<int> remainingDownloads;

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
