#include "MainViewFixture.h"

#include <model/ServiceStatus.h>
#include <ui/views/Animator.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

namespace
{
using namespace Qt::StringLiterals;
}

MainViewFixture::MainViewFixture()
{
    MainQueue::shared().clear();
    MainQueue::shared().useManualClock();
    Animator::setReducedMotion(true);
    registerSearchScenes();
    service = ScriptedSubtitleService::install();
    metadata = ScriptedMetadataService::install();
    controller = ViewController::make<MainViewController>();
    window = std::make_unique<ui::Window>();
    window->setFullSizeContentView(true);
    window->setContentSize(QSize(760, 640));
    window->setContentViewController(controller);
    window->show();
    static_cast<void>(QTest::qWaitForWindowExposed(window.get()));
}

MainViewFixture::~MainViewFixture()
{
    controller.reset();
    window.reset();
    MainQueue::shared().clear();
    MainQueue::shared().useSystemClock();
    Animator::setReducedMotion(std::nullopt);
    UserDefaults::standard().removeObject(u"languageCode"_s);
}

void MainViewFixture::advance(std::chrono::milliseconds duration) const
{
    MainQueue::shared().advance(duration);
    turn();
}

void MainViewFixture::searchFile(const std::optional<ExternalRequestInfo> &request) const
{
    controller->searchForFile(video, request);
}

void MainViewFixture::search(const QString &text) const
{
    controller->searchForText(text, std::nullopt);
}

void MainViewFixture::answer(const Result<QueryResult> &result) const
{
    service->finishLast(result);
    turn();
}

void MainViewFixture::showResults(int count) const
{
    search();
    answer(count);
}

void MainViewFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(window->windowHandle(), key, modifiers);
}

ExternalRequestInfo MainViewTest::tessaly()
{
    return {u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
}

base::Error MainViewTest::refusal()
{
    return base::Error{u"Service"_s, 7, u"The service refuses."_s};
}

void MainViewTest::setLanguage(const QString &code)
{
    UserDefaults::standard().setObject(u"languageCode"_s, code);
}

void MainViewTest::close()
{
    m_view->window.reset();
    const std::weak_ptr<MainViewController> gone = std::exchange(m_view->controller, nullptr);
    QVERIFY(gone.expired());
}

void MainViewTest::init()
{
    ServiceStatus::shared().setValue({});
    m_view = std::make_unique<MainViewFixture>();
    m_sandbox.clearPrintedLines();
}

void MainViewTest::cleanup()
{
    m_view.reset();
    ServiceStatus::shared().setValue({});
}

bool whileAlertIsUp(const std::function<void()> &act, const std::function<void()> &meanwhile)
{
    bool cameUp = false;
    QPointer<QMessageBox> seen;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!alert || alert == seen)
            return;
        seen = alert;
        cameUp = true;
        meanwhile();
    });
    poll.start(1);
    act();
    return cameUp;
}

void dismissAlert()
{
    if (auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
        alert->accept();
}

QString alertDuring(const std::function<void()> &act)
{
    QString text;
    whileAlertIsUp(act, [&] {
        text = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())->text();
        dismissAlert();
    });
    return text;
}
