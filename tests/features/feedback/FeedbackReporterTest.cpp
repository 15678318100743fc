#include <base/UserDefaults.h>
#include <features/feedback/FRFeedbackReporter.h>
#include <features/feedback/RecentMessages.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QSysInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(ours, "plovendix.test", QtInfoMsg)

class NotingWindow final : public FeedbackPresenting
{
public:
    QStringList states;
    FeedbackForm form;
    Answering *person = nullptr;

    void setAnswering(Answering *answering) override { person = answering; }
    void showForm(const FeedbackForm &newForm) override
    {
        form = newForm;
        states += u"form"_s;
    }
    void showSending() override { states += u"sending"_s; }
    void bringForward() override { states += u"forward"_s; }
    void showSent() override { states += u"sent"_s; }
    void showFailure(const QString &sentence) override { states += u"failure "_s + sentence; }
};

class Program final : public FeedbackReporting::Delegate
{
public:
    QMap<QString, QString> customParametersForFeedbackReport() const override
    {
        return {{u"application"_s, u"Plovendix"_s}, {u"version"_s, u"1.0"_s}};
    }
};
} // namespace

class FeedbackReporterTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    Program m_program;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<LoopbackServer> m_server;
    std::unique_ptr<NotingWindow> m_window;
    std::unique_ptr<FRFeedbackReporter> m_reporter;
    ServedAnswer m_answer;
    int m_files = 0;

    static QStringList keptFiles()
    {
        return QDir(KeptReports::standardFolder()).entryList(QDir::Files, QDir::Name);
    }
    QString lastState() const { return m_window->states.constLast(); }
    void makeReporter()
    {
        m_reporter.reset();
        m_reporter = std::make_unique<FRFeedbackReporter>(*m_clock, *m_window);
        m_reporter->setDelegate(&m_program);
    }
    void send(const QString &text, bool withLog = false) { m_window->person->send(text, withLog); }
    void waitForEnd(const QString &state)
    {
        QTRY_VERIFY_WITH_TIMEOUT(lastState().startsWith(state), WaitLimit);
    }
    void beginHanging(const QString &text)
    {
        m_answer.delivery = Delivery::Silent;
        m_reporter->reportFeedback();
        send(text);
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
    }
    QJsonObject received() const
    {
        return QJsonDocument::fromJson(m_server->requests().constLast().body).object();
    }

private Q_SLOTS:
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings%1.conf"_s.arg(++m_files)));
        QVERIFY(QDir(KeptReports::standardFolder()).removeRecursively());
        m_clock = std::make_unique<ManualClock>();
        m_answer = {200, {}, {}};
        m_server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) { return m_answer; });
        UserDefaults::standard().setObject(u"FeedbackURL"_s, m_server->url(u"/r"_s).toString());
        m_window = std::make_unique<NotingWindow>();
        makeReporter();
    }
    void cleanup()
    {
        RecentMessages::uninstall();
        m_reporter.reset();
        m_window.reset();
        m_server.reset();
    }

    void theFormShowsWhatIsSent()
    {
        m_reporter->reportFeedback();
        QStringList names;
        for (const auto &[name, value] : std::as_const(m_window->form.parameters)) {
            names += name;
            QVERIFY2(!value.isEmpty(), qPrintable(name));
            QVERIFY2(!value.contains(QSysInfo::machineHostName()), qPrintable(name));
            QVERIFY2(!value.contains(QDir::homePath()), qPrintable(name));
        }
        QCOMPARE(names, (QStringList{u"application"_s, u"version"_s, u"system"_s, u"qt"_s, u"language"_s}));
        QCOMPARE(m_window->form.text, QString());
        QCOMPARE(m_server->requests().size(), 0);
        send(u"Hello"_s);
        waitForEnd(u"sent"_s);
        QCOMPARE(m_window->states, (QStringList{u"form"_s, u"sending"_s, u"sent"_s}));
        const QJsonObject sent = received();
        QCOMPARE(sent.keys(), (QStringList{u"parameters"_s, u"text"_s}));
        QCOMPARE(sent[u"text"_s], u"Hello"_s);
        QJsonObject shown;
        for (const auto &[name, value] : std::as_const(m_window->form.parameters))
            shown.insert(name, value);
        QCOMPARE(sent[u"parameters"_s].toObject(), shown);
        QVERIFY(keptFiles().isEmpty());
    }

    void messagesGoAlongOnlyWhenWanted()
    {
        RecentMessages::install();
        qCInfo(ours, "the first");
        m_reporter->reportFeedback();
        qCInfo(ours, "not shown any more");
        send(u"Hello"_s);
        waitForEnd(u"sent"_s);
        QCOMPARE(received().keys(), (QStringList{u"parameters"_s, u"text"_s}));
        send(u"Hello"_s, true);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->states.count(u"sent"_s), 2, WaitLimit);
        QCOMPARE(received()[u"log"_s].toArray(), QJsonArray::fromStringList(m_window->form.log));
        QCOMPARE(m_window->form.log, QStringList{u"info plovendix.test: the first"_s});
    }

    void anEmptyTextIsNotSent()
    {
        m_reporter->reportFeedback();
        send(u" \n"_s);
        QCOMPARE(m_window->states, QStringList{u"form"_s});
    }

    void whatCannotBeSentIsKept()
    {
        m_answer.status = 503;
        m_reporter->reportFeedback();
        send(u"Hello"_s);
        waitForEnd(u"failure "_s);
        QCOMPARE(keptFiles().size(), 1);
        const QString path = KeptReports::standardFolder() + u'/' + keptFiles().constFirst();
        QCOMPARE(lastState(), u"failure The maker’s server is not available right now. "
                              u"The report is kept in “%1”."_s.arg(path));
    }

    void tryingAgainKeepsItOnce()
    {
        m_answer.status = 503;
        m_reporter->reportFeedback();
        send(u"Hello"_s);
        waitForEnd(u"failure "_s);
        send(u"Hello again"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->states.size(), 5, WaitLimit);
        QCOMPARE(keptFiles().size(), 1);
        QCOMPARE(KeptReports().oldest()->report.text, u"Hello again"_s);
        m_answer.status = 200;
        send(u"Hello again"_s);
        waitForEnd(u"sent"_s);
        QVERIFY(keptFiles().isEmpty());
    }

    void aKeptReportIsOfferedTheNextTime()
    {
        m_answer.status = 503;
        m_reporter->reportFeedback();
        send(u"Hello"_s);
        waitForEnd(u"failure "_s);
        makeReporter();
        m_reporter->reportFeedback();
        QCOMPARE(m_window->form.text, u"Hello"_s);
        QVERIFY(m_window->form.hint.startsWith(u"This report from "_s));
        QCOMPARE(keptFiles().size(), 1);
        m_answer.status = 200;
        send(u"Hello"_s);
        waitForEnd(u"sent"_s);
        QVERIFY(keptFiles().isEmpty());
        m_reporter->reportFeedback();
        QCOMPARE(m_window->form.text, QString());
        QCOMPARE(m_window->form.hint, QString());
    }

    void unwritableFolderIsReported()
    {
        QVERIFY(QDir().mkpath(QFileInfo(KeptReports::standardFolder()).path()));
        QFile inTheWay(KeptReports::standardFolder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        m_answer.status = 503;
        m_reporter->reportFeedback();
        send(u"Hello"_s);
        waitForEnd(u"failure "_s);
        QVERIFY(
            lastState().contains(u"could not be kept in “%1” either. "_s.arg(KeptReports::standardFolder())));
        QVERIFY(inTheWay.remove());
    }

    void aSecondReportWaitsForTheFirst()
    {
        beginHanging(u"One"_s);
        send(u"Two"_s);
        m_reporter->reportFeedback();
        QCOMPARE(m_window->states, (QStringList{u"form"_s, u"sending"_s, u"forward"_s}));
        QCOMPARE(m_server->requests().size(), 1);
    }

    void sendingCanBeStopped()
    {
        beginHanging(u"One"_s);
        m_window->person->stopSending();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnections(), 0, WaitLimit);
        QCOMPARE(m_window->states, (QStringList{u"form"_s, u"sending"_s}));
        QVERIFY(keptFiles().isEmpty());
        m_answer.delivery = Delivery::Whole;
        send(u"One"_s);
        waitForEnd(u"sent"_s);
    }

    void aReportOnItsWayAtTheEndIsKept()
    {
        beginHanging(u"One"_s);
        m_reporter.reset();
        QVERIFY(!m_window->person);
        QCOMPARE(keptFiles().size(), 1);
        QCOMPARE(KeptReports().oldest()->report.text, u"One"_s);
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>());
    }

    void atTheEndNothingIsKeptThatWasNotSent()
    {
        m_reporter->reportFeedback();
        m_reporter.reset();
        QVERIFY(keptFiles().isEmpty());
    }

    void theReservedAddressHoldsWithoutOneInTheSettings()
    {
        UserDefaults::standard().removeObject(u"FeedbackURL"_s);
        QCOMPARE(UserDefaults::standard().string(u"FeedbackURL"_s),
                 u"https://feedback.quorvane.example/plovendix/reports"_s);
    }
};

PLOVENDIX_TEST(FeedbackReporterTest)
#include "FeedbackReporterTest.moc"
