#include "MainViewFixture.h"

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

void MainViewFixture::showResults(int count) const
{
    controller->searchForText(u"anything"_s, std::nullopt);
    service->finishLast(answerWith(count));
    turn();
}

void MainViewFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(window->windowHandle(), key, modifiers);
}

bool whileAlertIsUp(const std::function<void()> &act, const std::function<void()> &meanwhile)
{
    bool seen = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (!qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            return;
        seen = true;
        poll.stop();
        meanwhile();
    });
    poll.start(1);
    act();
    return seen;
}

void dismissAlert()
{
    if (auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
        alert->accept();
}

QString alertDuring(const std::function<void()> &act)
{
    QString text;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            text = alert->text();
            alert->accept();
        }
    });
    poll.start(1);
    act();
    return text;
}
