#pragma once
#include <QList>
#include <QString>
#include <functional>
#include <optional>

/// A request of the desktop to open a URL.
struct GetURLEvent
{
    std::optional<QString> directParameter; // the URL's text, as it was sent
};

/// Delivers get-URL events to the program's handler, at once and in order. Events that arrive before there is
/// a handler are kept for it, so that the URL that started the program is not lost. Main thread only.
class URLEventCentre final
{
public:
    using Handler = std::function<void(const GetURLEvent &)>;

    static URLEventCentre &shared();

    /// Sets the handler and passes it the kept events. An empty handler removes the present one.
    void setEventHandler(Handler handler);
    void send(const GetURLEvent &event);

private:
    Handler m_handler;
    QList<GetURLEvent> m_waiting;
};
