#include "ui_UpdateViewController.h"

#include "UpdateViewController.h"

#include <ui/scenes/SceneConnections.h>
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
    ui::Window *shown = window();
    if (!shown)
        return;
    shown->setResizable(false);
    shown->center();
}

void UpdateViewController::viewDidAppear()
{
    PlatformController::viewDidAppear();
    if (ui::Window *shown = window())
        shown->makeFirstResponder(defaultButton());
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

void UpdateViewController::showOffer(const UpdateOffer &offer)
{
    const QString explanation = String::fill(
        String::localize(u"Plovendix %1$@ is available; you have %2$@. It is signed by the maker."_s),
        {offer.version, offer.installedVersion});
    enter(State::Offer, String::localize(u"There is a new version of Plovendix"_s), explanation);
    m_scene->notesView->setPlainText(offer.notes);
    m_scene->notesView->setVisible(!offer.notes.isEmpty());
}

void UpdateViewController::showFailure(const QString &sentence)
{
    enter(State::Done, String::localize(u"The check for updates failed"_s), sentence);
}

void UpdateViewController::enter(State state, const QString &headline, const QString &explanation)
{
    view();
    m_state = state;
    m_scene->headlineLabel->setText(headline);
    m_scene->explanationLabel->setText(explanation);
    m_scene->explanationLabel->setVisible(!explanation.isEmpty());
    m_scene->busyIndicator->setVisible(state == State::Checking);
    m_scene->cancelButton->setVisible(state == State::Checking);
    m_scene->okButton->setVisible(state == State::Done);
    for (QWidget *part :
         {static_cast<QWidget *>(m_scene->notesView), static_cast<QWidget *>(m_scene->skipButton),
          static_cast<QWidget *>(m_scene->laterButton), static_cast<QWidget *>(m_scene->getButton)})
        part->setVisible(state == State::Offer);
    if (ui::Window *shown = window()) {
        shown->setContentSize(sizeFor(state));
        shown->makeFirstResponder(defaultButton());
    }
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
    if (ui::Window *shown = window())
        shown->close();
}

void UpdateViewController::pressDefaultButton(QObject *)
{
    auto *focused = qobject_cast<QPushButton *>(QApplication::focusWidget());
    (focused && focused->window() == window() ? focused : defaultButton())->click();
}
