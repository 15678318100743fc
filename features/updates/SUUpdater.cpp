#include "SUUpdater.h"

#include "ReleaseNotes.h"
#include "UpdateChoice.h"
#include "UpdateErrors.h"

#include <base/Workspace.h>

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

UserDefaults &settings()
{
    return UserDefaults::standard();
}
} // namespace

SUUpdater::SUUpdater(Clock &clock, UpdatePresenting &window, InstalledProgram installed)
    : m_clock(clock),
      m_window(window),
      m_installed(std::move(installed)),
      m_feed(clock),
      m_notBefore(clock.now() + StartPause)
{
    m_window.setAnswering(this);
    settings().registerDefaults({{FeedKey, StandardFeed}, {AutomaticKey, true}});
    for (const QString &key : {AutomaticKey, IntervalKey, LastCheckKey})
        m_observations.push_back(settings().observe(key, [this](const QVariant &) { schedule(); }));
    schedule();
}

SUUpdater::~SUUpdater()
{
    m_window.setAnswering(nullptr);
}

void SUUpdater::checkForUpdates(QObject *)
{
    if (m_check && m_asked)
        return m_window.bringForward();
    m_asked = true;
    m_window.showChecking();
    // A running automatic check becomes the person's.
    if (!m_check)
        begin();
}

UpdateSchedule SUUpdater::scheduleInSettings() const
{
    return {settings().boolean(AutomaticKey), settings().integer(IntervalKey),
            settings().object(LastCheckKey).toDateTime()};
}

void SUUpdater::schedule()
{
    m_timer.cancel();
    const auto wait = scheduleInSettings().waitFrom(m_clock.date());
    if (!wait && !m_asked)
        m_check.reset();
    if (!wait || m_check)
        return;
    const Clock::Duration delay = std::max(*wait, m_notBefore - m_clock.now());
    m_timer = m_clock.after(std::min(delay, LongestSleep), [this] { wake(); });
}

void SUUpdater::wake()
{
    const auto wait = scheduleInSettings().waitFrom(m_clock.date());
    const bool isDue = wait && *wait <= Clock::Duration::zero() && m_clock.now() >= m_notBefore;
    if (!isDue)
        return schedule();
    // A window that the person looks at is not replaced.
    if (m_window.isShown())
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
    m_timer.cancel();
    m_offer.reset();
    m_check = m_feed.fetch(settings().string(FeedKey).value_or(QString()),
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
    qCInfo(log).noquote() << "no answer about updates:" << error.code << error.detail;
    if (std::exchange(m_asked, false))
        m_window.showFailure(error.localizedDescription);
    putOff(RetryPause);
}

void SUUpdater::present(const std::optional<AppcastItem> &found)
{
    if (!found) {
        if (m_asked)
            m_window.showUpToDate(m_installed.version);
        return;
    }
    if (!m_asked && settings().string(SkippedKey) == found->version)
        return;
    m_offer = {found->version, m_installed.version, plainReleaseNotes(found->notes),
               QUrl(found->link, QUrl::StrictMode)};
    m_window.showOffer(*m_offer,
                       m_asked ? UpdatePresenting::Arrival::Asked : UpdatePresenting::Arrival::ByItself);
}

void SUUpdater::getUpdate()
{
    if (!m_offer)
        return;
    const QUrl link = m_offer->link;
    if (Workspace::sharedWorkspace().openURL(link))
        return m_window.dismiss();
    const base::Error error = updateError(UpdateFault::NoHandler, link.host());
    m_window.showFailure(error.localizedDescription + u'\n' + link.toString(QUrl::FullyEncoded));
}

void SUUpdater::skipVersion()
{
    if (!m_offer)
        return;
    settings().setObject(SkippedKey, m_offer->version);
    m_window.dismiss();
}

void SUUpdater::windowClosed()
{
    if (!m_check || !m_asked)
        return;
    m_check.reset();
    m_asked = false;
    putOff(RetryPause);
}
