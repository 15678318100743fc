#include "ui_FeedbackViewController.h"

#include "FeedbackViewController.h"

#include <ui/scenes/SceneConnections.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr double TextMargin = 8; // points

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
    enter(State::Writing, QString());
}

void FeedbackViewController::viewWillAppear()
{
    PlatformController::viewWillAppear();
    if (ui::Window *shown = window())
        shown->center();
}

void FeedbackViewController::viewDidAppear()
{
    PlatformController::viewDidAppear();
    if (ui::Window *shown = window())
        shown->makeFirstResponder(m_scene->textView);
}

void FeedbackViewController::showForm(const FeedbackForm &form)
{
    view();
    m_form = form;
    if (m_scene->textView->toPlainText().trimmed().isEmpty())
        m_scene->textView->setPlainText(form.text);
    m_scene->hintLabel->setText(form.hint);
    m_scene->hintLabel->setVisible(!form.hint.isEmpty());
    m_scene->logCheckbox->setChecked(false);
    m_scene->logCheckbox->setVisible(!form.log.isEmpty());
    showDetails(nullptr);
    enter(State::Writing, QString());
}

void FeedbackViewController::showDetails(QObject *)
{
    QStringList lines;
    for (const auto &[name, value] : m_form.parameters)
        lines += name + u": "_s + value;
    if (m_scene->logCheckbox->isChecked())
        lines += QStringList{QString()} + m_form.log;
    m_scene->detailsView->setPlainText(lines.join(u'\n'));
}

void FeedbackViewController::showSending()
{
    view();
    enter(State::Sending, String::localize(u"Sending…"_s));
}

void FeedbackViewController::showSent()
{
    view();
    m_scene->textView->clear();
    m_scene->hintLabel->hide();
    enter(State::Sent, String::localize(u"Thank you. Your report was sent."_s));
}

void FeedbackViewController::showFailure(const QString &sentence)
{
    view();
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
    if (ui::Window *shown = window())
        shown->makeFirstResponder(next);
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
    if (ui::Window *shown = window())
        shown->close();
}
