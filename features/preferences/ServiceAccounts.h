#pragma once
#include <base/Result.h>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

/// The accounts at the services of the network, as the Services pane shows and changes them. Main thread
/// only; completions come there, on a later turn.
class ServiceAccounts : public QObject
{
    Q_OBJECT

public:
    /// What is kept where nobody else can read it.
    enum class Item
    {
        SubtitleKey,
        SubtitlePassword,
        MetadataKey
    };
    struct Connection
    {
        bool isLoggedIn = false;
        std::optional<int> allowedDownloads;
        std::optional<int> remainingDownloads;
    };
    struct Catalogue
    {
        QString file;
        qint64 bytes = 0;
        bool isOwn = false; // the person's, not the one that comes with the program
    };

    ServiceAccounts() = default;
    ~ServiceAccounts() override;

    /// The one in use; empty for none.
    virtual QString text(Item item) const = 0;
    /// Whether the environment gives it, which no setting changes.
    virtual bool isFixed(Item item) const = 0;
    /// Uses and keeps it; an empty text removes it. An Error when it could not be kept, or not be removed:
    /// all the same it counts until the program ends.
    virtual void setText(Item item, const QString &text, std::function<void(Result<void>)> completion) = 0;
    /// Why those that are kept could not be read, as a sentence; empty where they were.
    virtual QString whyUnread() const = 0;

    /// Whether the subtitle service accepts key and login.
    virtual void testSubtitles(std::function<void(Result<Connection>)> completion) = 0;
    /// Whether the film database accepts its key.
    virtual void testFilms(std::function<void(Result<void>)> completion) = 0;

    virtual Catalogue catalogue() const = 0;

    /// What the process entry installed, or nothing.
    static std::shared_ptr<ServiceAccounts> shared();
    static void setShared(std::shared_ptr<ServiceAccounts> accounts);

Q_SIGNALS:
    /// Other texts are in use, as after the keyring was opened.
    void changed();
};
