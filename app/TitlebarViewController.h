#pragma once
#include <model/LocaleUtilities.h>
#include <ui/window/PlatformSpecificController.h>
#include <ui/window/TitlebarAccessoryViewController.h>
#include <QList>
#include <memory>

class MainViewController;
namespace Ui
{
class TitlebarViewController;
}

/// The trailing end of the title bar: the search language, and whether a search is running. Main thread only.
class TitlebarViewController final : public PlatformController<TitlebarAccessoryViewController>
{
    Q_OBJECT
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)

public:
    TitlebarViewController();
    ~TitlebarViewController() override;

    /// Shows the state of `controller`'s searches and offers its languages. Call before the view is loaded.
    void follow(const std::shared_ptr<MainViewController> &controller);
    bool isSearching() const { return m_isSearching; }

    void loadView() override;

Q_SIGNALS:
    void isSearchingChanged(bool searching);

private:
    void setSearching(bool searching);

    std::unique_ptr<Ui::TitlebarViewController> m_scene;
    QList<Language> m_languages;
    bool m_isSearching = false;
};
