#pragma once
#include <QList>
#include <QString>
#include <functional>
#include <optional>

/// The desktop's wish that the program opens a URL.
struct GetURLEvent
{
    std::optional<QString> directParameter; // the URL's text, as it was sent
};

/// Brings get-URL events to the one handler of the program, at once and in their order. What arrives before
/// there is a handler waits for it, so that the URL that started the program is not lost. Main thread only.
class URLEventCentre final
{
public:
    using Handler = std::function<void(const GetURLEvent &)>;

    static URLEventCentre &shared();

    /// Makes `handler` the one that is called, first with the events that wait. Empty: none from now on.
    void setEventHandler(Handler handler);
    void send(const GetURLEvent &event);

private:
    Handler m_handler;
    QList<GetURLEvent> m_waiting;
};
