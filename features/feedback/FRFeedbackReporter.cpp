#include "FRFeedbackReporter.h"

#include "FeedbackSender.h"
#include "FeedbackViewController.h"
#include "RecentMessages.h"

#include <base/Locale.h>
#include <base/LocalizedString.h>
#include <base/UserDefaults.h>
#include <ui/window/Window.h>

#include <QLocale>
#include <QLoggingCategory>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.feedback", QtInfoMsg)

const QString AddressKey = u"FeedbackURL"_s;
/// A reserved host until the maker has a real one.
const QString StandardAddress = u"https://feedback.quorvane.example/plovendix/reports"_s;

QString hintAbout(const KeptReports::Kept &kept)
{
    const QString sentence = String::localize(u"This report from %@ could not be sent. Send it now?"_s);
    return String::fill(sentence, {QLocale().toString(kept.date, QLocale::ShortFormat)});
}
} // namespace

FRFeedbackReporter::FRFeedbackReporter(Clock &clock) : m_clock(clock), m_client(clock)
{
    UserDefaults::standard().registerDefaults({{AddressKey, StandardAddress}});
}

FRFeedbackReporter::~FRFeedbackReporter()
{
    if (!m_sending)
        return;
    if (const auto path = keep(); !path)
        qCWarning(log).noquote() << "a report was lost:" << path.error().detail;
}

FeedbackViewController &FRFeedbackReporter::panel()
{
    if (m_panel)
        return *m_panel;
    m_window = FeedbackViewController::makeWindow();
    m_panel = std::static_pointer_cast<FeedbackViewController>(m_window->contentViewController());
    connect(m_panel.get(), &FeedbackViewController::sendRequested, this, &FRFeedbackReporter::send);
    connect(m_panel.get(), &FeedbackViewController::stopRequested, this, [this] { m_sending.reset(); });
    return *m_panel;
}

void FRFeedbackReporter::reportFeedback()
{
    if (m_sending)
        return m_window->makeKeyAndOrderFront();
    const auto kept = m_kept.oldest();
    m_keptPath = kept ? kept->path : QString();
    m_form = {kept ? kept->report.text : QString(), parameters(), RecentMessages::lines()};
    panel().showForm(m_form, kept ? hintAbout(*kept) : QString());
}

QList<std::pair<QString, QString>> FRFeedbackReporter::parameters() const
{
    QList<std::pair<QString, QString>> all;
    const auto custom =
        m_delegate ? m_delegate->customParametersForFeedbackReport() : QMap<QString, QString>();
    for (auto entry = custom.cbegin(); entry != custom.cend(); ++entry)
        all.emplaceBack(entry.key(), entry.value());
    all.emplaceBack(u"system"_s, QSysInfo::prettyProductName() + u' ' + QSysInfo::currentCpuArchitecture());
    all.emplaceBack(u"qt"_s, QString::fromLatin1(qVersion()));
    all.emplaceBack(u"language"_s, Locale::current().languageCode().value_or(u"none"_s));
    return all;
}

void FRFeedbackReporter::send(const QString &text, bool withLog)
{
    m_report = {text, m_form.parameters, withLog ? m_form.log : QStringList()};
    m_panel->showSending();
    m_sending =
        sendReport(m_client, m_report, UserDefaults::standard().string(AddressKey).value_or(QString()),
                   [this](const Result<void> &outcome) { finish(outcome); });
}

void FRFeedbackReporter::finish(const Result<void> &outcome)
{
    m_sending.reset();
    if (outcome) {
        if (!m_keptPath.isEmpty())
            m_kept.remove(std::exchange(m_keptPath, QString()));
        return m_panel->showSent();
    }
    qCInfo(log).noquote() << "a report was not sent:" << outcome.error().code << outcome.error().detail;
    const auto path = keep();
    const QString where = path ? String::fill(String::localize(u"The report is kept in “%@”."_s), {*path})
                               : path.error().localizedDescription;
    m_panel->showFailure(outcome.error().localizedDescription + u' ' + where);
}

Result<QString> FRFeedbackReporter::keep()
{
    auto path = m_kept.keep(m_report, m_clock.date(), m_keptPath);
    if (path)
        m_keptPath = *path;
    return path;
}
