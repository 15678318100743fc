#include "FolderDialog.h"

#include <base/FileManager.h>
#include <base/LocalizedString.h>
#include <base/UserDefaults.h>
#include <ui/window/DialogFrame.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
const QString LastFolderKey = u"lastAddedFolder"_s;
constexpr QSize ContentSize{700, 400}; // as large as the save sheet

QString firstFolder()
{
    const auto last = UserDefaults::standard().string(LastFolderKey);
    if (last && QDir::isAbsolutePath(*last) && QFileInfo(*last).isDir())
        return *last;
    const auto videos = FileManager::defaultManager().moviesFolder();
    if (videos && QFileInfo(videos->toLocalFile()).isDir())
        return videos->toLocalFile();
    return QDir::homePath();
}

/// Hides the file type, which is useless for folders; native dialogs have none.
void hideTypes(const QFileDialog &dialog)
{
    for (const QString &part : {u"fileTypeLabel"_s, u"fileTypeCombo"_s}) {
        if (auto *widget = dialog.findChild<QWidget *>(part))
            widget->hide();
    }
}
} // namespace

void askForFolder(QWidget &window, const std::function<void(QString)> &chosen)
{
    auto *dialog = new QFileDialog(&window, String::localize(u"Add Folder"_s), firstFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, String::localize(u"Add"_s));
    dialog->setLabelText(QFileDialog::Reject, String::localize(u"Cancel"_s));
    dialog->setLabelText(QFileDialog::LookIn, String::localize(u"Look in:"_s));
    dialog->setLabelText(QFileDialog::FileName, String::localize(u"Folder:"_s));
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, [chosen](const QString &folder) {
        if (folder.isEmpty())
            return;
        UserDefaults::standard().setObject(LastFolderKey, folder);
        chosen(folder);
    });
    hideTypes(*dialog);
    DialogFrame::putAround(*dialog);
    dialog->resize(ContentSize.grownBy(dialog->contentsMargins()));
    dialog->open();
}
