#include "ui_PrefsGeneralViewController.h"

#include "MenuForBindings.h"
#include "PrefsGeneralViewController.h"

#include <model/LocaleUtilities.h>
#include <ui/scenes/SceneConnections.h>

#include <QAbstractItemView>

using namespace Qt::StringLiterals;

namespace
{
constexpr int VisibleLanguages = 20;
}

PrefsGeneralViewController::PrefsGeneralViewController()
    : m_languagesArray(LocaleUtilities::shared().languages())
{
}

PrefsGeneralViewController::~PrefsGeneralViewController() = default;

QString PrefsGeneralViewController::title() const
{
    return String::localize(u"General"_s);
}

void PrefsGeneralViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::PrefsGeneralViewController>();
    m_scene->setupUi(root.get());
    QComboBox *popUp = m_scene->languagePopUp;
    auto *menu = new MenuForBindings(popUp);
    menu->addLanguages(m_languagesArray);
    popUp->setModel(menu);
    popUp->setMaxVisibleItems(VisibleLanguages);
    popUp->view()->setTextElideMode(Qt::ElideRight);
    // The items are added first, so that the binding finds the one to select.
    connectScene(*root, *this);
    setView(std::move(root));
}
