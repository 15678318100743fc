#include "ui_UpdateViewController.h"

#include "UpdateViewController.h"

#include <ui/scenes/SceneConnections.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize PlainSize(460, 230);
constexpr QSize OfferSize(500, 440);
constexpr double NotesMargin = 8; // points
} // namespace

UpdateViewController::UpdateViewController()
{
    setTitle(String::localize(u"Software Update"_s));
}

UpdateViewController::~UpdateViewController() = default;

std::unique_ptr<ui::Window> UpdateViewController::makeWindow()
{
    auto made = std::make_unique<ui::Window>();
    const auto content =
        Storyboard::named(u"Main"_s).instantiate<UpdateViewController>(u"UpdateViewController"_s);
    made->setObjectName(u"UpdateWindow"_s);
    made->setContentViewController(content);
    made->setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    made->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    connect(made.get(), &ui::Window::closed, content.get(), &UpdateViewController::closed);
    return made;
}

void UpdateViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::UpdateViewController>();
    m_scene->setupUi(root.get());
    m_scene->iconView->setImage(ui::Image::named(u"com.quorvane.Plovendix"_s));
    m_scene->notesView->viewport()->setAutoFillBackground(false);
    m_scene->notesView->document()->setDocumentMargin(NotesMargin);
    connectScene(*root, *this);
    setView(std::move(root));
}

void UpdateViewController::viewWillAppear()
{
    PlatformController::viewWillAppear();
    window()->setResizable(false);
    window()->center();
}

void UpdateViewController::viewDidAppear()
{
    PlatformController::viewDidAppear();
    window()->makeFirstResponder(defaultButton());
}

void UpdateViewController::showChecking()
{
    enter(State::Checking, String::localize(u"Checking for updates…"_s), QString());
}

void UpdateViewController::showUpToDate(const QString &installedVersion)
{
    enter(State::Done, String::localize(u"You are up to date"_s),
          String::fill(String::localize(u"Plovendix %@ is the newest version."_s), {installedVersion}));
}

void UpdateViewController::showOffer(const UpdateOffer &offer, Arrival arrival)
{
    const QString explanation = String::fill(
        String::localize(u"Plovendix %1$@ is available; you have %2$@. It is signed by the maker."_s),
        {offer.version, offer.installedVersion});
    m_scene->notesView->setPlainText(offer.notes);
    enter(State::Offer, String::localize(u"There is a new version of Plovendix"_s), explanation, arrival);
}

void UpdateViewController::showFailure(const QString &sentence)
{
    enter(State::Done, String::localize(u"The check for updates failed"_s), sentence);
}

void UpdateViewController::enter(State state, const QString &headline, const QString &explanation,
                                 Arrival arrival)
{
    m_state = state;
    m_scene->headlineLabel->setText(headline);
    m_scene->explanationLabel->setText(explanation);
    m_scene->explanationLabel->setVisible(!explanation.isEmpty());
    m_scene->busyIndicator->setVisible(state == State::Checking);
    m_scene->cancelButton->setVisible(state == State::Checking);
    m_scene->okButton->setVisible(state == State::Done);
    for (QPushButton *button : {m_scene->skipButton, m_scene->laterButton, m_scene->getButton})
        button->setVisible(state == State::Offer);
    m_scene->notesView->setVisible(state == State::Offer && !m_scene->notesView->document()->isEmpty());
    window()->setContentSize(sizeFor(state));
    window()->makeFirstResponder(defaultButton());
    if (arrival == Arrival::Asked)
        return window()->makeKeyAndOrderFront();
    window()->setAttribute(Qt::WA_ShowWithoutActivating);
    window()->show();
    window()->setAttribute(Qt::WA_ShowWithoutActivating, false);
}

QSize UpdateViewController::sizeFor(State state)
{
    const QSize least = state == State::Offer ? OfferSize : PlainSize;
    // Resize the window, because sentences and buttons are longer in some languages.
    QLayout *layout = view()->layout();
    layout->activate(); // includes what was just shown or hidden
    const int width = std::max(least.width(), layout->totalMinimumSize().width());
    return {width, std::max(least.height(), layout->totalHeightForWidth(width))};
}

QPushButton *UpdateViewController::defaultButton() const
{
    switch (m_state) {
    case State::Checking:
        return m_scene->cancelButton;
    case State::Offer:
        return m_scene->getButton;
    case State::Done:
        return m_scene->okButton;
    }
    return nullptr;
}

void UpdateViewController::getUpdate(QObject *)
{
    Q_EMIT getRequested();
}

void UpdateViewController::skipVersion(QObject *)
{
    Q_EMIT skipRequested();
}

void UpdateViewController::close(QObject *)
{
    window()->close();
}

void UpdateViewController::pressDefaultButton(QObject *)
{
    auto *focused = qobject_cast<QPushButton *>(QApplication::focusWidget());
    (focused && focused->window() == window() ? focused : defaultButton())->click();
}

void registerUpdateScene()
{
    Storyboard::registerController(u"Main"_s, u"UpdateViewController"_s,
                                   [] { return ViewController::make<UpdateViewController>(); });
}
