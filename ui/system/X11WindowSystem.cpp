#include "WindowSystem.h"

#include <QAbstractNativeEventFilter>
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
// Bits of _GTK_EDGE_CONSTRAINTS: top, right, bottom and left are tiled.
constexpr quint32 TiledEdges = 0x1 | 0x4 | 0x10 | 0x40;
constexpr quint32 MaxAtomsRead = 1024;

enum Atom
{
    FrameExtents,
    OpaqueRegion,
    WindowState,
    MaximizedHorizontally,
    MaximizedVertically,
    EdgeConstraints,
    Supported,
    ShowWindowMenu,
    ActiveWindow,
    StartupBegin,
    Startup,
    CompositorSelection
};
constexpr std::array AtomNames{
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
    "_NET_STARTUP_INFO",
    "_NET_WM_CM_S" // and the number of the screen
};

template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
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

/// X11 protocols of window managers and compositors that Qt does not implement.
class X11WindowSystem final : public WindowSystem, public QAbstractNativeEventFilter
{
public:
    explicit X11WindowSystem(xcb_connection_t *connection);

    bool showWindowMenu(QWindow *window, const QPoint &globalPosition) override;
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

protected:
    bool hasCompositor() const override { return m_compositor; }
    bool placesByFrame() const override { return true; }
    bool isTiled(QWindow *window) const override;
    void publish(QWindow *window, const WindowFrame::Look &look) override;
    void requestFocus(QWindow *window, quint32 time) override
    {
        constexpr quint32 fromApplication = 1;
        sendToRoot(*window, ActiveWindow, {fromApplication, time, 0});
    }
    void endStartup(const QByteArray &startupId) override;

private:
    void internAtoms(int screen);
    void watchCompositor();
    std::vector<quint32> read(quint32 window, Atom property, quint32 type) const;
    void write(quint32 window, Atom property, const std::vector<int> &values)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, m_atoms[property], XCB_ATOM_CARDINAL,
                            32, static_cast<quint32>(values.size()), values.data());
    }
    void sendToRoot(const QWindow &window, Atom type, const std::array<quint32, 3> &data);

    xcb_connection_t *m_connection;
    quint32 m_root = 0;
    std::array<quint32, AtomNames.size()> m_atoms{};
    int m_firstFixesEvent = -1; // without the XFixes extension compositor changes are not followed
    bool m_compositor = false;
};

X11WindowSystem::X11WindowSystem(xcb_connection_t *connection) : m_connection(connection)
{
    // The default screen's number is part of the compositor's selection. Qt's xcb connection belongs to the
    // screen that DISPLAY names.
    const int screenNumber = defaultScreen();
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    internAtoms(screenNumber);
    watchCompositor();
    qGuiApp->installNativeEventFilter(this);
}

void X11WindowSystem::internAtoms(int screen)
{
    std::array<xcb_intern_atom_cookie_t, AtomNames.size()> cookies{};
    for (size_t atom = 0; atom < AtomNames.size(); ++atom) {
        std::string name = AtomNames[atom];
        if (atom == CompositorSelection)
            name += std::to_string(screen);
        cookies[atom] = xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.c_str());
    }
    for (size_t atom = 0; atom < AtomNames.size(); ++atom) {
        if (const auto reply = owned(xcb_intern_atom_reply(m_connection, cookies[atom], nullptr)))
            m_atoms[atom] = reply->atom;
    }
}

std::vector<quint32> X11WindowSystem::read(quint32 window, Atom property, quint32 type) const
{
    const auto cookie = xcb_get_property(m_connection, 0, window, m_atoms[property], type, 0, MaxAtomsRead);
    const auto reply = owned(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

void X11WindowSystem::watchCompositor()
{
    const xcb_query_extension_reply_t *fixes = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (fixes && fixes->present) {
        m_firstFixesEvent = fixes->first_event;
        // The extension requires that the client first sends its version.
        owned(xcb_xfixes_query_version_reply(m_connection, xcb_xfixes_query_version(m_connection, 4, 0),
                                             nullptr));
        xcb_xfixes_select_selection_input(m_connection, m_root, m_atoms[CompositorSelection],
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto cookie = xcb_get_selection_owner(m_connection, m_atoms[CompositorSelection]);
    const auto owner = owned(xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    m_compositor = owner && owner->owner != XCB_NONE;
}

bool X11WindowSystem::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const int type = static_cast<const xcb_generic_event_t *>(message)->response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto *property = static_cast<const xcb_property_notify_event_t *>(message);
        if (property->atom == m_atoms[WindowState] || property->atom == m_atoms[EdgeConstraints])
            Q_EMIT situationChanged();
    } else if (m_firstFixesEvent >= 0 && type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto *selection = static_cast<const xcb_xfixes_selection_notify_event_t *>(message);
        const bool running = selection->owner != XCB_NONE;
        if (selection->selection == m_atoms[CompositorSelection] && running != m_compositor) {
            m_compositor = running;
            Q_EMIT situationChanged();
        }
    }
    return false;
}

bool X11WindowSystem::isTiled(QWindow *window) const
{
    const auto id = static_cast<quint32>(window->winId());
    const auto states = read(id, WindowState, XCB_ATOM_ATOM);
    if (contains(states, m_atoms[MaximizedHorizontally]) != contains(states, m_atoms[MaximizedVertically]))
        return true;
    const auto edges = read(id, EdgeConstraints, XCB_ATOM_CARDINAL);
    return !edges.empty() && (edges.front() & TiledEdges) != 0;
}

void X11WindowSystem::publish(QWindow *window, const WindowFrame::Look &look)
{
    const auto id = static_cast<quint32>(window->winId());
    const qreal ratio = window->devicePixelRatio();
    const QRect inner = inDevicePixels(WindowFrame::frameIn(window->size(), look.margin), ratio);
    const QRect whole = inDevicePixels(QRect(QPoint(), window->size()), ratio);
    write(id, FrameExtents,
          {inner.left(), whole.right() - inner.right(), inner.top(), whole.bottom() - inner.bottom()});

    // Two bars that leave the rounded corners out.
    const int corner = look.rounded ? static_cast<int>(std::ceil(WindowFrame::CornerRadius * ratio)) : 0;
    const QRect high = inner.adjusted(corner, 0, -corner, 0);
    const QRect wide = inner.adjusted(0, corner, 0, -corner);
    write(id, OpaqueRegion,
          {high.x(), high.y(), high.width(), high.height(), wide.x(), wide.y(), wide.width(), wide.height()});

    // Clicks in the rest of the margin go to the windows behind.
    if (m_firstFixesEvent >= 0) {
        const QRect grab = inDevicePixels(WindowFrame::grabAreaIn(window->size(), look.margin), ratio);
        const xcb_rectangle_t input{static_cast<qint16>(grab.x()), static_cast<qint16>(grab.y()),
                                    static_cast<quint16>(grab.width()), static_cast<quint16>(grab.height())};
        const quint32 region = xcb_generate_id(m_connection);
        constexpr quint8 inputShape = 2;
        xcb_xfixes_create_region(m_connection, region, 1, &input);
        xcb_xfixes_set_window_shape_region(m_connection, id, inputShape, 0, 0, region);
        xcb_xfixes_destroy_region(m_connection, region);
    }
}

bool X11WindowSystem::showWindowMenu(QWindow *window, const QPoint &globalPosition)
{
    if (!contains(read(m_root, Supported, XCB_ATOM_ATOM), m_atoms[ShowWindowMenu]))
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
    sendToRoot(*window, ShowWindowMenu,
               {0, static_cast<quint32>(root->dst_x), static_cast<quint32>(root->dst_y)});
    return true;
}

void X11WindowSystem::endStartup(const QByteArray &startupId)
{
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"';
    // Messages of 20 bytes carry the text, the last ends with a zero; the window identifies the text.
    const quint32 sender = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, sender, m_root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    constexpr qsizetype Piece = sizeof(xcb_client_message_data_t);
    for (qsizetype place = 0; place <= text.size(); place += Piece) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 8;
        message.window = sender;
        message.type = m_atoms[place == 0 ? StartupBegin : Startup];
        std::copy_n(text.constData() + place, qMin(Piece, text.size() - place), message.data.data8);
        xcb_send_event(m_connection, 0, m_root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       static_cast<const char *>(static_cast<const void *>(&message)));
    }
    xcb_destroy_window(m_connection, sender);
    xcb_flush(m_connection);
}

void X11WindowSystem::sendToRoot(const QWindow &window, Atom type, const std::array<quint32, 3> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<quint32>(window.winId());
    message.type = m_atoms[type];
    std::copy(data.begin(), data.end(), message.data.data32);
    // An event is always 32 bytes on the wire, which is this structure's size.
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   static_cast<const char *>(static_cast<const void *>(&message)));
    xcb_flush(m_connection);
}
} // namespace

std::unique_ptr<WindowSystem> WindowSystem::makeForX11()
{
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection())
        return nullptr;
    return std::make_unique<X11WindowSystem>(x11->connection());
}
