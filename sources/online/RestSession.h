#pragma once
#include "RestLogins.h"
#include "RestQuota.h"
#include "RestToken.h"
#include "RestURL.h"

#include <net/RequestQueue.h>
#include <optional>
#include <vector>

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

    /// All sessions share `logins`.
    static std::shared_ptr<RestSession> make(RequestQueue &queue, std::shared_ptr<RestLogins> logins,
                                             const RestAccess &access);
    ~RestSession();

    const RestAccess &access() const { return m_access; }
    bool isLoggedIn() const { return m_token.isValid(m_queue.clock()); }

    /// `Wanted` logs in first if there is an account; without one the request is sent as it is. A failed
    /// login fails requests that want it; others are sent without.
    [[nodiscard]] HttpCall send(const Request &request, Login login, Completion completion);
    /// Logs out at the service, if logged in, and drops the token in any case.
    void logOut(std::function<void()> done);

    /// The remaining downloads of this account.
    const RestQuota &quota() const { return m_quota; }
    void setQuota(const RestQuota &quota) { m_quota = quota; }

private:
    struct RequestState;
    RestSession(RequestQueue &queue, std::shared_ptr<RestLogins> logins, const RestAccess &access);
    void begin(const std::shared_ptr<RequestState> &state);
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
    Clock::Timer m_loginTurn;
    HttpCall m_loginCall;
    HttpCall m_logoutCall;
    Clock::Timer m_logoutLimit;
    bool m_isLoggingIn = false;
    std::vector<std::weak_ptr<RequestState>> m_waiting; // for the login
};
