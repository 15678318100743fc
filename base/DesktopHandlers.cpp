#include "DesktopHandlers.h"
#include "GObjectPointer.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr char OwnVariables[] = "PLOVENDIX_";

using Application = GObjectPointer<GAppInfo>;

/// The desktop's default application for a content type. "/" is part of the type, as in "inode/directory".
Application handlerForType(const char *type)
{
    constexpr gboolean AlsoPlainPaths = FALSE;
    return Application(g_app_info_get_default_for_type(type, AlsoPlainPaths));
}

Application handlerForUri(const QByteArray &uri)
{
    const GObjectPointer<GFile> file(g_file_new_for_uri(uri.constData()));
    const GText scheme(g_uri_parse_scheme(uri.constData()));
    if (!scheme)
        return {};
    if (g_strcmp0(scheme.get(), "file") == 0)
        return Application(g_file_query_default_handler(file.get(), nullptr, nullptr));
    const GText lower(g_ascii_strdown(scheme.get(), -1));
    return Application(g_app_info_get_default_for_uri_scheme(lower.get()));
}

/// The variables include keys and passwords, which other programs must not get.
void removeOwnVariables(GAppLaunchContext *context)
{
    const GTextList names(g_listenv());
    for (char **name = names.get(); name && *name; ++name) {
        if (g_str_has_prefix(*name, OwnVariables))
            g_app_launch_context_unsetenv(context, *name);
    }
}

bool launch(GAppInfo *application, const QByteArray &uri)
{
    const GObjectPointer<GAppLaunchContext> context(g_app_launch_context_new());
    // These variables belong to our own start and can be used only once.
    g_app_launch_context_unsetenv(context.get(), "DESKTOP_STARTUP_ID");
    g_app_launch_context_unsetenv(context.get(), "XDG_ACTIVATION_TOKEN");
    removeOwnVariables(context.get());
    QByteArray argument = uri;
    GList uris = {argument.data(), nullptr, nullptr};
    GError *rawError = nullptr;
    const bool launched = g_app_info_launch_uris(application, &uris, context.get(), &rawError);
    const GErrorPointer error(rawError);
    if (error)
        qCWarning(log, "%s did not start: %s", g_app_info_get_name(application), error->message);
    return launched;
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
} // namespace

bool openWithDefaultHandler(const QByteArray &uri)
{
    const Application handler = handlerForUri(uri);
    return handler && launch(handler.get(), uri);
}

bool isFileSystemScheme(const QString &scheme)
{
    const gchar *const *known = g_vfs_get_supported_uri_schemes(g_vfs_get_default());
    for (; known && *known; ++known) {
        if (scheme.compare(QLatin1String(*known), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool openFolder(const QByteArray &folderUri)
{
    const Application handler = handlerForType("inode/directory");
    return handler && launch(handler.get(), folderUri);
}

std::optional<QString> desktopEntryPath(const QString &identifier)
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
