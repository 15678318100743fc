#pragma once
#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

/// Takes small pictures (every sixteenth row of pixels) of each new large window of an X server whenever the
/// server says that something was drawn in it.
class WindowPictures final
{
public:
    using Clock = std::chrono::steady_clock;

    explicit WindowPictures(xcb_connection_t *connection);

    /// Handles what the server has told, for at most `timeout`. Whether it told anything.
    bool listen(std::chrono::milliseconds timeout);
    /// When the last window was drawn in last; nothing before it was.
    std::optional<Clock::time_point> lastDrawn() const;
    /// The first moment at which the window looked as it does now, but for a caret or a highlight: 98 of 100
    /// pixels. Nothing as long as the window is of one colour.
    std::optional<Clock::time_point> firstPainted() const;

private:
    struct Picture
    {
        Clock::time_point time;
        std::vector<std::uint32_t> pixels;
    };

    void handle(const xcb_generic_event_t &event);
    void watch(const xcb_create_notify_event_t &window);
    void take(Clock::time_point time);
    static bool isAlike(const Picture &one, const Picture &other);

    xcb_connection_t *m_connection;
    std::uint8_t m_damageEvent = 0;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::uint16_t m_width = 0;
    std::uint16_t m_height = 0;
    xcb_damage_damage_t m_damage = XCB_NONE;
    std::vector<Picture> m_pictures;
};
