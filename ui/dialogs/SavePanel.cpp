#include "SavePanel.h"

#include "SaveDialog.h"
#include "SheetQueue.h"
#include <ui/window/Window.h>

#include <base/Bundle.h>
#include <base/FileManager.h>
#include <base/MainQueue.h>
#include <base/UserDefaults.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

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

SavePanel::~SavePanel() = default;

void SavePanel::setObserver(std::function<void()> observer)
{
    panelObserver = std::move(observer);
}

void SavePanel::beginSheetModalForWindow(ui::Window *window, std::function<void(ModalResponse)> completion)
{
    Q_ASSERT(MainQueue::isMainThread());
    m_url.reset();
    SheetQueue::of(*window).add([panel = shared_from_this(), window, completion = std::move(completion)] {
        return panel->makeSheet(window, completion);
    });
}

QDialog *SavePanel::makeSheet(ui::Window *window, std::function<void(ModalResponse)> completion)
{
    const auto folder = directoryURL ? folderOf(*directoryURL) : std::nullopt;
    auto *dialog = new SaveDialog(window, title, folder ? *folder : defaultFolder(), nameFieldStringValue);
    const auto answered = [panel = shared_from_this(), dialog, window = QPointer<QWidget>(window),
                           completion = std::move(completion)](int result) mutable {
        auto answer = std::exchange(completion, nullptr);
        if (!answer)
            return;
        // On a later turn, not within the dialog's key or mouse event: the answer may destroy the window and
        // the dialog.
        MainQueue::shared().async(
            [window, dialog, response = panel->takeAnswer(*dialog, result), give = std::move(answer), panel] {
                if (!window)
                    return;
                give(response);
                // The answer may have shown an alert, and the window may be destroyed by now.
                if (window)
                    SheetQueue::of(*window).end(dialog);
            });
    };
    QObject::connect(dialog, &SaveDialog::answered, dialog, answered);
    return dialog;
}

ModalResponse SavePanel::takeAnswer(const SaveDialog &dialog, int result)
{
    if (result != QDialog::Accepted)
        return ModalResponse::Cancel;
    m_url = QUrl::fromLocalFile(dialog.chosenPath());
    UserDefaults::standard().setObject(LastSaveFolderKey, dialog.chosenFolder());
    return ModalResponse::OK;
}
