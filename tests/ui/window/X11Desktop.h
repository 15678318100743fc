#pragma once
#include <QObject>
#include <QProcess>
#include <QSocketNotifier>
#include <QString>

#include <cstdlib>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

/// An X server of the test's own and, in the test's process but on a connection of its own, the least of a
/// window manager and compositor: it shows every window where it wants to be and writes down what it is asked
/// for. Made before the application object, which finds the server by DISPLAY.
class X11Desktop final : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QString type;
        xcb_window_t window;
        std::vector<quint32> data;
    };
    std::vector<Request> requests;

    X11Desktop()
    {
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                        QStringLiteral("0"), QStringLiteral("1280x900x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp")});
        if (!m_server.waitForReadyRead())
            return;
        const QByteArray display = ":" + m_server.readLine().trimmed();
        qputenv("DISPLAY", display);
        m_connection = xcb_connect(display.constData(), nullptr);
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        becomeWindowManager();
    }
    ~X11Desktop() override
    {
        m_notifier.reset();
        xcb_disconnect(m_connection);
        m_server.terminate();
        m_server.waitForFinished();
    }

    bool isRunning() const { return m_connection && !xcb_connection_has_error(m_connection); }
    /// Answers requests from now on; once the application object exists.
    void listen()
    {
        m_notifier =
            std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11Desktop::answer);
        answer();
    }

    /// Answers what has come, also what was read beside the reply to another question, which no notifier
    /// tells.
    void answer()
    {
        while (const auto event = owned(xcb_poll_for_event(m_connection)))
            answerOne(*event);
        xcb_flush(m_connection);
    }

    xcb_atom_t atom(const char *name)
    {
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<quint16>(qstrlen(name)), name);
        const auto reply = owned(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply->atom;
    }
    std::vector<quint32> property(xcb_window_t window, const char *name)
    {
        const auto cookie = xcb_get_property(m_connection, 0, window, atom(name), XCB_ATOM_ANY, 0, 64);
        const auto reply = owned(xcb_get_property_reply(m_connection, cookie, nullptr));
        if (!reply || reply->format != 32)
            return {};
        const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
        return {values, values + reply->value_len};
    }
    void setProperty(xcb_window_t window, const char *name, xcb_atom_t type,
                     const std::vector<quint32> &values)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                            static_cast<quint32>(values.size()), values.data());
        xcb_flush(m_connection);
    }
    /// The window that a click at that place of the screen goes to, or the root window.
    xcb_window_t windowUnder(int x, int y)
    {
        xcb_warp_pointer(m_connection, XCB_NONE, m_root, 0, 0, 0, 0, static_cast<qint16>(x),
                         static_cast<qint16>(y));
        const auto reply =
            owned(xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, m_root), nullptr));
        return reply->child == XCB_NONE ? m_root : reply->child;
    }
    xcb_window_t root() const { return m_root; }

    void startCompositor() { setCompositorOwner(m_manager); }
    void stopCompositor() { setCompositorOwner(XCB_NONE); }
    /// A compositor on a separate connection, so that it dies as a real one does.
    xcb_connection_t *startOtherCompositor()
    {
        xcb_connection_t *other = xcb_connect(nullptr, nullptr);
        const xcb_window_t window = makeWindow(other);
        xcb_set_selection_owner(other, window, atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
        owned(xcb_get_input_focus_reply(other, xcb_get_input_focus(other),
                                        nullptr)); // wait until it has happened
        return other;
    }

private:
    template <class Reply>
    static std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
    {
        return {reply, &std::free};
    }

    xcb_window_t makeWindow(xcb_connection_t *connection) const
    {
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, m_root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    void becomeWindowManager()
    {
        m_manager = makeWindow(m_connection);
        for (const xcb_window_t window : {m_root, m_manager})
            setProperty(window, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {m_manager});
        setProperty(m_root, "_NET_SUPPORTED", XCB_ATOM_ATOM,
                    {atom("_NET_WM_MOVERESIZE"), atom("_GTK_SHOW_WINDOW_MENU"), atom("_NET_WM_STATE"),
                     atom("_GTK_FRAME_EXTENTS")});
        // A launcher listens for the property changes of the root, which is how it hears of broadcasts.
        const quint32 events = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                               XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
    }

    void setCompositorOwner(xcb_window_t owner)
    {
        xcb_set_selection_owner(m_connection, owner, atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
        xcb_flush(m_connection);
    }

    void answerOne(const xcb_generic_event_t &event)
    {
        const void *raw = &event;
        switch (event.response_type & 0x7f) {
        case XCB_MAP_REQUEST:
            xcb_map_window(m_connection, static_cast<const xcb_map_request_event_t *>(raw)->window);
            break;
        case XCB_CONFIGURE_REQUEST:
            configure(*static_cast<const xcb_configure_request_event_t *>(raw));
            break;
        case XCB_CLIENT_MESSAGE:
            note(*static_cast<const xcb_client_message_event_t *>(raw));
            break;
        default:
            break;
        }
    }

    /// Grants the request. Its fields that are not asked for hold the present geometry.
    void configure(const xcb_configure_request_event_t &wish)
    {
        const quint32 values[]{static_cast<quint32>(wish.x), static_cast<quint32>(wish.y), wish.width,
                               wish.height};
        xcb_configure_window(m_connection, wish.window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             values);
    }

    void note(const xcb_client_message_event_t &message)
    {
        const auto reply = owned(
            xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, message.type), nullptr));
        const QString type = QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                                                 xcb_get_atom_name_name_length(reply.get()));
        requests.push_back({type, message.window, {message.data.data32, message.data.data32 + 5}});
    }

    QProcess m_server;
    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_window_t m_manager = XCB_NONE;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
