#include "WindowPictures.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace
{
constexpr std::uint16_t SmallestSide = 400; // toolkits make helper windows of a few pixels
constexpr int RowStep = 16;
constexpr std::uint32_t ColourBits = 0x00ffffff;

template <class Type>
std::unique_ptr<Type, decltype(&std::free)> held(Type *reply)
{
    return {reply, &std::free};
}
} // namespace

WindowPictures::WindowPictures(xcb_connection_t *connection) : m_connection(connection)
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(connection, &xcb_damage_id);
    if (!extension || !extension->present) {
        std::fprintf(stderr, "the X server does not tell of what is drawn\n");
        std::exit(1);
    }
    m_damageEvent = std::uint8_t(extension->first_event + XCB_DAMAGE_NOTIFY);
    held(xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, screen->root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);
}

bool WindowPictures::listen(std::chrono::milliseconds timeout)
{
    auto event = held(xcb_poll_for_event(m_connection));
    if (!event) {
        pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        ::poll(&descriptor, 1, int(timeout.count()));
        event = held(xcb_poll_for_event(m_connection));
    }
    const bool told = event != nullptr;
    for (; event; event = held(xcb_poll_for_event(m_connection)))
        handle(*event);
    return told;
}

std::optional<WindowPictures::Clock::time_point> WindowPictures::lastDrawn() const
{
    return m_pictures.empty() ? std::nullopt : std::optional(m_pictures.back().time);
}

std::optional<WindowPictures::Clock::time_point> WindowPictures::firstPainted() const
{
    if (m_pictures.empty())
        return std::nullopt;
    const Picture &last = m_pictures.back();
    const bool isPlain = std::all_of(last.pixels.begin(), last.pixels.end(),
                                     [&last](std::uint32_t pixel) { return pixel == last.pixels.front(); });
    if (isPlain)
        return std::nullopt;
    // From the end, so that a window that looked alike by chance before it was cleared does not count.
    auto first = m_pictures.rbegin();
    while (std::next(first) != m_pictures.rend() && isAlike(*std::next(first), last))
        ++first;
    return first->time;
}

void WindowPictures::handle(const xcb_generic_event_t &event)
{
    const auto type = std::uint8_t(event.response_type & 0x7f);
    if (type == XCB_CREATE_NOTIFY)
        return watch(reinterpret_cast<const xcb_create_notify_event_t &>(event));
    if (type != m_damageEvent)
        return;
    const auto time = Clock::now();
    xcb_damage_subtract(m_connection, m_damage, XCB_NONE, XCB_NONE);
    take(time);
}

void WindowPictures::watch(const xcb_create_notify_event_t &window)
{
    // The window manager's frames are none of the program's.
    if (window.override_redirect || window.width < SmallestSide || window.height < SmallestSide)
        return;
    m_window = window.window;
    m_width = window.width;
    m_height = window.height;
    m_pictures.clear();
    m_damage = xcb_generate_id(m_connection);
    xcb_damage_create(m_connection, m_damage, m_window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_flush(m_connection);
}

void WindowPictures::take(Clock::time_point time)
{
    std::vector<xcb_get_image_cookie_t> rows;
    for (int row = 0; row < m_height; row += RowStep)
        rows.push_back(xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, 0, std::int16_t(row),
                                     m_width, 1, ~0U));
    Picture picture{time, {}};
    for (const xcb_get_image_cookie_t row : rows) {
        xcb_generic_error_t *error = nullptr;
        const auto image = held(xcb_get_image_reply(m_connection, row, &error));
        const auto failure = held(error); // not on screen yet
        if (!image || xcb_get_image_data_length(image.get()) < m_width * 4)
            continue;
        const std::size_t begin = picture.pixels.size();
        picture.pixels.resize(begin + m_width);
        std::memcpy(picture.pixels.data() + begin, xcb_get_image_data(image.get()), std::size_t(m_width) * 4);
    }
    if (picture.pixels.size() != rows.size() * m_width)
        return;
    for (std::uint32_t &pixel : picture.pixels)
        pixel &= ColourBits;
    m_pictures.push_back(std::move(picture));
}

bool WindowPictures::isAlike(const Picture &one, const Picture &other)
{
    std::size_t different = 0;
    for (std::size_t index = 0; index < one.pixels.size(); ++index)
        different += one.pixels[index] != other.pixels[index] ? 1 : 0;
    return different * 50 < one.pixels.size();
}
