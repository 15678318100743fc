#pragma once
#include <base/MainQueue.h>
#include <base/UserDefaults.h>
#include <tests/support/FakeFileManager.h>
#include <tests/support/Sandbox.h>
#include <ui/dialogs/SavePanel.h>
#include <ui/window/Window.h>

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

/// What the tests of the save panel share: a window, a panel, the answers so far, and a person's hands. Each
/// test has a separate folder, where the panel opens, and separate settings.
class SavePanelFixture : public QObject
{
    Q_OBJECT

protected:
    static QFileDialog *visibleDialog(const QWidget &window)
    {
        for (auto *dialog : window.findChildren<QFileDialog *>()) {
            if (dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }

    static QLineEdit *nameField(const QFileDialog &dialog)
    {
        return dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    }

    QString makeFolder(const QString &name) const
    {
        QDir(m_folder).mkpath(name);
        return m_folder + u'/' + name;
    }

    void makeFile(const QString &name) const
    {
        QVERIFY(QFile(m_folder + u'/' + name).open(QIODevice::WriteOnly));
    }

    void begin(const std::shared_ptr<SavePanel> &panel)
    {
        panel->beginSheetModalForWindow(m_window.get(),
                                        [this](ModalResponse response) { m_answers += response; });
    }

    QFileDialog *show()
    {
        begin(m_panel);
        return visibleDialog(*m_window);
    }

    void finish(const QFileDialog &dialog, Qt::Key key = Qt::Key_Return)
    {
        QTest::keyClick(nameField(dialog), key);
        MainQueue::shared().runUntilIdle();
    }

    /// As a person does: everything in the field goes, the new name comes, Return.
    void type(const QFileDialog &dialog, const QString &text)
    {
        nameField(dialog)->selectAll();
        QTest::keyClick(nameField(dialog), Qt::Key_Delete);
        QTest::keyClicks(nameField(dialog), text);
        finish(dialog);
    }

    QString chosenPath() const { return m_panel->URL() ? m_panel->URL()->toLocalFile() : QString(); }

    const QString m_name = QStringLiteral("Movie.en.srt");
    Sandbox m_sandbox;
    QString m_folder;
    QString m_movies;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<SavePanel> m_panel;
    QList<ModalResponse> m_answers;

private Q_SLOTS:
    void init()
    {
        m_folder = m_sandbox.path(QLatin1String(QTest::currentTestFunction()));
        QDir(m_folder).removeRecursively();
        m_movies = makeFolder(QStringLiteral("Videos"));
        UserDefaults::setStandardFile(m_folder + QStringLiteral("/settings/Plovendix.conf"));
        FakeFileManager::install(m_movies);
        m_window = std::make_unique<ui::Window>();
        m_window->show();
        m_panel = std::make_shared<SavePanel>();
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = m_name;
        m_answers.clear();
    }
    void cleanup()
    {
        m_panel.reset();
        m_window.reset();
        FileManager::setDefaultManager(nullptr);
    }
};
