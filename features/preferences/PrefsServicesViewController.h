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

/// The Services pane of the preferences: keys, login, preferences for kinds of subtitles, and the catalogue's
/// place and imports. Typed text is used and stored when the edit ends. Without accounts their fields are
/// disabled. Main thread only.
class PrefsServicesViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    PrefsServicesViewController();
    ~PrefsServicesViewController() override;

    /// Always "Services".
    QString title() const override;
    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    /// Opens the page for application keys.
    Q_INVOKABLE void getKey(QObject *sender);
    /// Tests the typed keys at the services and shows the result below the button.
    Q_INVOKABLE void testConnection(QObject *sender);
    Q_INVOKABLE void showCatalogue(QObject *sender);
    /// Asks for a folder and adds it to the catalogue.
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
    QString m_notKept;                             // the fault of the text that was typed last
    std::vector<std::optional<QString>> m_answers; // of the last test, in display order
    std::unique_ptr<Ui::PrefsServicesViewController> m_scene;
    QPointer<FolderImportSection> m_folders; // owned by the view
};
