#include "FileBrowser.h"
#include "GObjectPointer.h"
#include "SessionBus.h"

#include <gio/gio.h>

#include <QByteArray>

namespace
{
constexpr char BrowserName[] = "org.freedesktop.FileManager1";
constexpr int BusTimeoutMilliseconds = 2000; // the bus itself answers at once

using Bus = GObjectPointer<GDBusConnection>;

Bus sessionBus()
{
    if (!hasSessionBus()) // GLib would start a private bus on an X display
        return {};
    Bus bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    // By default GLib ends the process when the bus closes.
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus;
}

GVariantPointer askBus(GDBusConnection *bus, const char *method, GVariant *arguments, const char *answerType)
{
    return GVariantPointer(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments,
        G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NONE, BusTimeoutMilliseconds, nullptr, nullptr));
}

bool isRunning(GDBusConnection *bus)
{
    const GVariantPointer answer = askBus(bus, "NameHasOwner", g_variant_new("(s)", BrowserName), "(b)");
    gboolean hasOwner = FALSE;
    if (answer)
        g_variant_get(answer.get(), "(b)", &hasOwner);
    return hasOwner;
}

bool canBeStarted(GDBusConnection *bus)
{
    const GVariantPointer answer = askBus(bus, "ListActivatableNames", nullptr, "(as)");
    if (!answer)
        return false;
    const GVariantPointer names(g_variant_get_child_value(answer.get(), 0));
    for (gsize index = 0; index < g_variant_n_children(names.get()); ++index) {
        const GVariantPointer name(g_variant_get_child_value(names.get(), index));
        if (g_strcmp0(g_variant_get_string(name.get(), nullptr), BrowserName) == 0)
            return true;
    }
    return false;
}
} // namespace

bool showInBusFileBrowser(const QByteArray &fileUri)
{
    const Bus bus = sessionBus();
    if (!bus || (!isRunning(bus.get()) && !canBeStarted(bus.get())))
        return false;
    const char *uris[] = {fileUri.constData(), nullptr};
    g_dbus_connection_call(bus.get(), BrowserName, "/org/freedesktop/FileManager1", BrowserName, "ShowItems",
                           g_variant_new("(^ass)", uris, ""), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                           nullptr, nullptr);
    return g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
}
