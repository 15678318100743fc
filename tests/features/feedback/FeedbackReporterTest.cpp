#include <base/UserDefaults.h>
#include <features/feedback/FRFeedbackReporter.h>
#include <features/feedback/FeedbackViewController.h>
#include <features/feedback/RecentMessages.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>
#include <ui/window/Window.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLoggingCategory>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(ours, "plovendix.test", QtInfoMsg)

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
    std::unique_ptr<FRFeedbackReporter> m_reporter;
    ServedAnswer m_answer;
    int m_files = 0;

    static QStringList keptFiles()
    {
        return QDir(KeptReports::standardFolder()).entryList(QDir::Files, QDir::Name);
    }
    template <class Type>
    static Type *child(const char *name)
    {
        return ui::Window::openWindows().constFirst()->findChild<Type *>(QString::fromLatin1(name));
    }
    static QPlainTextEdit &textView() { return *child<QPlainTextEdit>("textView"); }
    static QString status() { return child<QLabel>("statusLabel")->text(); }
    void makeReporter()
    {
        m_reporter.reset();
        m_reporter = std::make_unique<FRFeedbackReporter>(*m_clock);
        m_reporter->setDelegate(&m_program);
    }
    /// Sends the text in the open window.
    static void send(const QString &text)
    {
        textView().setPlainText(text);
        child<QPushButton>("sendButton")->click();
        QCOMPARE(status(), u"Sending…"_s);
    }
    /// Opens the window and sends the text; the server answers so.
    void report(const QString &text, int status)
    {
        m_answer.status = status;
        m_reporter->reportFeedback();
        send(text);
        waitForEnd(status == 200);
    }
    static void waitForEnd(bool isSent)
    {
        QTRY_VERIFY_WITH_TIMEOUT(status() != u"Sending…"_s, WaitLimit);
        QCOMPARE(status() == u"Thank you. Your report was sent."_s, isSent);
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
    void initTestCase() { registerFeedbackScene(); }
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings%1.conf"_s.arg(++m_files)));
        QVERIFY(QDir(KeptReports::standardFolder()).removeRecursively());
        m_clock = std::make_unique<ManualClock>();
        m_answer = {200, {}, {}};
        m_server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) { return m_answer; });
        UserDefaults::standard().setObject(u"FeedbackURL"_s, m_server->url(u"/r"_s).toString());
        makeReporter();
    }
    void cleanup()
    {
        RecentMessages::uninstall();
        m_reporter.reset();
        m_server.reset();
    }

    void formShowsWhatIsSent()
    {
        m_reporter->reportFeedback();
        QStringList names;
        QJsonObject shown;
        const QString details = child<QPlainTextEdit>("detailsView")->toPlainText();
        for (const QString &line : details.split(u'\n')) {
            names += line.section(u": "_s, 0, 0);
            shown.insert(names.constLast(), line.section(u": "_s, 1));
        }
        QCOMPARE(names, (QStringList{u"application"_s, u"version"_s, u"system"_s, u"qt"_s, u"language"_s}));
        QVERIFY(!details.contains(QSysInfo::machineHostName()) && !details.contains(QDir::homePath()));
        QCOMPARE(m_server->requests().size(), 0);
        send(u"Hello"_s);
        waitForEnd(true);
        const QJsonObject sent = received();
        QCOMPARE(sent.keys(), (QStringList{u"parameters"_s, u"text"_s}));
        QCOMPARE(sent[u"text"_s], u"Hello"_s);
        QCOMPARE(sent[u"parameters"_s].toObject(), shown);
        QVERIFY(keptFiles().isEmpty());
    }

    void messagesAreSentWhenChosenAsShown()
    {
        RecentMessages::install();
        qCInfo(ours, "the first");
        report(u"Hello"_s, 200);
        QCOMPARE(received().keys(), (QStringList{u"parameters"_s, u"text"_s}));
        m_reporter->reportFeedback();
        qCInfo(ours, "not shown any more");
        child<QAbstractButton>("logCheckbox")->click();
        send(u"Hello"_s);
        waitForEnd(true);
        QCOMPARE(received()[u"log"_s].toArray(), QJsonArray{u"info plovendix.test: the first"_s});
    }

    void unsentReportIsKeptAndOfferedTheNextTime()
    {
        report(u"Hello"_s, 503);
        QCOMPARE(keptFiles().size(), 1);
        QCOMPARE(status(),
                 u"The maker’s server is not available right now. The report is kept in “%1/%2”."_s.arg(
                     KeptReports::standardFolder(), keptFiles().constFirst()));
        makeReporter();
        m_reporter->reportFeedback();
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
        QVERIFY(child<QLabel>("hintLabel")->text().startsWith(u"This report from "_s));
        QCOMPARE(keptFiles().size(), 1);
        m_answer.status = 200;
        send(u"Hello"_s);
        waitForEnd(true);
        QVERIFY(keptFiles().isEmpty());
        m_reporter->reportFeedback();
        QCOMPARE(textView().toPlainText(), QString());
        QCOMPARE(child<QLabel>("hintLabel")->text(), QString());
    }

    void tryingAgainKeepsItOnce()
    {
        report(u"Hello"_s, 503);
        send(u"Hello again"_s);
        waitForEnd(false);
        QCOMPARE(keptFiles().size(), 1);
        QCOMPARE(KeptReports().oldest()->report.text, u"Hello again"_s);
        report(u"Hello again"_s, 200);
        QVERIFY(keptFiles().isEmpty());
    }

    void unwritableFolderIsReported()
    {
        QVERIFY(QDir().mkpath(QFileInfo(KeptReports::standardFolder()).path()));
        QFile inTheWay(KeptReports::standardFolder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        report(u"Hello"_s, 503);
        QVERIFY(
            status().contains(u"could not be kept in “%1” either. "_s.arg(KeptReports::standardFolder())));
        QVERIFY(inTheWay.remove());
    }

    void openingTheFormAgainLeavesARunningTransfer()
    {
        beginHanging(u"One"_s);
        ui::Window::openWindows().constFirst()->close();
        m_reporter->reportFeedback();
        QCOMPARE(status(), u"Sending…"_s);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void transferCanBeStopped()
    {
        beginHanging(u"One"_s);
        child<QPushButton>("cancelButton")->click();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnections(), 0, WaitLimit);
        QCOMPARE(status(), u"The report was not sent."_s);
        QVERIFY(keptFiles().isEmpty());
        m_answer.delivery = Delivery::Whole;
        send(u"One"_s);
        waitForEnd(true);
    }

    void reportInTransferAtTheEndIsKept()
    {
        beginHanging(u"One"_s);
        m_reporter.reset();
        QCOMPARE(keptFiles().size(), 1);
        QCOMPARE(KeptReports().oldest()->report.text, u"One"_s);
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>());
    }

    void reportThatWasNotSentIsNotKeptAtTheEnd()
    {
        m_reporter->reportFeedback();
        textView().setPlainText(u"One"_s);
        m_reporter.reset();
        QVERIFY(keptFiles().isEmpty());
    }

    void reservedAddressIsUsedWithoutASetting()
    {
        UserDefaults::standard().removeObject(u"FeedbackURL"_s);
        QCOMPARE(UserDefaults::standard().string(u"FeedbackURL"_s),
                 u"https://feedback.quorvane.example/plovendix/reports"_s);
    }
};

PLOVENDIX_GUI_TEST(FeedbackReporterTest)
#include "FeedbackReporterTest.moc"
