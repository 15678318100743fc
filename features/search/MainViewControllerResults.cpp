#include "ui_MainViewController.h"

#include "DragFilesHereView.h"
#include "MainViewController.h"
#include "SubtitleCellView.h"

#include <base/FatalFault.h>
#include <base/LocalizedString.h>
#include <model/ServiceStatus.h>
#include <ui/controls/Label.h>
#include <ui/views/ImageView.h>
#include <ui/window/Window.h>

#include <QLocale>

#include <utility>

namespace
{
using namespace Qt::StringLiterals;

constexpr QSizeF IconSize(64, 64);
constexpr int RoomBelowLongHint = 18; // points, to the outline

ui::Image iconForFormat(const QString &format)
{
    auto icon = ui::Image::named(format.toUpper());
    if (!icon)
        icon = ui::Image::named(u"UNKNOWN"_s);
    if (!icon)
        fatalFault(u"The image \"UNKNOWN\" is missing"_s);
    icon->setSize(IconSize);
    return *icon;
}
} // namespace

int MainViewController::numberOfRowsInTableView()
{
    return static_cast<int>(m_shownSubtitles.size());
}

SubtitlePtr MainViewController::shownSubtitle(int row) const
{
    if (row >= m_shownSubtitles.size())
        fatalFault(u"The row %1 lies beyond the results"_s.arg(row));
    return m_shownSubtitles.at(row);
}

TableCellView *MainViewController::tableViewViewForRow(int row)
{
    auto *cell = qobject_cast<SubtitleCellView *>(tableView->makeView(u"SubtitleCellID"_s));
    if (!cell || row >= m_shownSubtitles.size())
        return nullptr;
    const SubtitlePtr subtitle = shownSubtitle(row);
    cell->titleTextField->setText(subtitle->subFileName);
    cell->subtitleTextField->setText(subtitle->detailString());
    cell->imageView()->setImage(iconForFormat(subtitle->subFormat));
    return cell;
}

QString MainViewController::tableViewAccessibleTextForRow(int row)
{
    if (row >= m_shownSubtitles.size())
        return {};
    const SubtitlePtr subtitle = shownSubtitle(row);
    const QString details = subtitle->detailString();
    return details.isEmpty() ? subtitle->subFileName : subtitle->subFileName + u", "_s + details;
}

void MainViewController::tableViewSelectionDidChange()
{
    if (tableView->numberOfSelectedRows() == 0)
        return hideDetailView(true);
    updateDetailView();
    showDetailView(true);
}

/// Takes the list that the table shows until the next reload, whatever services store meanwhile.
void MainViewController::reloadTable()
{
    m_shownSubtitles = subtitles.value().value_or(SubtitleList());
    tableView->reloadData();
}

/// Like a step with the arrow keys: the first one selects.
void MainViewController::enterList()
{
    ui::Window *host = window();
    if (!host || !tableView->isVisible() || tableView->numberOfRows() == 0)
        return;
    host->makeFirstResponder(tableView);
    if (tableView->numberOfSelectedRows() == 0)
        tableView->selectRow(0);
}

bool MainViewController::hasResults() const
{
    const auto found = subtitles.load();
    return found && !found->isEmpty();
}

void MainViewController::updateUIState(bool animated)
{
    const bool isSelected = tableView->numberOfSelectedRows() > 0;
    const bool showsResults = hasResults();
    scrollView->setVisible(showsResults);
    dragFilesHereView->setVisible(!showsResults);
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

void MainViewController::showNothingFound(const Search &search)
{
    m_answer = {.dropArea = nothingFound(search.text, search.language)};
    const bool tellsOfKeys =
        !ServiceStatus::shared().value().asksTheNetwork && !std::exchange(m_hasToldOfKeys, true);
    if (tellsOfKeys) {
        m_answer.dropArea.hint += u'\n' + offlineHint();
        m_answer.hintIsLong = true;
    }
    showMessage(m_answer);
}

/// The lines above the rows.
void MainViewController::showNotices(const SearchLanguage &language)
{
    const ServiceStatus::Value &status = ServiceStatus::shared().value();
    QStringList notices{languageNotice(language), localRowsNotice(status),
                        leftOutNotice(m_shownSubtitles.size(), status.leftOut)};
    notices.removeAll(QString());
    m_answer.aboveRows = notices.join(u'\n');
    showMessage(m_answer);
}

void MainViewController::showMessage(const AnswerMessage &message)
{
    m_scene->dropHint->setContentsMargins(0, 0, 0, message.hintIsLong ? RoomBelowLongHint : 0);
    m_scene->dropHeadline->setText(message.dropArea.headline);
    m_scene->dropHint->setText(message.dropArea.hint);
    m_scene->languageNotice->setText(message.aboveRows);
    m_scene->languageNotice->setVisible(!message.aboveRows.isEmpty());
}

/// The pause of a waiting search, and the downloads that are left.
void MainViewController::showServiceStatus()
{
    const ServiceStatus::Value &status = ServiceStatus::shared().value();
    const QString pause = status.pause ? pauseNotice(*status.pause) : QString();
    m_scene->pauseHint->setText(pause);
    m_scene->pauseHint->setVisible(status.pause.has_value());
    m_scene->pauseNotice->setText(pause);
    m_scene->pauseNotice->setVisible(status.pause.has_value());
    const auto left = status.remainingDownloads;
    if (left)
        m_scene->remainingLabel->setText(
            String::fill(String::localize(u"Downloads left: %@"_s), {QLocale().toString(*left)}));
    m_scene->remainingLabel->setVisible(left.has_value());
}
