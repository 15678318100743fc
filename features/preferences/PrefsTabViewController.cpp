#include "ui_PrefsTabViewController.h"

#include "PrefsTabViewController.h"

#include <ui/scenes/SceneConnections.h>
#include <ui/window/Window.h>

#include <QButtonGroup>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{
/// Escapes ampersands, which would mark mnemonics in a button.
QString tabText(const QString &title)
{
    return QString(title).replace(u'&', "&&"_L1);
}
} // namespace

PrefsTabViewController::PrefsTabViewController(const QList<std::shared_ptr<ViewController>> &panes)
    : m_panes(panes), m_sizes(panes.size())
{
    Q_ASSERT(!panes.isEmpty());
}

PrefsTabViewController::~PrefsTabViewController() = default;

QString PrefsTabViewController::title() const
{
    return shown().title();
}

void PrefsTabViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::PrefsTabViewController>();
    m_scene->setupUi(root.get());
    m_tabs = new QButtonGroup(root.get());
    for (int index = 0; index < m_panes.size(); ++index)
        addTab(index);
    connect(m_tabs, &QButtonGroup::idToggled, this, [this](int index, bool checked) {
        if (checked)
            showPane(index);
    });
    connectScene(*root, *this);
    setView(std::move(root));
}

void PrefsTabViewController::addTab(int index)
{
    ViewController *pane = m_panes.at(index).get();
    auto *tab = new QPushButton(tabText(pane->title()), m_scene->tabBar);
    tab->setProperty("role", u"tab"_s);
    tab->setCheckable(true);
    tab->setAutoDefault(false);
    m_tabs->addButton(tab, index);
    // Before the spacer at the trailing end.
    m_scene->tabLayout->insertWidget(m_scene->tabLayout->count() - 1, tab);
    connect(pane, &ViewController::titleChanged, tab, [this, tab, index](const QString &changed) {
        tab->setText(tabText(changed));
        if (index == m_shown)
            Q_EMIT titleChanged(changed);
    });
}

void PrefsTabViewController::viewDidLoad()
{
    adoptPane(m_shown);
    m_tabs->button(m_shown)->setChecked(true);
}

void PrefsTabViewController::adoptPane(int index)
{
    QWidget *pane = m_panes.at(index)->view();
    if (!m_sizes.at(index).isValid()) {
        m_sizes[index] = pane->size();
        m_scene->paneStack->addWidget(pane);
    }
    m_scene->paneStack->setCurrentWidget(pane);
}

void PrefsTabViewController::showPane(int index)
{
    if (index == m_shown || index < 0 || index >= m_panes.size())
        return;
    m_shown = index;
    if (!isViewLoaded())
        return;
    const bool isOnScreen = window() && window()->isVisible();
    if (isOnScreen)
        shown().notifyWillAppear();
    adoptPane(index);
    m_tabs->button(index)->setChecked(true);
    fitWindow();
    Q_EMIT titleChanged(title());
    if (isOnScreen)
        shown().notifyDidAppear();
}

void PrefsTabViewController::fitWindow()
{
    if (ui::Window *host = window())
        host->setContentSize(m_sizes.at(m_shown) + QSize(0, m_scene->header->minimumHeight()));
}

void PrefsTabViewController::viewWillAppear()
{
    shown().notifyWillAppear();
}

void PrefsTabViewController::viewDidAppear()
{
    shown().notifyDidAppear();
    // Focus the tabs, so that the arrow keys choose a pane at once.
    if (ui::Window *host = window())
        host->makeFirstResponder(m_tabs->button(m_shown));
}

void PrefsTabViewController::cancel(QObject *)
{
    if (ui::Window *host = window())
        host->close();
}
