#include "ui_TitlebarViewController.h"

#include "TitlebarViewController.h"

#include <features/search/MainViewController.h>
#include <ui/scenes/SceneConnections.h>

TitlebarViewController::TitlebarViewController() = default;
TitlebarViewController::~TitlebarViewController() = default;

void TitlebarViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::TitlebarViewController>();
    m_scene->setupUi(root.get());
    // The items are added first, so that the binding finds the one to select.
    m_scene->languagePopUp->setLanguages(m_languages);
    connectScene(*root, *this);
    setView(std::move(root));
}

void TitlebarViewController::follow(const std::shared_ptr<MainViewController> &controller)
{
    if (!controller)
        return;
    m_languages = controller->languagesArray();
    setSearching(controller->isQuerying());
    connect(controller.get(), &MainViewController::isQueryingChanged, this,
            &TitlebarViewController::setSearching);
}

void TitlebarViewController::setSearching(bool searching)
{
    if (m_isSearching == searching)
        return;
    m_isSearching = searching;
    Q_EMIT isSearchingChanged(searching);
}
