#include "SavePanel.h"

#include "SaveDialog.h"
#include <ui/window/Window.h>

#include <base/Bundle.h>
#include <base/FileManager.h>
#include <base/MainQueue.h>
#include <base/UserDefaults.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace
{
std::function<void()> panelObserver; // set only while no other thread runs

const QString LastSaveFolderKey = QStringLiteral("lastSaveFolder");

/// The folder itself, or the folder of a file. None when it does not exist.
std::optional<QString> folderOf(const QUrl &place)
{
    const QByteArray path = FileManager::fileSystemPath(place);
    if (path.isEmpty())
        return std::nullopt;
    const QFileInfo info(QFile::decodeName(path));
    if (info.isDir())
        return info.absoluteFilePath();
    // A video that was moved away still names its folder.
    const bool namesFile = info.exists() || !info.suffix().isEmpty();
    if (namesFile && QFileInfo(info.absolutePath()).isDir())
        return info.absolutePath();
    return std::nullopt;
}

QString defaultFolder()
{
    const auto last = UserDefaults::standard().string(LastSaveFolderKey);
    if (last && QDir::isAbsolutePath(*last) && QFileInfo(*last).isDir())
        return *last;
    const auto movies = FileManager::defaultManager().moviesFolder();
    if (movies && QFileInfo(movies->toLocalFile()).isDir())
        return movies->toLocalFile();
    return QDir::homePath();
}
} // namespace

SavePanel::SavePanel()
{
    if (panelObserver)
        panelObserver();
}

void SavePanel::setObserver(std::function<void()> observer)
{
    panelObserver = std::move(observer);
}

void SavePanel::beginSheetModalForWindow(ui::Window *window,
                                         const std::function<void(ModalResponse)> &completion)
{
    Q_ASSERT(MainQueue::isMainThread());
    m_url.reset();
    const auto sheets = window->findChildren<SaveDialog *>(QString(), Qt::FindDirectChildrenOnly);
    for (SaveDialog *shown : sheets) {
        if (!shown->isVisible())
            continue;
        // A window shows one sheet at a time, so this one waits.
        QObject::connect(shown, &SaveDialog::answered, window, [=, panel = shared_from_this()] {
            MainQueue::shared().async(window, [=] { panel->beginSheetModalForWindow(window, completion); });
        });
        return;
    }
    showSheet(window, completion);
}

void SavePanel::showSheet(ui::Window *window, const std::function<void(ModalResponse)> &completion)
{
    const auto folder = directoryURL ? folderOf(*directoryURL) : std::nullopt;
    auto *dialog = new SaveDialog(window, title, folder ? *folder : defaultFolder(), nameFieldStringValue);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto answered = [=, panel = shared_from_this()](int result) {
        // On a later turn, not within the dialog's key or mouse event: the answer may destroy the window and
        // the dialog.
        MainQueue::shared().async(window, [panel, completion, response = panel->takeAnswer(*dialog, result)] {
            completion(response);
        });
    };
    QObject::connect(dialog, &SaveDialog::answered, dialog, answered);
    dialog->open();
}

ModalResponse SavePanel::takeAnswer(const SaveDialog &dialog, int result)
{
    if (result != QDialog::Accepted)
        return ModalResponse::Cancel;
    m_url = QUrl::fromLocalFile(dialog.chosenPath());
    UserDefaults::standard().setObject(LastSaveFolderKey, QFileInfo(dialog.chosenPath()).absolutePath());
    return ModalResponse::OK;
}
