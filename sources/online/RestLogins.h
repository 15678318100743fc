#pragma once
#include "RestAccess.h"

#include <base/Error.h>
#include <net/RateQueue.h>

#include <QHash>
#include <optional>

/// What all sessions share about logins: their rate, for the service counts them whoever they are for, and
/// those that it refused. A refused one counts down there, so it is never sent again, whatever else changes
/// in the settings. Main thread only.
class RestLogins final
{
public:
    explicit RestLogins(Clock &clock);

    RateQueue &rate() { return m_rate; }
    void noteRefusal(const RestAccess &access, const Error &error);
    /// Why that account cannot log in, if this is known.
    std::optional<Error> refusal(const RestAccess &access) const;

private:
    RateQueue m_rate;
    QHash<QByteArray, Error> m_refused; // by a hash of address, user name and password
};
