#pragma once
#include "RestQuota.h"
#include "RestURL.h"

#include <net/RequestQueue.h>
#include <QHash>
#include <vector>

/// A login token and its expiry. A plain value.
class RestToken final
{
public:
    RestToken() = default;
    RestToken(const QByteArray &text, const Clock &clock);

    const QByteArray &text() const { return m_text; }
    bool isValid(const Clock &clock) const;

private:
    QByteArray m_text;
    Clock::Duration m_ends{0};
    QDateTime m_endDate;
};

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
    QHash<QByteArray, base::Error> m_refused; // by the hash of the credentials
};

/// One account at the service: key, login, token and host. Adds them to each request, logs in when needed and
/// again when the token has become invalid, and never repeats refused credentials. Its access never changes:
/// new settings make a new session, and running requests keep theirs. Main thread only.
class RestSession final : public std::enable_shared_from_this<RestSession>
{
public:
    using Completion = std::function<void(const Result<HttpAnswer> &)>;
    enum class Login
    {
        IfThereIsOne,
        Wanted
    };

    struct Request
    {
        HttpRequest::Method method = HttpRequest::Method::Get;
        QString path;
        RestURL::Parameters parameters = {};
        QByteArray json = {};
        bool isAwaited = true;                // by a person
        std::function<void()> onLeaving = {}; // see HttpRequest; also before it is sent again after a login
    };

    /// Sessions are shared objects. All of them share `logins`.
    RestSession(RequestQueue &queue, std::shared_ptr<RestLogins> logins, const RestAccess &access);

    const RestAccess &access() const { return m_access; }
    bool isLoggedIn() const { return m_token.isValid(m_queue.clock()); }

    /// `Wanted` logs in first if there is an account; without one the request is sent as it is. A failed
    /// login fails requests that want it; others are sent without. The completion's Errors have sentences.
    [[nodiscard]] HttpCall send(const Request &request, Login login, Completion completion);
    /// Logs out at the service, if logged in, and drops the token in any case.
    void logOut(std::function<void()> done);

    /// The remaining downloads of this account.
    const RestQuota &quota() const { return m_quota; }
    void setQuota(const RestQuota &quota) { m_quota = quota; }

private:
    struct RequestState;
    void transmit(const std::shared_ptr<RequestState> &state);
    void arrive(const std::shared_ptr<RequestState> &state, const HttpResult &outcome);
    void logIn(const std::shared_ptr<RequestState> &state);
    void sendLogin();
    void finishLogin(const std::optional<base::Error> &error);
    void goOnWithout(const std::shared_ptr<RequestState> &state, const base::Error &error);
    std::optional<base::Error> takeToken(const HttpResult &outcome);
    HttpRequest prepared(const Request &request, const QUrl &base) const;
    void forgetLogin();

    RequestQueue &m_queue;
    const RestAccess m_access;
    RestQuota m_quota;
    RestToken m_token;
    QUrl m_base; // the base named by the login
    std::shared_ptr<RestLogins> m_logins;
    std::shared_ptr<void> m_loginStep; // the timer of the login, or its request
    HttpCall m_logoutCall;
    Clock::Timer m_logoutLimit;
    bool m_isLoggingIn = false;
    std::vector<std::weak_ptr<RequestState>> m_waiting; // for the login
};
