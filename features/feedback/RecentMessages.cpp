#include "RecentMessages.h"

#include <net/Redactor.h>

#include <QLoggingCategory>
#include <QRegularExpression>

#include <atomic>
#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto OwnCategories = "plovendix.";

std::mutex messagesMutex;
QStringList &messages() // guarded by the mutex
{
    static QStringList list;
    return list;
}
std::atomic<QtMessageHandler> handlerBefore = nullptr;
std::atomic_bool isInstalled = false;

QLatin1StringView nameOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug"_L1;
    case QtInfoMsg:
        return "info"_L1;
    case QtWarningMsg:
        return "warning"_L1;
    default:
        return "error"_L1;
    }
}

void note(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const auto category = QByteArrayView(context.category ? context.category : "");
    if (category.startsWith(OwnCategories)) {
        const QString line =
            nameOf(type) + u' ' + QString::fromUtf8(category) + u": "_s + RecentMessages::cleaned(message);
        const std::scoped_lock lock(messagesMutex);
        messages() += line;
        if (messages().size() > RecentMessages::MaxLines)
            messages().removeFirst();
    }
    if (const QtMessageHandler before = handlerBefore)
        before(type, context, message);
}
} // namespace

void RecentMessages::install()
{
    if (!isInstalled.exchange(true))
        handlerBefore = qInstallMessageHandler(note);
}

void RecentMessages::uninstall()
{
    if (isInstalled.exchange(false))
        qInstallMessageHandler(handlerBefore.exchange(nullptr));
    const std::scoped_lock lock(messagesMutex);
    messages().clear();
}

QStringList RecentMessages::lines()
{
    const std::scoped_lock lock(messagesMutex);
    return messages();
}

QString RecentMessages::cleaned(const QString &message)
{
    static const QRegularExpression quoted(u"\"[^\"]*\"?|“[^”]*”?|„[^“]*“?|«[^»]*»?"_s);
    static const QRegularExpression address(u"\\b[A-Za-z][A-Za-z0-9+.-]*:/\\S*"_s);
    // Up to the end or a colon: a file name may contain anything, and the message continues after the colon.
    static const QRegularExpression path(u"(?<![\\w)])~?/[^:\\n]*"_s);
    static const QRegularExpression mail(u"\\S+@\\S+"_s);
    QString text = redacted(message).simplified();
    text.replace(quoted, u"(…)"_s).replace(address, u"(address)"_s);
    text.replace(path, u"(path)"_s).replace(mail, u"(mail)"_s);
    return text.left(MaxLineLength);
}
