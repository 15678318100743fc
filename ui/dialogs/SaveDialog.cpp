#include "SaveDialog.h"

#include <ui/window/DialogFrame.h>

#include <base/FatalFault.h>
#include <base/LocalizedString.h>

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

namespace
{
constexpr QSize ContentSize{700, 400}; // the list shows its columns, and the window behind stays visible
} // namespace

SaveDialog::SaveDialog(QWidget *window, const QString &title, const QString &folder, const QString &name)
    : QFileDialog(window, title.isEmpty() ? String::localize(QStringLiteral("Save")) : title),
      // A slash in the suggested name must not lead out of the folder.
      m_suggestedName(QString(name).replace(u'/', u'_'))
{
    setOption(QFileDialog::DontUseNativeDialog);
    setOption(QFileDialog::DontConfirmOverwrite);
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setLabelText(QFileDialog::Accept, String::localize(QStringLiteral("Save")));
    setLabelText(QFileDialog::Reject, String::localize(QStringLiteral("Cancel")));
    setLabelText(QFileDialog::LookIn, String::localize(QStringLiteral("Look in:")));
    setLabelText(QFileDialog::FileName, String::localize(QStringLiteral("File &name:")));
    // There is only one file type, so its controls are hidden.
    for (const QString &part : {QStringLiteral("fileTypeLabel"), QStringLiteral("fileTypeCombo")}) {
        if (auto *widget = findChild<QWidget *>(part))
            widget->hide();
    }
    DialogFrame::putAround(*this);
    resize(ContentSize.grownBy(contentsMargins()));
    setDirectory(folder);

    m_nameField = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (!m_nameField)
        fatalFault(QStringLiteral("The save sheet has no field for the name"));
    showName();
}

void SaveDialog::showName()
{
    m_nameField->setText(m_suggestedName);
    m_nameField->setSelection(0, static_cast<int>(QFileInfo(m_suggestedName).completeBaseName().size()));
    m_nameField->setFocus();
}

void SaveDialog::accept()
{
    const QString path = typedPath();
    if (path.isEmpty())
        return;
    if (QFileInfo(path).isDir()) {
        setDirectory(path);
        showName();
        return;
    }
    if (m_nameField->text().endsWith(u'/'))
        return;
    m_chosenPath = path;
    done(QDialog::Accepted);
}

void SaveDialog::done(int result)
{
    QFileDialog::done(result);
    Q_EMIT answered(result);
}

QString SaveDialog::typedPath() const
{
    const QString text = m_nameField->text();
    if (text.isEmpty())
        return {};
    if (text == u'~' || text.startsWith(QStringLiteral("~/")))
        return QDir::cleanPath(QDir::homePath() + text.mid(1));
    return QDir::cleanPath(directory().absoluteFilePath(text));
}
