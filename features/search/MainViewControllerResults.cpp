#include "ui_MainViewController.h"

#include "DropAreaMessage.h"
#include "MainViewController.h"
#include "SubtitleCellView.h"

#include <base/FatalFault.h>
#include <base/FileManager.h>
#include <model/ServiceStatus.h>
#include <ui/views/ImageView.h>
#include <ui/window/Window.h>
#include "DragFilesHereView.h"

#include <QLocale>

#include <utility>

namespace
{
using namespace Qt::StringLiterals;

constexpr auto CellIdentifier = "SubtitleCellID"_L1;
constexpr auto UnknownFormatIcon = "UNKNOWN"_L1;
constexpr QSizeF IconSize(64, 64);
constexpr int RoomBelowLongHint = 18; // points, to the outline

ui::Image iconForFormat(const QString &format)
{
    auto icon = ui::Image::named(format.toUpper());
    if (!icon)
        icon = ui::Image::named(UnknownFormatIcon);
    if (!icon)
        fatalFault(u"The image \"UNKNOWN\" is missing"_s);
    icon->setSize(IconSize);
    return *icon;
}
} // namespace

/// Called on reload, and takes the list that the table shows until the next reload, whatever services store
/// meanwhile: the counted list must be the shown one.
int MainViewController::numberOfRowsInTableView()
{
    m_shownSubtitles = subtitles.load();
    return m_shownSubtitles ? static_cast<int>(m_shownSubtitles->size()) : 0;
}

TableCellView *MainViewController::tableViewViewForRow(int row)
{
    if (!m_shownSubtitles || !tableView)
        return nullptr;
    const SubtitlePtr &subtitle = m_shownSubtitles->at(row);
    auto *cell = qobject_cast<SubtitleCellView *>(tableView->makeView(CellIdentifier));
    if (!cell)
        return nullptr;
    cell->titleTextField->setText(subtitle->subFileName);
    cell->subtitleTextField->setText(subtitle->detailString());
    cell->imageView()->setImage(iconForFormat(subtitle->subFormat));
    return cell;
}

QString MainViewController::tableViewAccessibleTextForRow(int row)
{
    if (!m_shownSubtitles || row >= m_shownSubtitles->size())
        return {};
    const SubtitlePtr &subtitle = m_shownSubtitles->at(row);
    const QString details = subtitle->detailString();
    return details.isEmpty() ? subtitle->subFileName : subtitle->subFileName + u", "_s + details;
}

void MainViewController::tableViewSelectionDidChange()
{
    if (tableView && tableView->numberOfSelectedRows() > 0) {
        updateDetailView();
        showDetailView(true);
        return;
    }
    hideDetailView(true);
}

void MainViewController::reloadTable()
{
    if (tableView)
        tableView->reloadData();
}

/// Like a step with the arrow keys: the first one selects.
void MainViewController::enterList()
{
    ui::Window *host = window();
    if (!host || !tableView || !tableView->isVisible() || tableView->numberOfRows() == 0)
        return;
    host->makeFirstResponder(tableView);
    if (tableView->numberOfSelectedRows() == 0)
        tableView->selectRow(0);
}

void MainViewController::updateUIState(bool animated)
{
    const bool isSelected = tableView && tableView->numberOfSelectedRows() > 0;
    const auto found = subtitles.load();
    const bool hasResults = found && !found->isEmpty();
    scrollView->setVisible(hasResults);
    dragFilesHereView->setVisible(!hasResults);
    if (isSelected) {
        updateDetailView();
        showDetailView(animated);
    } else {
        hideDetailView(animated);
    }
}

void MainViewController::showDropPrompt()
{
    QStringList companions;
    const QList<ExternalAppInfo> apps = quorvaneAppsArray();
    for (const ExternalAppInfo &app : apps)
        companions += app.name;
    m_answer = {.dropArea = dropPrompt(companions)};
    showMessage(m_answer);
}

void MainViewController::showNothingFound(const QString &text, const SearchLanguage &language)
{
    DropAreaMessage message = nothingFound(text, language.preferredCode, language.sentCode);
    const bool tellsOfKeys =
        !ServiceStatus::shared().value().asksTheNetwork && !std::exchange(m_hasToldOfKeys, true);
    if (tellsOfKeys)
        message.hint += u'\n' + offlineHint();
    m_answer = {.dropArea = message, .hintIsLong = tellsOfKeys};
    showMessage(m_answer);
}

/// The message that stays if the search for the words of the file's name fails. The list may still be shown,
/// without rows.
void MainViewController::showFileNotFound(const QUrl &url, const SearchLanguage &language)
{
    const DropAreaMessage message =
        nothingFound(FileManager::displayName(url), language.preferredCode, language.sentCode);
    m_answer = {.dropArea = message, .aboveRows = message.headline};
    showMessage(m_answer);
}

/// Shown until the answer comes.
void MainViewController::showWordsSearch(const QString &words)
{
    const DropAreaMessage message = wordsSearch(words);
    showMessage({.dropArea = message, .aboveRows = message.headline});
}

void MainViewController::showMessage(const AnswerMessage &message)
{
    m_scene->dropHint->setContentsMargins(0, 0, 0, message.hintIsLong ? RoomBelowLongHint : 0);
    m_scene->dropHeadline->setText(message.dropArea.headline);
    m_scene->dropHint->setText(message.dropArea.hint);
    m_scene->languageNotice->setText(message.aboveRows);
    m_scene->languageNotice->setVisible(!message.aboveRows.isEmpty());
}

void MainViewController::showLanguageNotice(const SearchLanguage &language)
{
    QStringList notices{languageNotice(language.preferredCode, language.sentCode),
                        localRowsNotice(ServiceStatus::shared().value()),
                        leftOutNotice(m_shownSubtitles ? m_shownSubtitles->size() : 0,
                                      ServiceStatus::shared().value().leftOut)};
    notices.removeAll(QString());
    m_answer.aboveRows = notices.join(u'\n');
    showMessage(m_answer);
}

void MainViewController::showPause()
{
    const auto pause = ServiceStatus::shared().value().pause;
    const QString text = pause ? pauseNotice(*pause) : QString();
    m_scene->pauseHint->setText(text);
    m_scene->pauseHint->setVisible(pause.has_value());
    m_scene->pauseNotice->setText(text);
    m_scene->pauseNotice->setVisible(pause.has_value());
}

void MainViewController::showRemainingDownloads()
{
    const std::optional<int> remaining = ServiceStatus::shared().value().remainingDownloads;
    if (remaining)
        m_scene->remainingLabel->setText(
            String::fill(String::localize(u"Downloads left: %@"_s), {QLocale().toString(*remaining)}));
    m_scene->remainingLabel->setVisible(remaining.has_value());
}
