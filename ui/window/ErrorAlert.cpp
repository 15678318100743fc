#include "ErrorAlert.h"

#include "DialogFrame.h"

#include <base/LocalizedString.h>
#include <base/MainQueue.h>

#include <QMessageBox>
#include <QPointer>

namespace
{
constexpr int MaxTextLength = 1500;
constexpr int MaxLines = 15;
constexpr int MaxWordLength = 100;

/// Limits lines and length, so that the button stays on the screen with any text of a server.
QString boundedText(const QString &text)
{
    QStringList lines = text.left(MaxTextLength).split(u'\n');
    if (text.size() <= MaxTextLength && lines.size() <= MaxLines)
        return text;
    QString bounded = lines.mid(0, MaxLines).join(u'\n');
    if (bounded.back().isHighSurrogate())
        bounded.chop(1);
    return bounded + QChar(0x2026);
}

/// Inserts zero-width spaces into words that would not fit. Paths break at their slashes anyway.
QString breakable(const QString &text)
{
    QString result;
    int wordLength = 0;
    for (const QChar character : text) {
        if (wordLength >= MaxWordLength && !character.isLowSurrogate() && !character.isMark()) {
            result += QChar(0x200B);
            wordLength = 0;
        }
        const bool endsWord = character.isSpace() || character == u'/' || character == u'-';
        wordLength = endsWord ? 0 : wordLength + 1;
        result += character;
    }
    return result;
}
} // namespace

void showErrorAlert(const base::Error &error, QWidget *window)
{
    Q_ASSERT(MainQueue::isMainThread());
    // The alert is deleted with its window, possibly while it is shown.
    const QPointer<QMessageBox> alert = new QMessageBox(window);
    alert->setWindowTitle(QStringLiteral("Plovendix"));
    alert->setIcon(QMessageBox::Warning);
    alert->setTextFormat(Qt::PlainText);
    alert->setText(breakable(boundedText(error.localizedDescription)));
    alert->addButton(String::localize(QStringLiteral("OK")), QMessageBox::AcceptRole);
    alert->setWindowModality(Qt::ApplicationModal);
    DialogFrame::putAround(*alert);
    alert->exec();
    if (alert)
        alert->deleteLater();
}
