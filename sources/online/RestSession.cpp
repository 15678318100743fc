#include "RestSession.h"

#include "RestErrors.h"

#include <net/Json.h>
#include <net/Redactor.h>
#include <net/WhileAlive.h>

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <QJsonDocument>
#include <QLoggingCategory>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.rest", QtInfoMsg)

constexpr Clock::Duration LogoutTimeout = 3s;
constexpr Clock::Duration LoginPause = 1s;
constexpr Clock::Duration LifeUnlessSaid = 12h;
constexpr Clock::Duration MaxLife = 24h;
constexpr Clock::Duration MinLife = 1min;
constexpr Clock::Duration ExpiryMargin = 10min;

/// The lifetime in the token's payload; the default when it has none that is plausible at this machine's
/// date.
Clock::Duration lifeOf(const QByteArray &token, const QDateTime &date)
{
    const QByteArray claims =
        QByteArray::fromBase64(token.split('.').value(1), QByteArray::Base64UrlEncoding);
    const auto object = Json::object(claims);
    const std::optional<qint64> end = object ? Json::integer(*object, u"exp"_s) : std::nullopt;
    if (!end)
        return LifeUnlessSaid;
    const Clock::Duration life =
        std::chrono::seconds(std::clamp<qint64>(*end, 0, 1LL << 40) - date.toSecsSinceEpoch());
    // A wrong system date would make every token look expired or endless; the server then reports the expiry.
    if (life <= Clock::Duration::zero() || life > MaxLife + ExpiryMargin)
        return LifeUnlessSaid;
    return std::max(life - ExpiryMargin, MinLife);
}

/// Tells credentials apart without keeping them. The application key does not affect the password check.
QByteArray credentials(const RestAccess &access)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << access.base << access.userName << access.password;
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}
} // namespace

RestToken::RestToken(const QByteArray &text, const Clock &clock) : m_text(text)
{
    const Clock::Duration life = lifeOf(text, clock.date());
    m_ends = clock.now() + life;
    m_endDate = clock.date().addDuration(life);
}

bool RestToken::isValid(const Clock &clock) const
{
    // The date also advances during a suspend, unlike the monotonic clock.
    return !m_text.isEmpty() && clock.now() < m_ends && clock.date() < m_endDate;
}

Clock::Timer RestLogins::nextLogin(std::function<void()> logIn)
{
    const Clock::Duration now = m_clock.now();
    const Clock::Duration time = std::max(now, m_nextLogin);
    m_nextLogin = time + LoginPause;
    // The timer may fire late, and the pause begins with the sending.
    return m_clock.after(time - now, [this, logIn = std::move(logIn)] {
        m_nextLogin = std::max(m_nextLogin, m_clock.now() + LoginPause);
        logIn();
    });
}

void RestLogins::noteRefusal(const RestAccess &access, const base::Error &error)
{
    m_refused.insert(credentials(access), error);
}

std::optional<base::Error> RestLogins::refusal(const RestAccess &access) const
{
    const auto refused = m_refused.constFind(credentials(access));
    return refused == m_refused.constEnd() ? std::nullopt : std::optional(*refused);
}

/// A request until its final answer; it may be sent twice, with a login between.
struct RestSession::RequestState
{
    std::shared_ptr<RestSession> session; // keeps the session alive during the request
    Request request;
    Login login = Login::IfThereIsOne;
    Completion completion;
    QByteArray sentToken; // empty without a login
    bool hasLoggedInAgain = false;
    std::shared_ptr<void> step; // the running request, or the timer of a refusal
};

RestSession::RestSession(RequestQueue &queue, std::shared_ptr<RestLogins> logins, const RestAccess &access)
    : m_queue(queue), m_access(access), m_base(access.base), m_logins(std::move(logins))
{
    for (const QString &secret : {access.apiKey, access.password})
        hideSecret(secret);
}

void RestSession::forgetLogin()
{
    m_token = {};
    m_base = m_access.base;
}

HttpCall RestSession::send(const Request &request, Login login, Completion completion)
{
    auto state = std::make_shared<RequestState>();
    state->session = shared_from_this();
    state->request = request;
    state->login = login;
    state->completion = std::move(completion);
    if (login == Login::Wanted && m_access.hasAccount() && !isLoggedIn())
        logIn(state);
    else
        transmit(state);
    return state;
}

HttpRequest RestSession::prepared(const Request &request, const QUrl &base) const
{
    HttpRequest result;
    result.method = request.method;
    result.url = RestURL::address(base, request.path, request.parameters);
    result.isAwaited = request.isAwaited;
    result.onLeaving = request.onLeaving;
    result.setHeader("Api-Key", m_access.apiKey.toUtf8());
    result.setHeader("Accept", "*/*");
    if (!request.json.isEmpty()) {
        result.setHeader("Content-Type", "application/json");
        result.body = request.json;
    }
    return result;
}

void RestSession::transmit(const std::shared_ptr<RequestState> &state)
{
    const bool loggedIn = isLoggedIn();
    HttpRequest request = prepared(state->request, loggedIn ? m_base : m_access.base);
    if (loggedIn)
        request.setHeader("Authorization", "Bearer " + m_token.text());
    state->sentToken = loggedIn ? m_token.text() : QByteArray();
    const auto take = [](const auto &held, const HttpResult &outcome) {
        held->session->arrive(held, outcome);
    };
    state->step = m_queue.send(request, m_access.apiHosts(), whileAlive(state, take));
}

void RestSession::arrive(const std::shared_ptr<RequestState> &state, const HttpResult &outcome)
{
    const bool forgotten = outcome && !state->sentToken.isEmpty() && RestErrors::isTokenRefused(*outcome);
    if (!forgotten || state->hasLoggedInAgain) {
        state->completion(outcome ? Result<HttpAnswer>(*outcome)
                                  : serviceError(outcome.error(), ServiceName::Subtitles));
        return;
    }
    qCInfo(log) << "the service has forgotten the login";
    state->hasLoggedInAgain = true;
    // Another request may have logged in again since.
    if (state->sentToken == m_token.text())
        forgetLogin();
    if (m_access.hasAccount() && !isLoggedIn())
        logIn(state);
    else
        transmit(state);
}

void RestSession::logIn(const std::shared_ptr<RequestState> &state)
{
    if (const auto refused = m_logins->refusal(m_access)) {
        const auto refuse = [error = *refused](const auto &held) { held->session->goOnWithout(held, error); };
        state->step = m_queue.clock().after(0ms, whileAlive(state, refuse));
        return;
    }
    m_waiting.push_back(state);
    if (m_isLoggingIn)
        return;
    m_isLoggingIn = true;
    m_loginStep = m_logins->nextLogin([this] { sendLogin(); });
}

void RestSession::goOnWithout(const std::shared_ptr<RequestState> &state, const base::Error &error)
{
    if (state->login == Login::Wanted)
        state->completion(error);
    else
        transmit(state);
}

void RestSession::sendLogin()
{
    // Another session may have been refused meanwhile.
    if (const auto refused = m_logins->refusal(m_access)) {
        finishLogin(refused);
        return;
    }
    const QJsonObject body{{u"username"_s, m_access.userName}, {u"password"_s, m_access.password}};
    const Request login{
        HttpRequest::Method::Post, u"/login"_s, {}, QJsonDocument(body).toJson(QJsonDocument::Compact)};
    m_loginStep = m_queue.send(prepared(login, m_access.base), m_access.apiHosts(),
                               [this](const HttpResult &outcome) { finishLogin(takeToken(outcome)); });
}

void RestSession::finishLogin(const std::optional<base::Error> &error)
{
    const std::shared_ptr<RestSession> self = shared_from_this(); // a completion may release this object
    m_isLoggingIn = false;
    const std::vector<std::weak_ptr<RequestState>> waiting = std::exchange(m_waiting, {});
    for (const auto &weak : waiting) {
        const auto state = weak.lock();
        if (!state)
            continue;
        if (error)
            goOnWithout(state, *error);
        else
            transmit(state);
    }
}

std::optional<base::Error> RestSession::takeToken(const HttpResult &outcome)
{
    if (!outcome)
        return serviceError(outcome.error(), ServiceName::Subtitles);
    if (outcome->status == 400 || outcome->status == 401) {
        const QString detail =
            u"login, status %1: %2"_s.arg(outcome->status).arg(RestErrors::message(*outcome));
        const base::Error refused =
            serviceError(ServiceFailure::LoginRefused, ServiceName::Subtitles, detail);
        m_logins->noteRefusal(m_access, refused);
        return refused;
    }
    if (!outcome->isSuccess())
        return RestErrors::error(*outcome);
    const std::optional<QJsonObject> answer = Json::object(outcome->body);
    const QByteArray text = answer ? Json::text(*answer, u"token"_s).toLatin1() : QByteArray();
    const bool hasLineBreak = text.contains('\n') || text.contains('\r');
    if (text.isEmpty() || hasLineBreak)
        return serviceError(ServiceFailure::BadAnswer, ServiceName::Subtitles, u"a login without a token"_s);
    hideSecret(QString::fromLatin1(text));
    m_token = RestToken(text, m_queue.clock());
    m_base = m_access.baseAt(Json::text(*answer, u"base_url"_s));
    m_quota.takeUser((*answer)[u"user"_s].toObject());
    return std::nullopt;
}

void RestSession::logOut(std::function<void()> done)
{
    if (!isLoggedIn()) {
        done();
        return;
    }
    HttpRequest request = prepared({HttpRequest::Method::Delete, u"/logout"_s}, m_base);
    request.setHeader("Authorization", "Bearer " + m_token.text());
    forgetLogin();
    const auto finish = [this, done = std::move(done)] {
        m_logoutLimit.reset();
        const HttpCall ended = std::exchange(m_logoutCall, {});
        done();
    };
    // The wait for a slot of the rate may be too long for the end of the program.
    m_logoutLimit = m_queue.clock().after(LogoutTimeout, finish);
    m_logoutCall = m_queue.send(request, m_access.apiHosts(), [finish](const HttpResult &) { finish(); });
}
