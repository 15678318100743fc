#include "FeedbackWindowController.h"

#include "FeedbackViewController.h"

#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize ContentSize(520, 540);
}

void FeedbackWindowController::loadWindow()
{
    auto window = std::make_unique<ui::Window>();
    window->setObjectName(u"FeedbackWindow"_s);
    window->setContentSize(ContentSize);
    setWindow(std::move(window));
}

void FeedbackWindowController::windowDidLoad()
{
    m_viewController =
        Storyboard::named(u"Main"_s).instantiate<FeedbackViewController>(u"FeedbackViewController"_s);
    ui::Window *shown = window();
    shown->setContentViewController(m_viewController);
    shown->setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    shown->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    connect(m_viewController.get(), &FeedbackViewController::sendRequested, this,
            [this](const QString &text, bool withLog) {
                if (m_answering)
                    m_answering->send(text, withLog);
            });
    connect(m_viewController.get(), &FeedbackViewController::stopRequested, this, [this] {
        if (m_answering)
            m_answering->stopSending();
    });
}

FeedbackViewController &FeedbackWindowController::content()
{
    window();
    return *m_viewController;
}

void FeedbackWindowController::showForm(const FeedbackForm &form)
{
    content().showForm(form);
    bringForward();
}

void FeedbackWindowController::showSending()
{
    content().showSending();
}

void FeedbackWindowController::bringForward()
{
    window()->makeKeyAndOrderFront();
}

void FeedbackWindowController::showSent()
{
    content().showSent();
}

void FeedbackWindowController::showFailure(const QString &sentence)
{
    content().showFailure(sentence);
}

void registerFeedbackScene()
{
    Storyboard::registerController(QStringLiteral("Main"), QStringLiteral("FeedbackViewController"),
                                   [] { return ViewController::make<FeedbackViewController>(); });
}
