#include "X11Hints.h"
#include "WindowSystem.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

namespace
{
// Bits of _GTK_EDGE_CONSTRAINTS: top, right, bottom, left are tiled; the others say which edges can be
// resized.
constexpr quint32 TiledEdges = 0x1 | 0x4 | 0x10 | 0x40;
constexpr quint32 MaxAtomsRead = 1024;

template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

template <class Reply>
ReplyPointer<Reply> owned(Reply *reply)
{
    return {reply, &std::free};
}

std::vector<quint32> readProperty(xcb_connection_t *connection, quint32 window, quint32 property,
                                  quint32 type)
{
    const auto cookie = xcb_get_property(connection, 0, window, property, type, 0, MaxAtomsRead);
    const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

int defaultScreen()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host); // NOLINT(cppcoreguidelines-no-malloc): the library's to give, ours to free
    return screen;
}

bool contains(const std::vector<quint32> &values, quint32 value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

QRect inDevicePixels(const QRect &points, qreal ratio)
{
    const auto scaled = [ratio](int value) { return static_cast<int>(std::lround(value * ratio)); };
    return QRect(QPoint(scaled(points.left()), scaled(points.top())),
                 QPoint(scaled(points.right() + 1) - 1, scaled(points.bottom() + 1) - 1));
}

xcb_rectangle_t rectangle(const QRect &rect)
{
    return {static_cast<qint16>(rect.x()), static_cast<qint16>(rect.y()), static_cast<quint16>(rect.width()),
            static_cast<quint16>(rect.height())};
}
} // namespace

std::unique_ptr<X11Hints> X11Hints::ofApplication()
{
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection())
        return {};
    return std::unique_ptr<X11Hints>(new X11Hints(x11->connection()));
}

X11Hints::X11Hints(xcb_connection_t *connection) : m_connection(connection)
{
    // The default screen's number is part of the compositor's selection. Qt's xcb connection belongs to the
    // screen that DISPLAY names.
    const int screenNumber = defaultScreen();
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_root = screens.data->root;

    const std::array<std::string, 12> names{"_NET_WM_CM_S" + std::to_string(screenNumber),
                                            "_GTK_FRAME_EXTENTS",
                                            "_NET_WM_OPAQUE_REGION",
                                            "_NET_WM_STATE",
                                            "_NET_WM_STATE_MAXIMIZED_HORZ",
                                            "_NET_WM_STATE_MAXIMIZED_VERT",
                                            "_GTK_EDGE_CONSTRAINTS",
                                            "_NET_SUPPORTED",
                                            "_GTK_SHOW_WINDOW_MENU",
                                            "_NET_ACTIVE_WINDOW",
                                            "_NET_STARTUP_INFO_BEGIN",
                                            "_NET_STARTUP_INFO"};
    const std::array<quint32 *, 12> atoms{&m_atoms.compositorSelection,   &m_atoms.frameExtents,
                                          &m_atoms.opaqueRegion,          &m_atoms.windowState,
                                          &m_atoms.maximizedHorizontally, &m_atoms.maximizedVertically,
                                          &m_atoms.edgeConstraints,       &m_atoms.supported,
                                          &m_atoms.showWindowMenu,        &m_atoms.activeWindow,
                                          &m_atoms.startupBegin,          &m_atoms.startup};
    std::array<xcb_intern_atom_cookie_t, names.size()> cookies{};
    for (size_t i = 0; i < names.size(); ++i)
        cookies[i] = xcb_intern_atom(connection, 0, static_cast<quint16>(names[i].size()), names[i].c_str());
    for (size_t i = 0; i < names.size(); ++i) {
        if (const auto reply = owned(xcb_intern_atom_reply(connection, cookies[i], nullptr)))
            *atoms[i] = reply->atom;
    }
    watchCompositor();
    qGuiApp->installNativeEventFilter(this);
}

X11Hints::~X11Hints()
{
    if (qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}

void X11Hints::watchCompositor()
{
    const xcb_query_extension_reply_t *fixes = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (fixes && fixes->present) {
        m_firstFixesEvent = fixes->first_event;
        // The extension requires that the client first sends its version.
        owned(xcb_xfixes_query_version_reply(m_connection, xcb_xfixes_query_version(m_connection, 4, 0),
                                             nullptr));
        xcb_xfixes_select_selection_input(m_connection, m_root, m_atoms.compositorSelection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto cookie = xcb_get_selection_owner(m_connection, m_atoms.compositorSelection);
    const auto owner = owned(xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    m_compositor = owner && owner->owner != XCB_NONE;
}

bool X11Hints::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto *property = static_cast<const xcb_property_notify_event_t *>(message);
        if ((property->atom == m_atoms.windowState || property->atom == m_atoms.edgeConstraints) &&
            windowStateChanged)
            windowStateChanged();
    } else if (m_firstFixesEvent >= 0 && type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto *selection = static_cast<const xcb_xfixes_selection_notify_event_t *>(message);
        const bool running = selection->owner != XCB_NONE;
        if (selection->selection == m_atoms.compositorSelection && running != m_compositor) {
            m_compositor = running;
            compositedChanged();
        }
    }
    return false;
}

bool X11Hints::isTiled(QWindow *window) const
{
    const auto id = static_cast<quint32>(window->winId());
    const auto states = readProperty(m_connection, id, m_atoms.windowState, XCB_ATOM_ATOM);
    if (contains(states, m_atoms.maximizedHorizontally) != contains(states, m_atoms.maximizedVertically))
        return true;
    const auto edges = readProperty(m_connection, id, m_atoms.edgeConstraints, XCB_ATOM_CARDINAL);
    return !edges.empty() && (edges.front() & TiledEdges) != 0;
}

bool X11Hints::isSupported(quint32 atom) const
{
    return contains(readProperty(m_connection, m_root, m_atoms.supported, XCB_ATOM_ATOM), atom);
}

void X11Hints::publishFrame(QWindow *window, const WindowFrame::Published &frame)
{
    const auto id = static_cast<quint32>(window->winId());
    const qreal ratio = window->devicePixelRatio();
    const QRect inner = inDevicePixels(frame.frame, ratio);
    const QRect whole = inDevicePixels(QRect(QPoint(), frame.window), ratio);
    const std::array<quint32, 4> extents{
        static_cast<quint32>(inner.left()), static_cast<quint32>(whole.right() - inner.right()),
        static_cast<quint32>(inner.top()), static_cast<quint32>(whole.bottom() - inner.bottom())};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id, m_atoms.frameExtents, XCB_ATOM_CARDINAL, 32,
                        extents.size(), extents.data());

    const int corner = static_cast<int>(std::ceil(frame.cornerRadius * ratio));
    std::vector<quint32> opaque;
    for (const QRect &part : {inner.adjusted(corner, 0, -corner, 0), inner.adjusted(0, corner, 0, -corner)})
        for (const int value : {part.x(), part.y(), part.width(), part.height()})
            opaque.push_back(static_cast<quint32>(value));
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id, m_atoms.opaqueRegion, XCB_ATOM_CARDINAL, 32,
                        static_cast<quint32>(opaque.size()), opaque.data());

    // Clicks in the rest of the margin go to the windows behind.
    if (m_firstFixesEvent >= 0) {
        const xcb_rectangle_t input = rectangle(inDevicePixels(frame.grab, ratio));
        const quint32 region = xcb_generate_id(m_connection);
        constexpr quint8 inputShape = 2;
        xcb_xfixes_create_region(m_connection, region, 1, &input);
        xcb_xfixes_set_window_shape_region(m_connection, id, inputShape, 0, 0, region);
        xcb_xfixes_destroy_region(m_connection, region);
    }
}

bool X11Hints::showWindowMenu(QWindow *window, const QPoint &globalPosition)
{
    if (!isSupported(m_atoms.showWindowMenu))
        return false;
    const QPoint local = window->mapFromGlobal(globalPosition) * window->devicePixelRatio();
    const auto id = static_cast<quint32>(window->winId());
    const auto cookie = xcb_translate_coordinates(m_connection, id, m_root, static_cast<qint16>(local.x()),
                                                  static_cast<qint16>(local.y()));
    const auto root = owned(xcb_translate_coordinates_reply(m_connection, cookie, nullptr));
    if (!root)
        return false;
    // The press that asked for the menu grabbed the pointer, which the window manager needs.
    xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = m_atoms.showWindowMenu;
    message.data.data32[1] = static_cast<quint32>(root->dst_x);
    message.data.data32[2] = static_cast<quint32>(root->dst_y);
    sendToRoot(message);
    return true;
}

void X11Hints::activate(QWindow *window, quint32 time)
{
    constexpr quint32 FromApplication = 1;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<quint32>(window->winId());
    message.type = m_atoms.activeWindow;
    message.data.data32[0] = FromApplication;
    message.data.data32[1] = time;
    sendToRoot(message);
}

void X11Hints::endStartup(const QByteArray &startupId)
{
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    broadcast("remove: ID=\"" + quoted + '"');
}

/// Broadcasts a text in messages of 20 bytes, the last ended by a zero; the window in each message identifies
/// the text.
void X11Hints::broadcast(const QByteArray &text)
{
    const quint32 sender = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, sender, m_root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t message{};
    constexpr qsizetype Piece = sizeof message.data.data8;
    for (qsizetype place = 0; place <= text.size(); place += Piece) {
        message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 8;
        message.window = sender;
        message.type = place == 0 ? m_atoms.startupBegin : m_atoms.startup;
        const QByteArray piece = text.mid(place, Piece);
        std::copy(piece.begin(), piece.end(), message.data.data8);
        xcb_send_event(m_connection, 0, m_root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       static_cast<const char *>(static_cast<const void *>(&message)));
    }
    xcb_destroy_window(m_connection, sender);
    xcb_flush(m_connection);
}

void X11Hints::sendToRoot(const xcb_client_message_event_t &message) const
{
    // An event is always 32 bytes on the wire, which is this structure's size.
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   static_cast<const char *>(static_cast<const void *>(&message)));
    xcb_flush(m_connection);
}
