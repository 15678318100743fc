#include "ui_MainViewController.h"

#include "DownloadPrompt.h"
#include "MainViewController.h"

#include <base/FatalFault.h>
#include <base/FileManager.h>
#include <base/LocalizedString.h>
#include <base/MainQueue.h>
#include <base/Workspace.h>
#include <features/delivery/FileName.h>
#include <ui/dialogs/SavePanel.h>
#include <ui/window/ErrorAlert.h>
#include <ui/window/Window.h>

#include <QGuiApplication>

namespace
{
using namespace Qt::StringLiterals;

/// Alt (Option on the original platform) and no other modifier: Shift, Control and Meta count, the keypad
/// does not.
bool isOptionAloneHeld()
{
    const Qt::KeyboardModifiers held = QGuiApplication::keyboardModifiers();
    return (held & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier)) == Qt::AltModifier;
}
} // namespace

void MainViewController::download(QObject *)
{
    // Not without a selection, and not when the prompt would lose the modifier that is held now.
    const bool mayPrompt = m_downloadPrompt && rowToDownload() && !isOptionAloneHeld();
    if (!mayPrompt || !m_downloadPrompt->presentBeforeDownload(*this))
        downloadSelectedSubtitle();
}

void MainViewController::downloadSelectedSubtitle()
{
    startDownload(isOptionAloneHeld());
}

void MainViewController::saveSelectedSubtitleAs()
{
    startDownload(true);
}

std::optional<int> MainViewController::rowToDownload() const
{
    const int row = tableView->selectedRow();
    return row >= 0 && subtitles.load() ? std::optional(row) : std::nullopt;
}

void MainViewController::startDownload(bool forceSavePanel)
{
    const auto row = rowToDownload();
    if (!row)
        return;
    const Download download{++m_lastDownload, shownSubtitle(*row), forceSavePanel};
    hideDelivered();
    setIsDownloading(true);
    SubtitleService::shared().download(download.subtitle,
                                       [weak = weakSelf(), download](const Result<QUrl> &result) {
                                           if (const auto self = weak.lock())
                                               self->finishDownload(download, result);
                                       });
}

void MainViewController::cancelDownload(QObject *)
{
    SubtitleService::shared().cancelDownloads();
    m_lastCancelledDownload = m_lastDownload; // one of them may be being delivered already
    setIsDownloading(false);
}

/// On the thread the service answers on, like the delivery to a companion application.
void MainViewController::finishDownload(const Download &download, const Result<QUrl> &result)
{
    if (result)
        return deliverDownloadedSubtitle(download, *result);
    unlessCancelled(download, [this, error = result.error()] {
        presentErrorOnWindow(error);
        setIsDownloading(false);
    });
}

void MainViewController::deliverDownloadedSubtitle(const Download &download, const QUrl &file)
{
    const auto panel = std::make_shared<SavePanel>();
    // Loaded once, because a search that begins on the main thread may change it.
    const auto request = currentExternalRequestInfo.load();
    if (request && !download.forceSavePanel) {
        const Result<bool> sent = sendSubtitleToExternalApp(download, file, *request);
        if (sent && *sent) {
            unlessCancelled(download, [this, name = request->name] {
                showDelivered(String::fill(String::localize(u"Sent to %@"_s), {name}), std::nullopt);
                setIsDownloading(false);
            });
            return;
        }
    }
    const auto suggestedName = suggestedFileName(currentFileURL.value(), *download.subtitle);
    unlessCancelled(download, [this, panel, suggestedName, file] {
        presentSavePanel(panel, suggestedName, file);
        setIsDownloading(false);
    });
}

Result<bool> MainViewController::sendSubtitleToExternalApp(const Download &download, const QUrl &file,
                                                           const ExternalRequestInfo &request)
{
    const auto sent = sendToCompanion(file, *download.subtitle, request, FileManager::defaultManager(),
                                      Workspace::sharedWorkspace());
    if (!sent)
        return sent.error();
    if (!sent->isReplyTaken)
        unlessCancelled(download, [this, delivered = sent->url] {
            const QString folder = FileManager::displayPath(delivered.adjusted(QUrl::RemoveFilename));
            showDeliveryText(String::fill(String::localize(u"The file is in “%@”."_s), {folder}), delivered);
        });
    return sent->isReplyTaken;
}

void MainViewController::unlessCancelled(const Download &download, std::function<void()> block)
{
    MainQueue::shared().async([weak = weakSelf(), number = download.number, run = std::move(block)] {
        if (const auto self = weak.lock(); self && number > self->m_lastCancelledDownload)
            run();
    });
}

void MainViewController::presentSavePanel(const std::shared_ptr<SavePanel> &panel,
                                          const std::optional<QString> &suggestedName, const QUrl &file)
{
    panel->title = String::localize(u"Save"_s);
    if (const auto url = currentFileURL.load())
        panel->directoryURL = *url;
    panel->nameFieldStringValue = suggestedName.value_or(FileManager::displayName(file));
    panel->extensionHidden = false;
    panel->canSelectHiddenExtension = true;
    beginSheet(panel, file);
}

void MainViewController::beginSheet(const std::shared_ptr<SavePanel> &panel, const QUrl &file)
{
    if (!window())
        return;
    panel->beginSheetModalForWindow(
        window(), [weak = weakSelf(), panel = std::weak_ptr(panel), file](ModalResponse response) {
            const auto self = weak.lock(); // lives on during an alert
            const auto answered = panel.lock();
            if (self && answered && response == ModalResponse::OK)
                self->moveToChosenPlace(file, answered);
        });
}

void MainViewController::moveToChosenPlace(const QUrl &file, const std::shared_ptr<SavePanel> &panel)
{
    const std::optional<QUrl> destination = panel->URL();
    if (!destination)
        fatalFault(u"The save sheet was accepted without a place"_s);
    const QString name = FileManager::displayName(*destination);
    const Result<void> moved = FileManager::defaultManager().moveItem(file, *destination);
    if (moved)
        return showDelivered(String::fill(String::localize(u"Saved as %@"_s), {name}), *destination);
    presentErrorOnWindow(moved.error());
    if (!FileManager::isDestinationTaken(moved.error()))
        return;
    // The same sheet once more, as the person left it.
    panel->directoryURL = destination->adjusted(QUrl::RemoveFilename);
    panel->nameFieldStringValue = name;
    beginSheet(panel, file);
}

void MainViewController::showDelivered(const QString &text, const std::optional<QUrl> &file)
{
    showDeliveryText(text, file);
    if (m_downloadPrompt)
        m_downloadPrompt->noteDelivery();
}

void MainViewController::showDeliveryText(const QString &text, const std::optional<QUrl> &file)
{
    m_deliveredFile = file;
    m_scene->deliveryLabel->setText(text);
    m_scene->deliveryLabel->show();
    m_scene->showInFolderButton->setVisible(file.has_value());
}

/// An earlier delivery is unrelated to the present search or download.
void MainViewController::hideDelivered()
{
    m_deliveredFile.reset();
    m_scene->deliveryLabel->hide();
    m_scene->showInFolderButton->hide();
}

void MainViewController::showInFolder(QObject *)
{
    if (m_deliveredFile)
        Workspace::sharedWorkspace().showInFileBrowser(*m_deliveredFile);
}

void MainViewController::presentErrorOnWindow(const base::Error &error)
{
    if (ui::Window *host = window())
        showErrorAlert(error, host);
}
