#pragma once
#include <QDateTime>

class UserDefaults;

/// When the program may ask for a donation, from what the settings say: never before the person has had use
/// of the program, never once declined, a month after "later" at the earliest, and not twice a day when the
/// prompt was closed without an answer. Main thread only, like the settings.
///
/// It reads the answers "dontAskMeToDonate" and "askMeToDonateLater", which the prompt writes, and keeps a
/// count and a time of its own.
class DonationRule final
{
public:
    static constexpr int FewestDeliveries = 5;
    static constexpr int DaysAfterLater = 30;
    static constexpr int DaysWithoutAnswer = 1;

    explicit DonationRule(UserDefaults &defaults) : m_defaults(defaults) {}

    bool mayAsk(const QDateTime &now) const;
    /// A subtitle has reached the person. Counts no further than needed.
    void noteDelivery();
    void noteAsked(const QDateTime &now);
    /// A "later" of which nobody knows when it was said counts from now.
    void dateLater(const QDateTime &now);

private:
    bool isDeclined() const;
    bool isPutOff() const;
    qlonglong deliveries() const;
    QDateTime lastAsked() const;

    UserDefaults &m_defaults; // outlives us
};
