#include "WindowFixture.h"
#include "X11Desktop.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QMenu>
#include <QMouseEvent>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
std::unique_ptr<X11Desktop> desktop;

using Numbers = std::vector<quint32>;
} // namespace

/// What windows and window managers say to each other, on a real X server.
class X11WindowTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        desktop = std::make_unique<X11Desktop>();
        qputenv("QT_QPA_PLATFORM", "xcb");
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(desktop->isRunning(), "No X server could be started");
        desktop->listen();
    }

    void init()
    {
        desktop->startCompositor();
        QTRY_VERIFY(WindowSystem::shared().isComposited());
        desktop->requests.clear();
        m_window = std::make_unique<ui::Window>();
        m_titleBar = m_window->findChild<TitleBar *>();
        m_window->setContentSize({500, 400});
        m_window->move(100, 100);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QCOMPARE(m_window->shadowMargin(), 28);
        QTRY_COMPARE(m_window->pos(), QPoint(100, 100));
    }

    void cleanup() { m_window.reset(); }

    void cleanupTestCase() { desktop.reset(); }

    void frameIsPublishedWhileACompositorRuns()
    {
        QTRY_COMPARE(desktop->property(id(), "_GTK_FRAME_EXTENTS"), (Numbers{28, 28, 28, 28}));
        // Two bars that leave the rounded corners out.
        QCOMPARE(desktop->property(id(), "_NET_WM_OPAQUE_REGION"),
                 (Numbers{28 + 12, 28, 500 - 24, 438, 28, 28 + 12, 500, 438 - 24}));
        m_window->setContentSize({600, 400});
        QTRY_COMPARE(desktop->property(id(), "_NET_WM_OPAQUE_REGION").at(6), 600U);
    }

    void compositorMayComeAndGo()
    {
        desktop->stopCompositor();
        QTRY_COMPARE(m_window->shadowMargin(), 0);
        QTRY_COMPARE(desktop->property(id(), "_GTK_FRAME_EXTENTS"), (Numbers{0, 0, 0, 0}));
        QCOMPARE(desktop->property(id(), "_NET_WM_OPAQUE_REGION"), (Numbers{0, 0, 500, 438, 0, 0, 500, 438}));
        QTRY_COMPARE(m_window->geometry(), QRect(128, 128, 500, 438));
        desktop->startCompositor();
        QTRY_COMPARE(m_window->shadowMargin(), 28);
        QTRY_COMPARE(desktop->property(id(), "_GTK_FRAME_EXTENTS"), (Numbers{28, 28, 28, 28}));
        QTRY_COMPARE(m_window->geometry(), QRect(100, 100, 556, 494));
    }

    void compositorMayDie()
    {
        xcb_connection_t *compositor = desktop->startOtherCompositor();
        QCOMPARE(m_window->shadowMargin(), 28);
        xcb_disconnect(compositor);
        QTRY_COMPARE(m_window->shadowMargin(), 0);
    }

    void clicksInTheShadowGoToWhatIsBehind()
    {
        QTRY_COMPARE(desktop->windowUnder(100 + 5, 300), desktop->root());
        QCOMPARE(desktop->windowUnder(100 + 22, 300), id()); // where it is resized
        QCOMPARE(desktop->windowUnder(100 + 40, 300), id());
        desktop->stopCompositor();
        QTRY_COMPARE(desktop->windowUnder(128, 300), id());
    }

    void draggingTheTitleBarMovesThroughTheWindowManager_data()
    {
        QTest::addColumn<int>("distance");
        QTest::addColumn<bool>("released");
        QTest::addColumn<bool>("moves");
        const int enough = QApplication::startDragDistance();
        QTest::newRow("far enough") << enough << false << true;
        QTest::newRow("not far enough") << enough - 1 << false << false;
        QTest::newRow("after the release") << enough << true << false;
    }
    void draggingTheTitleBarMovesThroughTheWindowManager()
    {
        QFETCH(int, distance);
        QFETCH(bool, released);
        QFETCH(bool, moves);
        QTest::mousePress(m_titleBar, Qt::LeftButton, {}, {300, 15});
        if (released)
            QTest::mouseRelease(m_titleBar, Qt::LeftButton, {}, {300, 15});
        const QPointF place(300 + distance, 15);
        QMouseEvent move(QEvent::MouseMove, place, m_titleBar->mapToGlobal(place), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(m_titleBar, &move);
        // The menu's request shows that everything before it has arrived.
        rightClick(*m_titleBar);
        QTRY_VERIFY(request(u"_GTK_SHOW_WINDOW_MENU"_s));
        const auto asked = request(u"_NET_WM_MOVERESIZE"_s);
        QCOMPARE(asked.has_value(), moves);
        if (!moves)
            return;
        QCOMPARE(asked->window, id());
        QCOMPARE(asked->data.at(2), 8U);
    }

    void draggingAnEdgeResizesThroughTheWindowManager_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<quint32>("direction");
        // Clockwise from the top left corner, as the protocol counts. The window is 556 × 494.
        QTest::newRow("top left") << QPoint(24, 24) << 0U;
        QTest::newRow("top") << QPoint(250, 24) << 1U;
        QTest::newRow("top right") << QPoint(531, 24) << 2U;
        QTest::newRow("right") << QPoint(531, 250) << 3U;
        QTest::newRow("bottom right") << QPoint(531, 469) << 4U;
        QTest::newRow("bottom") << QPoint(250, 469) << 5U;
        QTest::newRow("bottom left") << QPoint(24, 469) << 6U;
        QTest::newRow("left") << QPoint(24, 250) << 7U;
    }

    void draggingAnEdgeResizesThroughTheWindowManager()
    {
        QFETCH(QPoint, place);
        QFETCH(quint32, direction);
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, place);
        QTRY_VERIFY(request(u"_NET_WM_MOVERESIZE"_s));
        QCOMPARE(request(u"_NET_WM_MOVERESIZE"_s)->data.at(2), direction);
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, place);
    }

    void windowManagersOwnMenuIsShown()
    {
        rightClick(*m_titleBar);
        QTRY_VERIFY(request(u"_GTK_SHOW_WINDOW_MENU"_s));
        const auto asked = request(u"_GTK_SHOW_WINDOW_MENU"_s);
        QCOMPARE(asked->window, id());
        QCOMPARE(asked->data.at(1), 100U + 28 + 300);
        QCOMPARE(asked->data.at(2), 100U + 28 + 15);
        QVERIFY(!m_window->findChild<QMenu *>());
    }

    void windowManagerWithoutAMenuLeavesItToUs()
    {
        const Numbers supported = desktop->property(desktop->root(), "_NET_SUPPORTED");
        desktop->setProperty(desktop->root(), "_NET_SUPPORTED", XCB_ATOM_ATOM,
                             {desktop->atom("_NET_WM_STATE")});
        QTRY_COMPARE(desktop->property(desktop->root(), "_NET_SUPPORTED").size(), 1U);
        rightClick(*m_titleBar);
        desktop->setProperty(desktop->root(), "_NET_SUPPORTED", XCB_ATOM_ATOM, supported);
        auto *menu = m_window->findChild<QMenu *>();
        QVERIFY(menu && menu->isVisible());
        menu->close();
    }

    void activationTokenCountsOnce_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<bool>("hasTime"); // with which the focus is requested
        QTest::addColumn<QByteArray>("ended");
        const auto row = [](const char *name, const QString &token, bool hasTime, const char *ended) {
            const QByteArray text = *ended ? "remove: ID=\"" + QByteArray(ended) + '"' : QByteArray();
            QTest::newRow(name) << token << hasTime << text;
        };
        row("startup id", u"launcher-1-host-plovendix-0_TIME4294967290"_s, true,
            "launcher-1-host-plovendix-0_TIME4294967290");
        row("no time", u"a"_s, false, "a");
        row("too large a time", u"a_TIME42949672900"_s, false, "a_TIME42949672900");
        row("as long as the pieces", u"123456789012345678901234567"_s, false, "123456789012345678901234567");
        row("quotes", u"a\"\\b"_s, false, "a\\\"\\\\b");
        row("none", QString(), false, "");
    }
    void activationTokenCountsOnce()
    {
        QFETCH(QString, token);
        QFETCH(bool, hasTime);
        QFETCH(QByteArray, ended);
        WindowSystem::setActivationToken(token);
        m_window->makeKeyAndOrderFront();
        m_window->makeKeyAndOrderFront();
        // The menu's request shows that everything before it has arrived.
        rightClick(*m_titleBar);
        QTRY_VERIFY(request(u"_GTK_SHOW_WINDOW_MENU"_s));
        int focusRequests = 0;
        int beginnings = 0;
        QByteArray pieces;
        for (const auto &message : desktop->requests) {
            if (message.type == u"_NET_ACTIVE_WINDOW"_s && message.data[0] == 1 &&
                message.data[1] == 4294967290U)
                ++focusRequests;
            if (!message.type.startsWith(u"_NET_STARTUP_INFO"_s))
                continue;
            beginnings += message.type.endsWith(u"BEGIN"_s) ? 1 : 0;
            QCOMPARE(pieces.isEmpty(), message.type.endsWith(u"BEGIN"_s));
            pieces +=
                QByteArray(static_cast<const char *>(static_cast<const void *>(message.data.data())), 20);
        }
        QCOMPARE(focusRequests, hasTime ? 1 : 0);
        QCOMPARE(beginnings, ended.isEmpty() ? 0 : 1);
        // A zero ends the text; without one a listener waits for more.
        QCOMPARE(pieces.contains('\0'), !ended.isEmpty());
        QCOMPARE(QByteArray(pieces.constData()), ended);
    }

    void tiledWindowIsSquare_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<quint32>("type");
        QTest::addColumn<Numbers>("tiled");
        QTest::addColumn<Numbers>("free");
        const quint32 atoms = XCB_ATOM_ATOM;
        const quint32 numbers = XCB_ATOM_CARDINAL;
        QTest::newRow("vertically maximised")
            << QByteArray("_NET_WM_STATE") << atoms << Numbers{desktop->atom("_NET_WM_STATE_MAXIMIZED_VERT")}
            << Numbers{};
        QTest::newRow("horizontally maximised")
            << QByteArray("_NET_WM_STATE") << atoms << Numbers{desktop->atom("_NET_WM_STATE_MAXIMIZED_HORZ")}
            << Numbers{};
        // One bit says that an edge is tiled, the next that it may be resized.
        QTest::newRow("left half") << QByteArray("_GTK_EDGE_CONSTRAINTS") << numbers
                                   << Numbers{0x1 | 0x8 | 0x10 | 0x40} << Numbers{0xaa};
        QTest::newRow("right half") << QByteArray("_GTK_EDGE_CONSTRAINTS") << numbers << Numbers{0x4}
                                    << Numbers{0};
    }

    void tiledWindowIsSquare()
    {
        QFETCH(QByteArray, property);
        QFETCH(quint32, type);
        QFETCH(Numbers, tiled);
        QFETCH(Numbers, free);
        desktop->setProperty(id(), property.constData(), type, tiled);
        QTRY_COMPARE(m_window->shadowMargin(), 0);
        desktop->setProperty(id(), property.constData(), type, free);
        QTRY_COMPARE(m_window->shadowMargin(), 28);
    }

private:
    xcb_window_t id() const { return static_cast<xcb_window_t>(m_window->winId()); }
    std::optional<X11Desktop::Request> request(const QString &type) const
    {
        // The toolkit keeps what it sends until the next event from the server, which need not come here.
        xcb_flush(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection());
        desktop->answer();
        const auto found = std::find_if(desktop->requests.begin(), desktop->requests.end(),
                                        [&type](const auto &candidate) { return candidate.type == type; });
        return found == desktop->requests.end() ? std::nullopt : std::optional(*found);
    }

    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    TitleBar *m_titleBar = nullptr;
};

PLOVENDIX_GUI_TEST(X11WindowTest)
#include "X11WindowTest.moc"
