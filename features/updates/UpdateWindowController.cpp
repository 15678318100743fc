#include "UpdateWindowController.h"

#include "UpdateViewController.h"

#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

void UpdateWindowController::loadWindow()
{
    auto window = std::make_unique<ui::Window>();
    window->setObjectName(u"UpdateWindow"_s);
    setWindow(std::move(window));
}

void UpdateWindowController::windowDidLoad()
{
    m_viewController =
        Storyboard::named(u"Main"_s).instantiate<UpdateViewController>(u"UpdateViewController"_s);
    ui::Window *shown = window();
    shown->setContentViewController(m_viewController);
    shown->setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    shown->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    connect(shown, &ui::Window::closed, this, [this] {
        if (m_answering)
            m_answering->windowClosed();
    });
    connect(m_viewController.get(), &UpdateViewController::getRequested, this, [this] {
        if (m_answering)
            m_answering->getUpdate();
    });
    connect(m_viewController.get(), &UpdateViewController::skipRequested, this, [this] {
        if (m_answering)
            m_answering->skipVersion();
    });
}

UpdateViewController &UpdateWindowController::content()
{
    window();
    return *m_viewController;
}

void UpdateWindowController::showChecking()
{
    content().showChecking();
    bringForward();
}

void UpdateWindowController::showUpToDate(const QString &installedVersion)
{
    content().showUpToDate(installedVersion);
    bringForward();
}

void UpdateWindowController::showOffer(const UpdateOffer &offer, Arrival arrival)
{
    content().showOffer(offer);
    if (arrival == Arrival::Asked)
        return bringForward();
    window()->setAttribute(Qt::WA_ShowWithoutActivating);
    window()->show();
    window()->setAttribute(Qt::WA_ShowWithoutActivating, false);
}

void UpdateWindowController::showFailure(const QString &sentence)
{
    content().showFailure(sentence);
    bringForward();
}

void UpdateWindowController::bringForward()
{
    window()->makeKeyAndOrderFront();
}

bool UpdateWindowController::isShown() const
{
    return isWindowLoaded() && m_viewController && m_viewController->window() &&
           m_viewController->window()->isVisible();
}

void UpdateWindowController::dismiss()
{
    if (isShown())
        window()->hide();
}

void registerUpdateScene()
{
    Storyboard::registerController(QStringLiteral("Main"), QStringLiteral("UpdateViewController"),
                                   [] { return ViewController::make<UpdateViewController>(); });
}
