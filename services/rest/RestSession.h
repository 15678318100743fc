#pragma once
#include "RestSettings.h"
#include "RestURL.h"
#include "RestToken.h"

#include <services/net/Transport.h>
#include <optional>
#include <vector>

/// Who we are to the service: key, login, token and host. Adds them to each request, logs in once where that
/// is needed and again when the service has forgotten the token, and never repeats credentials that were
/// refused. Main thread only.
class RestSession final
{
public:
    using Completion = Transport::Completion;
    using Call = Transport::Call;
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
    };

    RestSession(Transport &transport, const RestSettings &settings);
    ~RestSession();

    /// Other credentials or another base end the login.
    void setSettings(const RestSettings &settings);
    const RestSettings &settings() const { return m_settings; }
    bool isLoggedIn() const { return m_token.isValid(m_transport.clock()); }

    /// `Wanted` logs in first where there is an account; without one the request goes as it is.
    [[nodiscard]] Call send(const Request &request, Login login, Completion completion);
    /// Tells the service, if logged in, and forgets the token whatever it says.
    void logOut(std::function<void()> done);

private:
    struct Errand;
    void begin(const std::shared_ptr<Errand> &errand);
    void transmit(const std::shared_ptr<Errand> &errand);
    void arrive(const std::shared_ptr<Errand> &errand, const Result<HttpAnswer> &outcome);
    void logIn(const std::shared_ptr<Errand> &errand);
    void restartLogin();
    void scheduleLogin();
    void sendLogin();
    void finishLogin(const Result<HttpAnswer> &outcome);
    std::optional<Error> takeToken(const Result<HttpAnswer> &outcome);
    HttpRequest prepared(const Request &request, const QUrl &base) const;
    void forgetLogin();

    Transport &m_transport;
    RestSettings m_settings;
    RestToken m_token;
    QUrl m_base;
    std::optional<Error> m_refused; // what the present credentials got
    RateLimiter m_loginRate;
    Clock::Timer m_loginWait;
    Call m_loginCall;
    Call m_logoutCall;
    Clock::Timer m_logoutLimit;
    bool m_isLoggingIn = false;
    std::vector<std::weak_ptr<Errand>> m_waiting; // for the login
};
