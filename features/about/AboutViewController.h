#pragma once
#include <ui/window/PlatformSpecificController.h>
#include <QVariant>

class QTextBrowser;
namespace Ui
{
class AboutViewController;
}

/// The content of the About window: the program's name, version and copyright, the credits, and two buttons
/// for the maker's pages. The scene binds to the properties; the controller itself sets the credits and the
/// window's look. Main thread only.
class AboutViewController final : public PlatformController<ViewController>
{
    Q_OBJECT
    Q_PROPERTY(QVariant appName READ appName)
    Q_PROPERTY(QString appVersion READ appVersion)
    Q_PROPERTY(QVariant appCopyright READ appCopyright)
    Q_PROPERTY(QString visitWebSiteButtonTitle READ visitWebSiteButtonTitle)
    Q_PROPERTY(QString rateAppButtonTitle READ rateAppButtonTitle)

public:
    /// A main bundle without an information dictionary is a fatal fault.
    AboutViewController();
    ~AboutViewController() override;

    /// The entries of the information dictionary, unchanged; invalid when absent.
    QVariant appName() const { return m_appName; }
    QVariant appCopyright() const { return m_appCopyright; }
    /// "Version 1.0 (100)", read anew on each call; "Unknown" unless both parts are texts.
    QString appVersion() const;
    QString visitWebSiteButtonTitle() const { return m_visitWebSiteButtonTitle; }
    QString rateAppButtonTitle() const { return m_rateAppButtonTitle; }

    void loadView() override;
    /// Styles and centres the window and loads the credits, each time.
    void viewWillAppear() override;
    void viewDidAppear() override;

    Q_INVOKABLE void visitQuorvaneWebsite(QObject *sender);
    /// Opens the maker's page in the App Store, if an application handles such links.
    Q_INVOKABLE void rateInAppStore(QObject *sender);

private:
    void styleWindow(ui::Window &about);
    void showCredits();

    QTextBrowser *creditsTextView = nullptr;
    QVariant m_appName;
    QVariant m_appCopyright;
    QString m_visitWebSiteButtonTitle;
    QString m_rateAppButtonTitle;
    std::unique_ptr<Ui::AboutViewController> m_scene;
};
