#include "AppDelegate.h"

#include <base/Bundle.h>
#include <base/FatalFault.h>
#include <base/Links.h>
#include <base/Locale.h>
#include <base/StandardOutput.h>
#include <base/UserDefaults.h>
#include <base/ValueTransformer.h>
#include <model/CodeToName.h>
#include <ui/system/URLEventCentre.h>
#include <ui/window/ErrorAlert.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
AppDelegate *sharedDelegate = nullptr;

ui::Window *firstWindow()
{
    const QList<ui::Window *> windows = ui::Window::openWindows();
    return windows.isEmpty() ? nullptr : windows.first();
}

QString informationText(const QString &key)
{
    const QVariant value = Bundle::main().objectForInfoDictionaryKey(key);
    if (value.typeId() != QMetaType::QString)
        fatalFault(u"The information dictionary has no text \"%1\""_s.arg(key));
    return value.toString();
}
} // namespace

AppDelegate::AppDelegate(std::function<void()> obtainSharedUpdater)
    : m_obtainSharedUpdater(std::move(obtainSharedUpdater))
{
    sharedDelegate = this;
    const auto languageCode = Locale::current().languageCode();
    if (!languageCode)
        return;
    UserDefaults::standard().registerDefaults({
        {u"languageCode"_s, *languageCode},
        {u"SUScheduledCheckInterval"_s, u"86400"_s}, // a text, one day in seconds
    });
    ValueTransformer::setValueTransformer(std::make_shared<LanguageCodeToName>(), u"LanguageCodeToName"_s);
}

AppDelegate::~AppDelegate()
{
    URLEventCentre::shared().setEventHandler({});
    sharedDelegate = nullptr;
}

AppDelegate *AppDelegate::shared()
{
    return sharedDelegate;
}

void AppDelegate::applicationWillFinishLaunching()
{
    URLEventCentre::shared().setEventHandler([this](const GetURLEvent &event) { handleGetURLEvent(event); });
}

void AppDelegate::applicationDidFinishLaunching()
{
    if (m_obtainSharedUpdater)
        m_obtainSharedUpdater();
}

void AppDelegate::handleGetURLEvent(const GetURLEvent &event)
{
    const auto request = readExternalRequest(event.directParameter);
    if (!request)
        return presentError(request.error());
    if (*request)
        deliver(**request);
}

void AppDelegate::open(const QStringList &uris)
{
    std::optional<QUrl> file;
    for (const QString &uri : uris) {
        if (!uri.startsWith("file:"_L1, Qt::CaseInsensitive))
            URLEventCentre::shared().send({uri});
        else if (const QUrl url(uri, QUrl::TolerantMode); url.isValid() && url.isLocalFile() && !file)
            file = url;
    }
    if (file)
        deliver({*file, std::nullopt});
}

void AppDelegate::activate()
{
    if (ui::Window *window = firstWindow())
        window->makeKeyAndOrderFront();
}

void AppDelegate::visitQuorvane(QObject *)
{
    Links::open(Links::Website);
}

void AppDelegate::sendFeedback(QObject *)
{
    const auto reporter = FeedbackReporting::sharedReporter();
    if (!reporter)
        fatalFault(u"There is no feedback reporter"_s);
    reporter->setDelegate(this);
    reporter->reportFeedback();
}

QMap<QString, QString> AppDelegate::customParametersForFeedbackReport() const
{
    return {{u"identifier"_s, informationText(u"CFBundleIdentifier"_s)},
            {u"application"_s, informationText(u"CFBundleName"_s)},
            {u"version"_s, informationText(u"CFBundleShortVersionString"_s)}};
}

void AppDelegate::deliver(const ExternalRequest &request)
{
    ui::Window *window = firstWindow();
    if (!window)
        return printLine(u"No window open?"_s);
    window->makeKeyAndOrderFront();
    const auto content = window->contentViewController();
    if (auto *receiver = dynamic_cast<FileSearching *>(content.get()))
        return receiver->searchForFile(request.url, request.requestInfo);
    externalRequest = request;
}

void AppDelegate::presentError(const base::Error &error)
{
    // An alert runs an event loop in which the next request may arrive; without this, alerts would nest.
    m_nextError = error;
    if (std::exchange(m_isPresenting, true))
        return;
    while (const auto next = std::exchange(m_nextError, std::nullopt))
        showErrorAlert(*next, firstWindow());
    m_isPresenting = false;
}
