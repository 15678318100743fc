#pragma once
#include <QDateTime>

class UserDefaults;

/// Decides by the settings whether the program may ask for a donation: not before the program was useful,
/// never after it was declined, at the earliest a month after "later", and not twice a day when the prompt
/// was closed without an answer. Main thread only, like the settings.
///
/// Reads the answers "dontAskMeToDonate" and "askMeToDonateLater", which the prompt writes, and stores a
/// count and a time.
class DonationRule final
{
public:
    static constexpr int FewestDeliveries = 5;
    static constexpr int DaysAfterLater = 30;
    static constexpr int DaysWithoutAnswer = 1;

    explicit DonationRule(UserDefaults &defaults) : m_defaults(defaults) {}

    bool mayAsk(const QDateTime &now) const;
    /// Counts a delivered subtitle, up to the needed number.
    void noteDelivery();
    void noteAsked(const QDateTime &now);
    /// Dates an undated "later" from now.
    void dateLater(const QDateTime &now);

private:
    bool isDeclined() const;
    bool isPutOff() const;
    qlonglong deliveries() const;
    QDateTime lastAsked() const;

    UserDefaults &m_defaults; // must outlive this object
};
