#pragma once
#include "RestAccess.h"

#include <base/Result.h>
#include <net/Clock.h>

#include <QHash>
#include <optional>

/// The login state that all sessions share: the rate limit, which the service applies across accounts, and
/// the refused credentials. Refused credentials are never sent again, because the service counts failed
/// attempts. Main thread only.
class RestLogins final
{
public:
    explicit RestLogins(Clock &clock) : m_clock(clock) {}

    /// Calls `logIn` on a later turn, a second after the last login at the earliest.
    [[nodiscard]] Clock::Timer nextLogin(std::function<void()> logIn);
    void noteRefusal(const RestAccess &access, const base::Error &error);
    /// Why that account cannot log in, if known.
    std::optional<base::Error> refusal(const RestAccess &access) const;

private:
    Clock &m_clock;
    Clock::Duration m_nextLogin{0};
    QHash<QByteArray, base::Error> m_refused; // by a hash of address, user name and password
};
