#pragma once
#include <base/FileManager.h>
#include <base/MainQueue.h>
#include <base/UserDefaults.h>
#include <tests/support/Sandbox.h>
#include <ui/dialogs/SavePanel.h>
#include <ui/window/Window.h>

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

/// Knows one Movies folder, or none.
class MoviesAt : public FileManager
{
public:
    explicit MoviesAt(std::optional<QUrl> movies) : m_movies(std::move(movies)) {}
    std::optional<QUrl> moviesFolder() const override { return m_movies; }

private:
    std::optional<QUrl> m_movies;
};

/// What the tests of the save panel share: a window, a panel, the answers so far, and a person's hands. Each
/// test has a folder and settings of its own.
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
        return m_folder + QLatin1Char('/') + name;
    }

    void begin(const std::shared_ptr<SavePanel> &panel)
    {
        panel->beginSheetModalForWindow(m_window.get(),
                                        [this](ModalResponse response) { m_answers += response; });
    }

    QFileDialog *show()
    {
        MainQueue::shared().runUntilIdle(); // an answered sheet goes on the next turn
        begin(m_panel);
        return visibleDialog(*m_window);
    }

    /// As a person does: all that is there goes, the new name comes, Return.
    static void type(const QFileDialog &dialog, const QString &text)
    {
        nameField(dialog)->selectAll();
        QTest::keyClick(nameField(dialog), Qt::Key_Delete);
        QTest::keyClicks(nameField(dialog), text);
        QTest::keyClick(nameField(dialog), Qt::Key_Return);
        MainQueue::shared().runUntilIdle();
    }

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
        QDir().mkpath(m_folder);
        m_movies = makeFolder(QStringLiteral("Videos"));
        UserDefaults::setStandardFile(m_folder + QStringLiteral("/settings/Plovendix.conf"));
        FileManager::setDefaultManager(std::make_shared<MoviesAt>(QUrl::fromLocalFile(m_movies)));
        m_window = std::make_unique<ui::Window>();
        m_window->show();
        m_panel = std::make_shared<SavePanel>();
        m_answers.clear();
    }
    void cleanup()
    {
        m_panel.reset();
        m_window.reset();
        FileManager::setDefaultManager(nullptr);
    }
};
