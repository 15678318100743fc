#pragma once
#include "ServiceAccounts.h"

#include <ui/window/PlatformSpecificController.h>
#include <QPointer>
#include <optional>
#include <vector>

class FolderImportSection;
class QLineEdit;
namespace Ui
{
class PrefsServicesViewController;
}

/// The Services pane of the preferences: keys, login, what a person thinks of kinds of subtitles, and where
/// the catalogue lies and grows. What is typed is used and kept as soon as the edit ends. Without accounts
/// the fields for them are disabled. Main thread only.
class PrefsServicesViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    PrefsServicesViewController();
    ~PrefsServicesViewController() override;

    /// Always "Services", whatever was set.
    QString title() const override;
    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    /// Opens the page that gives out keys.
    Q_INVOKABLE void getKey(QObject *sender);
    /// Asks the services whether they accept what is typed, and says so below the button.
    Q_INVOKABLE void testConnection(QObject *sender);
    Q_INVOKABLE void showCatalogue(QObject *sender);
    /// Asks for a folder and adds what is in it to the catalogue.
    Q_INVOKABLE void addFolder(QObject *sender);
    Q_INVOKABLE void cancelImport(QObject *sender);

private:
    using Item = ServiceAccounts::Item;
    struct Field
    {
        QLineEdit *edit;
        Item item;
    };

    void showTexts();
    void showCataloguePlace();
    void makeFolderSection();
    void save(const Field &field);
    bool isTesting() const;
    bool hasHalfAnAccount() const;
    void takeAnswer(size_t place, const QString &sentence);
    void showAnswers();
    std::weak_ptr<PrefsServicesViewController> weakSelf();

    std::shared_ptr<ServiceAccounts> m_accounts;
    std::vector<Field> m_fields;
    QString m_notKept;                             // what is wrong with the text that was typed last
    std::vector<std::optional<QString>> m_answers; // of the last test, in the order in which they are shown
    std::unique_ptr<Ui::PrefsServicesViewController> m_scene;
    QPointer<FolderImportSection> m_folders; // the view's
};
