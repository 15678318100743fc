#include "URLEventCentre.h"

#include <utility>

namespace
{
constexpr qsizetype MostWaiting = 16; // the latest ones; older requests are dropped
} // namespace

URLEventCentre &URLEventCentre::shared()
{
    static URLEventCentre centre;
    return centre;
}

void URLEventCentre::setEventHandler(Handler handler)
{
    m_handler = std::move(handler);
    if (!m_handler)
        return;
    const QList<GetURLEvent> waiting = std::exchange(m_waiting, {});
    for (const GetURLEvent &event : waiting)
        send(event);
}

void URLEventCentre::send(const GetURLEvent &event)
{
    if (m_handler) {
        // Copied, because the handler may be replaced while it runs.
        const Handler handler = m_handler;
        return handler(event);
    }
    if (m_waiting.size() == MostWaiting)
        m_waiting.removeFirst();
    m_waiting.append(event);
}
