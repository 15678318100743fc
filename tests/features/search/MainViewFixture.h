#pragma once
#include <base/MainQueue.h>
#include <base/UserDefaults.h>
#include <features/search/MainViewController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/scenes/TableView.h>
#include <ui/window/Window.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <memory>

/// A window that shows the main view. Scripted services answer it, and the test advances its clock.
struct MainViewFixture
{
    MainViewFixture();
    ~MainViewFixture();

    QLineEdit *field() const { return child<QLineEdit>("searchField"); }
    QToolButton *cancelButton() const { return child<QToolButton>("cancelSearchButton"); }
    QPushButton *downloadButton() const { return child<QPushButton>("downloadButton"); }
    TableView *table() const { return child<TableView>("tableView"); }
    QWidget *widget(const char *name) const { return child<QWidget>(name); }
    template <class Type>
    Type *child(const char *name) const
    {
        return window->findChild<Type *>(QString::fromLatin1(name));
    }
    QString title() const { return window->windowTitle(); }
    /// Runs what is queued on the main queue now.
    void turn() const { MainQueue::shared().runUntilIdle(); }
    void advance(std::chrono::milliseconds duration) const;
    /// Searches for `video` or by words.
    void searchFile(const std::optional<ExternalRequestInfo> &request = {}) const;
    void search(const QString &text = QStringLiteral("anything")) const;
    /// Answers the last query and runs what follows.
    void answer(const Result<QueryResult> &result) const;
    void answer(int count) const { answer(answerWith(count)); }
    /// Searches by words and answers with that many results.
    void showResults(int count) const;
    /// Presses and releases a key in the window as the window system would.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    const QUrl video{QStringLiteral("file:///videos/Some.Film.2019.mkv")};
    std::shared_ptr<ScriptedSubtitleService> service;
    std::shared_ptr<ScriptedMetadataService> metadata;
    std::unique_ptr<ui::Window> window;
    std::shared_ptr<MainViewController> controller;
};

/// A test of the main view: a new one for each function, and no lines printed before.
class MainViewTest : public QObject
{
    Q_OBJECT

protected:
    static ExternalRequestInfo tessaly();
    static base::Error refusal();
    /// Stores the person's language.
    static void setLanguage(const QString &code);
    /// Lets window and controller go, as the program does when its window was closed.
    void close();

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;

protected Q_SLOTS:
    void init();
    void cleanup();
};

/// Runs `meanwhile` for each error alert that comes up during `act`, while it is there; it must see to the
/// alert's end. Returns whether one came up.
bool whileAlertIsUp(const std::function<void()> &act, const std::function<void()> &meanwhile);
/// Dismisses the alerts that come up during `act` and gives the text of the last one; empty when none came.
QString alertDuring(const std::function<void()> &act);
/// Dismisses the alert that is up.
void dismissAlert();

inline QList<Arg> textArgs(const QString &text, const QString &language = QStringLiteral("eng"))
{
    return {{Param::text, text}, {Param::language, language}};
}
