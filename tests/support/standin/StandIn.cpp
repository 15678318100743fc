#include "StandIn.h"

#include "Deformation.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace
{
StandInTime machineTime()
{
    QElapsedTimer timer;
    timer.start();
    return {[timer] { return timer.elapsed(); }, [] { return QDateTime::currentDateTimeUtc(); }};
}

bool carriesKey(const ReceivedRequest &request)
{
    return !request.header("Api-Key").isEmpty() || !request.header("Authorization").isEmpty() ||
           request.query().contains("api_key");
}
} // namespace

StandIn::StandIn() : StandIn(machineTime()) {}

StandIn::StandIn(const StandInTime &time)
    : m_subtitles(m_behaviours, time),
      m_films(m_behaviours),
      m_main([this](const ReceivedRequest &request) {
          return request.target.startsWith("/3/") ? m_films.answer(request) : m_subtitles.answer(request);
      }),
      m_vip([this](const ReceivedRequest &request) { return m_subtitles.answer(request); }),
      m_links([this](const ReceivedRequest &request) { return m_subtitles.link(request); }),
      m_images([this](const ReceivedRequest &request) { return m_films.image(request); }),
      m_foreign([](const ReceivedRequest &) { return pageAnswer(200, "Abroad"); })
{
    m_subtitles.setAddresses({m_vip.port(), "127.0.0.1:" + QByteArray::number(m_vip.port()), m_links.url(),
                              m_foreign.url(u"/api/v1/subtitles"_s)});
    m_films.setImageBase(m_images.url());
}

void StandIn::select(const QStringList &behaviours)
{
    for (const QString &behaviour : behaviours)
        select(behaviour);
}

QList<ReceivedRequest> StandIn::requests(const QByteArray &path) const
{
    QList<ReceivedRequest> found;
    for (const ReceivedRequest &request : m_main.requests()) {
        if (request.path().startsWith(path))
            found += request;
    }
    return found;
}

void StandIn::stop()
{
    for (LoopbackServer *server : {&m_main, &m_vip, &m_links, &m_images, &m_foreign})
        server->stop();
}

void StandIn::start()
{
    for (LoopbackServer *server : {&m_main, &m_vip, &m_links, &m_images, &m_foreign})
        server->start();
}

void StandIn::drip()
{
    for (LoopbackServer *server : {&m_main, &m_vip, &m_links, &m_images})
        server->drip();
}

void StandIn::setDripInterval(int milliseconds)
{
    for (LoopbackServer *server : {&m_main, &m_vip, &m_links, &m_images})
        server->setDripInterval(milliseconds);
}

QStringList StandIn::complaints() const
{
    QStringList found;
    if (m_subtitles.redirects() > 0)
        found += u"%1 addresses were not canonical"_s.arg(m_subtitles.redirects());
    if (m_subtitles.rate().mostInOneSecond() > 5)
        found += u"%1 requests in one second"_s.arg(m_subtitles.rate().mostInOneSecond());
    for (const LoopbackServer *server : {&m_main, &m_vip, &m_links, &m_images, &m_foreign}) {
        for (const ReceivedRequest &request : server->requests()) {
            if (!request.header("User-Agent").startsWith("Plovendix v") || request.header("Accept").isEmpty())
                found += u"%1 came without its headers"_s.arg(QString::fromLatin1(request.target));
            const bool keyless = server != &m_main && server != &m_vip;
            if (keyless && carriesKey(request))
                found += u"%1 carried a key"_s.arg(QString::fromLatin1(request.target));
        }
    }
    QSet<QByteArray> refused;
    for (const ReceivedRequest &request : m_main.requests()) {
        if (request.path() != "/api/v1/login" || request.body.contains(SubtitleStandIn::Password.toUtf8()))
            continue;
        if (refused.contains(request.body))
            found += u"a refused login was repeated"_s;
        refused += request.body;
    }
    return found;
}
