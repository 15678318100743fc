#pragma once
#include <base/Result.h>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

/// The accounts at network services, which the Services pane shows and changes. Main thread only; completions
/// are called there on a later turn.
class ServiceAccounts : public QObject
{
    Q_OBJECT

public:
    /// The secrets of the accounts.
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
        bool isOwn = false; // chosen by the person, not shipped with the program
    };

    /// The text in use; empty when there is none.
    virtual QString text(Item item) const = 0;
    /// Whether the environment sets it, which overrides the settings.
    virtual bool isFixed(Item item) const = 0;
    /// Uses and stores the text; an empty one removes it. An Error when storing or removing failed; the text
    /// is then used until the program ends.
    virtual void setText(Item item, const QString &text, std::function<void(Result<void>)> completion) = 0;
    /// Why those that are kept could not be read, as a sentence; empty where they were.
    virtual QString whyUnread() const = 0;

    /// Tests the subtitle service's key and login.
    virtual void testSubtitles(std::function<void(Result<Connection>)> completion) = 0;
    /// Tests the film database's key.
    virtual void testFilms(std::function<void(Result<void>)> completion) = 0;

    virtual Catalogue catalogue() const = 0;

    /// The accounts that the process entry installed, or null.
    static std::shared_ptr<ServiceAccounts> shared() { return s_shared; }
    static void setShared(std::shared_ptr<ServiceAccounts> accounts) { s_shared = std::move(accounts); }

Q_SIGNALS:
    /// The texts in use have changed, for example after the keyring was unlocked.
    void changed();

private:
    static inline std::shared_ptr<ServiceAccounts> s_shared;
};
