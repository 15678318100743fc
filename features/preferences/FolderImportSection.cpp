#include "FolderImportSection.h"

#include "FolderDialog.h"

#include <base/LocalizedString.h>
#include <ui/controls/ProgressLine.h>
#include <ui/style/BusyIndicator.h>

#include <QDir>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Steps = 1000; // of the progress line, whose range is an int

/// Replaces one button by another and keeps the keyboard focus there, also while a dialogue is open.
void exchange(QPushButton &from, QPushButton &to)
{
    const bool hadFocus = from.window()->focusWidget() == &from;
    to.show();
    from.hide();
    if (hadFocus)
        to.setFocus(Qt::OtherFocusReason);
}

QString counted(const QString &format, qint64 count)
{
    return String::fill(format, {QLocale().toString(count)});
}

QString added(const FolderImportState &state)
{
    return counted(String::localize(u"Subtitles added: %@."_s), state.added);
}

QString knownAndRefused(const FolderImportState &state)
{
    QStringList sentences;
    if (state.known > 0)
        sentences += counted(String::localize(u"Known already: %@."_s), state.known);
    if (state.refused > 0) {
        sentences += counted(String::localize(u"Could not be read: %@."_s), state.refused);
        sentences += state.firstRefusal;
    }
    return sentences.join(u' ');
}

QString finished(const FolderImportState &state)
{
    if (state.total == 0)
        return String::fill(String::localize(u"There are no subtitle files in “%@”."_s),
                            {QDir(state.folder).dirName()});
    return u"%1 %2"_s.arg(added(state), knownAndRefused(state)).trimmed();
}

/// The progress as one line.
QString progressSentence(const FolderImportState &state)
{
    if (state.phase == FolderImportState::Phase::Stopping)
        return String::localize(u"Stopping…"_s);
    if (state.files == 0)
        return counted(String::localize(u"Subtitle files found: %@"_s), state.total);
    const QLocale locale;
    return String::fill(String::localize(u"%1$@ of %2$@ files, subtitles added: %3$@"_s),
                        {locale.toString(state.files), locale.toString(std::max(state.files, state.total)),
                         locale.toString(state.added)});
}

/// The result; empty when there was no import.
QString endSentence(const FolderImportState &state)
{
    switch (state.phase) {
    case FolderImportState::Phase::Finished:
        return finished(state);
    case FolderImportState::Phase::Stopped:
        return u"%1 %2"_s.arg(added(state), String::localize(u"Add the folder again to go on from here."_s));
    case FolderImportState::Phase::Failed:
        return state.added > 0 ? u"%1 %2"_s.arg(state.failure, added(state)) : state.failure;
    default:
        return {};
    }
}
} // namespace

FolderImportSection::FolderImportSection(const Parts &parts, QWidget &view)
    : QObject(&view), m_parts(parts), m_importing(FolderImporting::shared())
{
    m_parts.progressLine->setRange(0, Steps);
    m_parts.addButton->setEnabled(m_importing != nullptr);
    if (m_importing)
        connect(m_importing.get(), &FolderImporting::changed, this, &FolderImportSection::show);
    show();
}

void FolderImportSection::askAndStart()
{
    if (!m_importing)
        return;
    askForFolder(*m_parts.addButton->window(),
                 [importing = m_importing](const QString &folder) { importing->start(folder); });
}

void FolderImportSection::cancel()
{
    if (m_importing)
        m_importing->stop();
}

void FolderImportSection::show()
{
    const FolderImportState state = m_importing ? m_importing->state() : FolderImportState();
    showControls(state);
    if (state.isRunning())
        return showProgress(state);
    m_parts.statusLabel->setText(endSentence(state));
    m_parts.statusLabel->setToolTip({});
    if (state.phase != FolderImportState::Phase::Idle)
        Q_EMIT catalogueChanged();
}

void FolderImportSection::showControls(const FolderImportState &state)
{
    if (state.isRunning() && m_parts.cancelButton->isHidden())
        exchange(*m_parts.addButton, *m_parts.cancelButton);
    else if (!state.isRunning() && m_parts.addButton->isHidden())
        exchange(*m_parts.cancelButton, *m_parts.addButton);
    m_parts.busyIndicator->setVisible(state.isRunning() && state.files == 0);
    m_parts.progressLine->setVisible(state.isRunning() && state.files > 0);
}

void FolderImportSection::showProgress(const FolderImportState &state)
{
    // There may be more files now than were counted.
    const double part = state.total > 0 ? double(state.files) / double(state.total) : 0;
    m_parts.progressLine->setValue(qBound(0, qRound(part * Steps), Steps));
    m_parts.statusLabel->setText(progressText(state));
    m_parts.statusLabel->setToolTip(state.current);
}

QString FolderImportSection::progressText(const FolderImportState &state) const
{
    const QString sentence = progressSentence(state);
    if (state.current.isEmpty() || state.phase == FolderImportState::Phase::Stopping)
        return sentence;
    const QLabel &label = *m_parts.statusLabel;
    return sentence + u'\n' +
           label.fontMetrics().elidedText(state.current, Qt::ElideMiddle, label.minimumWidth());
}
