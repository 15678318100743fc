#pragma once
#include <QFileDialog>

class QLineEdit;

/// The dialog in a save sheet. It never asks whether to replace a file, and takes the name literally, where
/// the stock dialog would read quotes as a list of files and a leading tilde as the home folder. Main thread
/// only.
class SaveDialog final : public QFileDialog
{
    Q_OBJECT

public:
    SaveDialog(QWidget *window, const QString &title, const QString &folder, const QString &name);

    /// The absolute path that was chosen; empty before.
    QString chosenPath() const { return m_chosenPath; }

Q_SIGNALS:
    /// The dialog was closed, accepted or not; emitted last. The key or click that closed it may still be in
    /// process.
    void answered(int result);

protected:
    void accept() override;
    void done(int result) override;

private:
    QString typedPath() const;
    void showName();

    QString m_suggestedName;
    QLineEdit *m_nameField;
    QString m_chosenPath;
};
