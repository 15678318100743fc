#include "Workspace.h"
#include "FileManager.h"
#include "FileSystemCalls.h"
#include "GObjectPointer.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <mutex>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr char OwnVariables[] = "PLOVENDIX_"; // some hold keys and passwords
constexpr char BrowserName[] = "org.freedesktop.FileManager1";
constexpr int BusTimeoutMilliseconds = 2000; // the bus itself answers at once

using Application = GObjectPointer<GAppInfo>;
using Bus = GObjectPointer<GDBusConnection>;

std::mutex workspaceMutex;

std::shared_ptr<Workspace> &installedWorkspace()
{
    static std::shared_ptr<Workspace> workspace = std::make_shared<Workspace>();
    return workspace;
}

Application handlerForUri(const QByteArray &uri)
{
    const GText scheme(g_uri_parse_scheme(uri.constData()));
    if (!scheme)
        return {};
    const GText lower(g_ascii_strdown(scheme.get(), -1));
    if (g_strcmp0(lower.get(), "file") != 0)
        return Application(g_app_info_get_default_for_uri_scheme(lower.get()));
    const GObjectPointer<GFile> file(g_file_new_for_uri(uri.constData()));
    return Application(g_file_query_default_handler(file.get(), nullptr, nullptr));
}

bool launch(const Application &application, const QByteArray &uri)
{
    if (!application)
        return false;
    const GObjectPointer<GAppLaunchContext> context(g_app_launch_context_new());
    // These variables belong to our own start and can be used only once.
    g_app_launch_context_unsetenv(context.get(), "DESKTOP_STARTUP_ID");
    g_app_launch_context_unsetenv(context.get(), "XDG_ACTIVATION_TOKEN");
    const GTextList names(g_listenv());
    for (char **name = names.get(); name && *name; ++name) {
        if (g_str_has_prefix(*name, OwnVariables))
            g_app_launch_context_unsetenv(context.get(), *name);
    }
    QByteArray argument = uri;
    GList uris = {argument.data(), nullptr, nullptr};
    GError *rawError = nullptr;
    const bool launched = g_app_info_launch_uris(application.get(), &uris, context.get(), &rawError);
    const GErrorPointer error(rawError);
    if (error)
        qCWarning(log, "%s did not start: %s", g_app_info_get_name(application.get()), error->message);
    return launched;
}

bool openFolder(const QByteArray &folderUri)
{
    constexpr gboolean AlsoPlainPaths = FALSE;
    return launch(Application(g_app_info_get_default_for_type("inode/directory", AlsoPlainPaths)), folderUri);
}

bool isInApplications(const char *dataFolder, const QByteArray &name)
{
    return QFileInfo::exists(QFile::decodeName(QByteArray(dataFolder) + "/applications/" + name));
}

/// Whether an entry of that name may exist. The first question to GIO makes it read and watch every
/// application folder; a start without a companion should not wait for that.
bool mayBeInstalled(const QByteArray &name)
{
    if (name.contains('-')) // the hyphen may stand for a folder
        return true;
    for (const char *const *folder = g_get_system_data_dirs(); *folder; ++folder) {
        if (isInApplications(*folder, name))
            return true;
    }
    return isInApplications(g_get_user_data_dir(), name);
}

Bus sessionBus()
{
    if (!Workspace::hasSessionBus()) // GLib would start a private bus on an X display
        return {};
    Bus bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    // By default GLib ends the process when the bus closes.
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus;
}

GVariantPointer askBus(const Bus &bus, const char *method, GVariant *arguments, const char *answerType)
{
    return GVariantPointer(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments,
        G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NONE, BusTimeoutMilliseconds, nullptr, nullptr));
}

bool isBrowserRunning(const Bus &bus)
{
    const GVariantPointer answer = askBus(bus, "NameHasOwner", g_variant_new("(s)", BrowserName), "(b)");
    gboolean hasOwner = FALSE;
    if (answer)
        g_variant_get(answer.get(), "(b)", &hasOwner);
    return hasOwner;
}

bool canBrowserBeStarted(const Bus &bus)
{
    const GVariantPointer answer = askBus(bus, "ListActivatableNames", nullptr, "(as)");
    if (!answer)
        return false;
    const GVariantPointer list(g_variant_get_child_value(answer.get(), 0));
    for (gsize index = 0; index < g_variant_n_children(list.get()); ++index) {
        const GVariantPointer name(g_variant_get_child_value(list.get(), index));
        if (g_strcmp0(g_variant_get_string(name.get(), nullptr), BrowserName) == 0)
            return true;
    }
    return false;
}

/// Asks the desktop's file browser over the session bus to show a file selected in its folder.
bool showInBusFileBrowser(const QByteArray &fileUri)
{
    const Bus bus = sessionBus();
    if (!bus || (!isBrowserRunning(bus) && !canBrowserBeStarted(bus)))
        return false;
    const char *uris[] = {fileUri.constData(), nullptr};
    g_dbus_connection_call(bus.get(), BrowserName, "/org/freedesktop/FileManager1", BrowserName, "ShowItems",
                           g_variant_new("(^ass)", uris, ""), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                           nullptr, nullptr);
    return g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
}
} // namespace

Workspace::~Workspace() = default;

Workspace &Workspace::sharedWorkspace()
{
    const std::scoped_lock lock(workspaceMutex);
    return *installedWorkspace();
}

void Workspace::setSharedWorkspace(std::shared_ptr<Workspace> workspace)
{
    const std::scoped_lock lock(workspaceMutex);
    installedWorkspace() = workspace ? std::move(workspace) : std::make_shared<Workspace>();
}

bool Workspace::openURL(const QUrl &url)
{
    if (!url.isValid() || url.isRelative())
        return false;
    const QByteArray uri = url.toEncoded();
    return launch(handlerForUri(uri), uri);
}

bool Workspace::opensItself(const QString &scheme)
{
    const gchar *const *known = g_vfs_get_supported_uri_schemes(g_vfs_get_default());
    return known && g_strv_contains(known, scheme.toLower().toUtf8().constData());
}

bool Workspace::showInFileBrowser(const QUrl &file)
{
    const QByteArray path = FileManager::fileSystemPath(file);
    if (path.isEmpty())
        return false;
    const QUrl folder = FileManager::urlFromFileSystemPath(parentFolder(path));
    return showInBusFileBrowser(file.toEncoded()) || openFolder(folder.toEncoded());
}

std::optional<QString> Workspace::absolutePathForAppBundleWithIdentifier(const QString &identifier)
{
    if (identifier.isEmpty() || identifier.contains(u'/'))
        return {};
    const QByteArray name = identifier.toUtf8() + ".desktop";
    if (!mayBeInstalled(name))
        return {};
    const GObjectPointer<GDesktopAppInfo> entry(g_desktop_app_info_new(name.constData()));
    const char *path = entry ? g_desktop_app_info_get_filename(entry.get()) : nullptr;
    return path ? std::optional<QString>(QFile::decodeName(path)) : std::nullopt;
}

bool Workspace::hasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeFolder.isEmpty() && QFileInfo::exists(runtimeFolder + u"/bus"_s);
}
