#include "ui_FeedbackViewController.h"

#include "FeedbackViewController.h"

#include <ui/scenes/SceneConnections.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr double TextMargin = 8; // points
constexpr QSize ContentSize(520, 540);

void makeBox(QPlainTextEdit &view)
{
    view.viewport()->setAutoFillBackground(false);
    view.document()->setDocumentMargin(TextMargin);
}
} // namespace

FeedbackViewController::FeedbackViewController()
{
    setTitle(String::localize(u"Send Feedback"_s));
}

FeedbackViewController::~FeedbackViewController() = default;

std::unique_ptr<ui::Window> FeedbackViewController::makeWindow()
{
    auto made = std::make_unique<ui::Window>();
    made->setObjectName(u"FeedbackWindow"_s);
    made->setContentSize(ContentSize);
    made->setContentViewController(
        Storyboard::named(u"Main"_s).instantiate<FeedbackViewController>(u"FeedbackViewController"_s));
    made->setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    made->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    return made;
}

void FeedbackViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::FeedbackViewController>();
    m_scene->setupUi(root.get());
    makeBox(*m_scene->textView);
    makeBox(*m_scene->detailsView);
    connect(m_scene->textView, &QPlainTextEdit::textChanged, this, &FeedbackViewController::judgeText);
    connectScene(*root, *this);
    setView(std::move(root));
}

void FeedbackViewController::viewWillAppear()
{
    PlatformController::viewWillAppear();
    window()->center();
}

void FeedbackViewController::viewDidAppear()
{
    PlatformController::viewDidAppear();
    window()->makeFirstResponder(m_scene->textView);
}

void FeedbackViewController::showForm(const FeedbackReport &report, const QString &hint)
{
    m_report = report;
    if (m_scene->textView->toPlainText().trimmed().isEmpty())
        m_scene->textView->setPlainText(report.text);
    m_scene->hintLabel->setText(hint);
    m_scene->hintLabel->setVisible(!hint.isEmpty());
    m_scene->logCheckbox->setChecked(false);
    m_scene->logCheckbox->setVisible(!report.log.isEmpty());
    showDetails(nullptr);
    enter(State::Writing, QString());
    window()->makeKeyAndOrderFront();
}

void FeedbackViewController::showDetails(QObject *)
{
    QStringList lines;
    for (const auto &[name, value] : m_report.parameters)
        lines += name + u": "_s + value;
    if (m_scene->logCheckbox->isChecked())
        lines += QStringList{QString()} + m_report.log;
    m_scene->detailsView->setPlainText(lines.join(u'\n'));
}

void FeedbackViewController::showSending()
{
    enter(State::Sending, String::localize(u"Sending…"_s));
}

void FeedbackViewController::showSent()
{
    m_scene->textView->clear();
    m_scene->hintLabel->hide();
    enter(State::Sent, String::localize(u"Thank you. Your report was sent."_s));
}

void FeedbackViewController::showFailure(const QString &sentence)
{
    enter(State::Writing, sentence);
}

void FeedbackViewController::enter(State state, const QString &status)
{
    m_state = state;
    const bool isWriting = state == State::Writing;
    m_scene->textView->setEnabled(isWriting);
    m_scene->logCheckbox->setEnabled(isWriting);
    m_scene->busyIndicator->setVisible(state == State::Sending);
    m_scene->sendButton->setVisible(state != State::Sent);
    m_scene->cancelButton->setVisible(state != State::Sent);
    m_scene->closeButton->setVisible(state == State::Sent);
    m_scene->statusLabel->setText(status);
    m_scene->statusLabel->setVisible(!status.isEmpty());
    m_scene->sendButton->setEnabled(maySend());
    QWidget *next = isWriting                 ? static_cast<QWidget *>(m_scene->textView)
                    : state == State::Sending ? static_cast<QWidget *>(m_scene->cancelButton)
                                              : static_cast<QWidget *>(m_scene->closeButton);
    window()->makeFirstResponder(next);
}

bool FeedbackViewController::maySend() const
{
    const QString text = m_scene->textView->toPlainText();
    return m_state == State::Writing && !text.trimmed().isEmpty() && text.size() <= MaxTextLength;
}

void FeedbackViewController::judgeText()
{
    if (m_state != State::Writing)
        return;
    const bool isTooLong = m_scene->textView->document()->characterCount() > MaxTextLength + 1;
    m_scene->statusLabel->setText(
        isTooLong ? String::localize(u"The text is too long to be sent. Shorten it, please."_s) : QString());
    m_scene->statusLabel->setVisible(isTooLong);
    m_scene->sendButton->setEnabled(maySend());
}

void FeedbackViewController::send(QObject *)
{
    if (maySend())
        Q_EMIT sendRequested(m_scene->textView->toPlainText(), m_scene->logCheckbox->isChecked());
}

void FeedbackViewController::cancel(QObject *)
{
    if (m_state == State::Sending) {
        Q_EMIT stopRequested();
        return enter(State::Writing, String::localize(u"The report was not sent."_s));
    }
    window()->close();
}

void registerFeedbackScene()
{
    Storyboard::registerController(u"Main"_s, u"FeedbackViewController"_s,
                                   [] { return ViewController::make<FeedbackViewController>(); });
}
