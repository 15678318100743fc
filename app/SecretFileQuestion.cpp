#include "SecretFileQuestion.h"

#include <base/LocalizedString.h>
#include <ui/window/DialogFrame.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

void SecretFileQuestion::ask(Answer answer)
{
    if (m_hasAgreed) {
        answer(true);
        return;
    }
    m_waiting.push_back(std::move(answer));
    if (m_waiting.size() > 1)
        return;
    auto *question = new QMessageBox(QApplication::activeWindow());
    question->setWindowTitle(u"Plovendix"_s);
    question->setIcon(QMessageBox::Question);
    question->setTextFormat(Qt::PlainText);
    question->setText(String::localize(
        u"The keyring of this computer does not take the key. Keep it in a file that only you can read?"_s));
    const auto *keep = question->addButton(String::localize(u"Keep in a File"_s), QMessageBox::AcceptRole);
    question->addButton(String::localize(u"Do Not Keep"_s), QMessageBox::RejectRole);
    DialogFrame::putAround(*question);
    // Also answered when the box is destroyed with its window.
    const auto hasAgreed = std::make_shared<bool>(false);
    connect(question, &QMessageBox::buttonClicked, this,
            [=](const QAbstractButton *button) { *hasAgreed = button == keep; });
    connect(question, &QObject::destroyed, this, [=, this] { finish(*hasAgreed); });
    connect(question, &QDialog::finished, question, &QObject::deleteLater);
    question->open();
}

void SecretFileQuestion::finish(bool agreed)
{
    m_hasAgreed = agreed;
    for (const Answer &answer : std::exchange(m_waiting, {}))
        answer(agreed);
}
