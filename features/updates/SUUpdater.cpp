#include "SUUpdater.h"

#include "ReleaseNotes.h"
#include "UpdateFeed.h"

#include <base/LocalizedString.h>
#include <base/Workspace.h>
#include <ui/window/Window.h>

#include <QLoggingCategory>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.update", QtInfoMsg)

const QString FeedKey = u"UpdateFeedURL"_s;
const QString AutomaticKey = u"SUEnableAutomaticChecks"_s;
const QString IntervalKey = u"SUScheduledCheckInterval"_s;
const QString LastCheckKey = u"SULastCheckTime"_s;
const QString SkippedKey = u"SUSkippedVersion"_s;
const QString FeedDateKey = u"SULastFeedDate"_s;
/// A reserved host until the maker has a real one.
const QString StandardFeed = u"https://updates.quorvane.example/plovendix/appcast.xml"_s;

/// The first minute is left to the person's own work.
constexpr Clock::Duration StartPause = 1min;
constexpr Clock::Duration RetryPause = 1h;
/// The monotonic clock stops during a suspend and does not follow changes of the date, so the date is checked
/// again.
constexpr Clock::Duration LongestSleep = 1h;

constexpr qint64 StandardInterval = 24LL * 60 * 60; // seconds
constexpr qint64 ShortestInterval = 60LL * 60;      // to protect the server
constexpr qint64 LongestInterval = 366LL * 24 * 60 * 60;

UserDefaults &settings()
{
    return UserDefaults::standard();
}
} // namespace

SUUpdater::SUUpdater(Clock &clock, InstalledProgram installed)
    : m_clock(clock),
      m_installed(std::move(installed)),
      m_client(clock),
      m_notBefore(clock.now() + StartPause)
{
    settings().registerDefaults({{FeedKey, StandardFeed}, {AutomaticKey, true}});
    for (const QString &key : {AutomaticKey, IntervalKey, LastCheckKey})
        m_observations.push_back(settings().observe(key, [this](const QVariant &) { schedule(); }));
    schedule();
}

SUUpdater::~SUUpdater() = default;

UpdateViewController &SUUpdater::panel()
{
    if (m_panel)
        return *m_panel;
    m_window = UpdateViewController::makeWindow();
    m_panel = std::static_pointer_cast<UpdateViewController>(m_window->contentViewController());
    connect(m_panel.get(), &UpdateViewController::getRequested, this, &SUUpdater::getUpdate);
    connect(m_panel.get(), &UpdateViewController::skipRequested, this, &SUUpdater::skipVersion);
    connect(m_panel.get(), &UpdateViewController::closed, this, &SUUpdater::windowClosed);
    return *m_panel;
}

void SUUpdater::checkForUpdates(QObject *)
{
    if (m_check && m_asked)
        return m_window->makeKeyAndOrderFront();
    m_asked = true;
    panel().showChecking();
    // A running automatic check becomes the person's.
    if (!m_check)
        begin();
}

Clock::Duration SUUpdater::waitFor(const QDateTime &lastCheck, qint64 intervalSeconds, const QDateTime &now)
{
    if (!lastCheck.isValid() || lastCheck > now)
        return Clock::Duration::zero();
    const qint64 interval = intervalSeconds > 0
                                ? std::clamp(intervalSeconds, ShortestInterval, LongestInterval)
                                : StandardInterval;
    return std::chrono::seconds(interval - std::min(lastCheck.secsTo(now), interval));
}

/// None when automatic checks are off.
std::optional<Clock::Duration> SUUpdater::nextWait() const
{
    if (!settings().boolean(AutomaticKey))
        return std::nullopt;
    return waitFor(settings().object(LastCheckKey).toDateTime(), settings().integer(IntervalKey),
                   m_clock.date());
}

void SUUpdater::schedule()
{
    m_timer.reset();
    const auto wait = nextWait();
    if (!wait && !m_asked)
        m_check.reset();
    if (!wait || m_check)
        return;
    const Clock::Duration delay = std::max(*wait, m_notBefore - m_clock.now());
    m_timer = m_clock.after(std::min(delay, LongestSleep), [this] { wake(); });
}

void SUUpdater::wake()
{
    const auto wait = nextWait();
    const bool isDue = wait && *wait <= Clock::Duration::zero() && m_clock.now() >= m_notBefore;
    if (!isDue)
        return schedule();
    // A window that the person looks at is not replaced.
    if (m_window && m_window->isVisible())
        return putOff(RetryPause);
    m_asked = false;
    begin();
}

void SUUpdater::putOff(Clock::Duration pause)
{
    m_notBefore = m_clock.now() + pause;
    schedule();
}

void SUUpdater::begin()
{
    m_timer.reset();
    m_check = fetchFeed(m_client, settings().string(FeedKey).value_or(QString()),
                        [this](const Result<AppcastFeed> &outcome) { finish(outcome); });
}

void SUUpdater::finish(const Result<AppcastFeed> &outcome)
{
    m_check.reset();
    if (!outcome)
        return fail(outcome.error());
    const auto date = checkedDate(*outcome, m_installed, settings().object(FeedDateKey).toDateTime());
    if (!date)
        return fail(date.error());
    settings().setObject(FeedDateKey, *date);
    const auto choice = chooseUpdate(outcome->items, m_installed);
    if (!choice)
        return fail(choice.error());
    settings().setObject(LastCheckKey, m_clock.date());
    present(*choice);
    m_asked = false;
    schedule();
}

void SUUpdater::fail(const base::Error &error)
{
    qCInfo(log).noquote() << "no answer about updates:" << error.detail;
    if (std::exchange(m_asked, false))
        panel().showFailure(error.localizedDescription);
    putOff(RetryPause);
}

void SUUpdater::present(const std::optional<AppcastItem> &found)
{
    if (!found) {
        if (m_asked)
            panel().showUpToDate(m_installed.version);
        return;
    }
    if (!m_asked && settings().string(SkippedKey) == found->version)
        return;
    m_offer = {found->version, m_installed.version, plainReleaseNotes(found->notes),
               QUrl(found->link, QUrl::StrictMode)};
    panel().showOffer(m_offer, m_asked ? UpdateViewController::Arrival::Asked
                                       : UpdateViewController::Arrival::ByItself);
}

void SUUpdater::getUpdate()
{
    const QUrl link = m_offer.link;
    if (Workspace::sharedWorkspace().openURL(link))
        return m_window->hide();
    const QString sentence =
        String::localize(u"Nothing on this computer opens web pages. The new version is at this address:"_s);
    panel().showFailure(sentence + u'\n' + link.toString(QUrl::FullyEncoded));
}

void SUUpdater::skipVersion()
{
    settings().setObject(SkippedKey, m_offer.version);
    m_window->hide();
}

void SUUpdater::windowClosed()
{
    if (!m_check || !m_asked)
        return;
    m_check.reset();
    m_asked = false;
    putOff(RetryPause);
}
