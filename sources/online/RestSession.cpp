#include "RestSession.h"

#include "RestErrors.h"

#include <net/Json.h>
#include <net/Redactor.h>

#include <QJsonDocument>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.rest", QtInfoMsg)

constexpr Clock::Duration LogoutTimeout = 3s;
} // namespace

/// A request until its final answer; it may be sent twice, with a login between.
struct RestSession::RequestState
{
    std::shared_ptr<RestSession> session; // keeps the session alive during the request
    Request request;
    Login login = Login::IfThereIsOne;
    Completion completion;
    QByteArray sentToken; // empty without a login
    bool hasLoggedInAgain = false;
    HttpCall call;
    Clock::Timer refusal;
};

std::shared_ptr<RestSession> RestSession::make(RequestQueue &queue, std::shared_ptr<RestLogins> logins,
                                               const RestAccess &access)
{
    return std::shared_ptr<RestSession>(new RestSession(queue, std::move(logins), access));
}

RestSession::RestSession(RequestQueue &queue, std::shared_ptr<RestLogins> logins, const RestAccess &access)
    : m_queue(queue), m_access(access), m_base(access.base), m_logins(std::move(logins))
{
    for (const QString &secret : {access.apiKey, access.password})
        hideSecret(secret);
}

RestSession::~RestSession() = default;

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
    begin(state);
    return state;
}

void RestSession::begin(const std::shared_ptr<RequestState> &state)
{
    if (state->login == Login::Wanted && m_access.hasAccount() && !isLoggedIn())
        logIn(state);
    else
        transmit(state);
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
    state->call =
        m_queue.send(request, m_access.apiHosts(), [weak = std::weak_ptr(state)](const HttpResult &outcome) {
            if (const auto held = weak.lock())
                held->session->arrive(held, outcome);
        });
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
        state->refusal = m_queue.clock().after(0ms, [weak = std::weak_ptr(state), error = *refused] {
            if (const auto held = weak.lock())
                held->session->goOnWithout(held, error);
        });
        return;
    }
    m_waiting.push_back(state);
    if (m_isLoggingIn)
        return;
    m_isLoggingIn = true;
    m_loginTurn = m_logins->nextLogin([this] { sendLogin(); });
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
    m_loginCall = m_queue.send(prepared(login, m_access.base), m_access.apiHosts(),
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
