#include "ui_MainViewController.h"

#include "MainViewController.h"
#include "SearchField.h"
#include "SubtitleCellView.h"

#include <base/MainQueue.h>
#include <base/Workspace.h>
#include <model/LocaleUtilities.h>
#include <model/ServiceStatus.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

MainViewController::MainViewController() : m_languagesArray(LocaleUtilities::shared().languages()) {}

MainViewController::~MainViewController()
{
    languageCodeObserver.invalidate();
}

void MainViewController::setIsSearching(bool searching)
{
    if (std::exchange(m_isSearching, searching) != searching)
        Q_EMIT isSearchingChanged(searching);
}

void MainViewController::setIsDownloading(bool downloading)
{
    if (std::exchange(m_isDownloading, downloading) != downloading)
        Q_EMIT isDownloadingChanged(downloading);
}

QList<ExternalAppInfo> MainViewController::quorvaneAppsArray() const
{
    return installedCompanionApps(Workspace::sharedWorkspace());
}

void MainViewController::loadView()
{
    auto root = std::make_unique<BottomPanelView>();
    m_scene = std::make_unique<Ui::MainViewController>();
    m_scene->setupUi(root.get());
    searchField = m_scene->searchField;
    cancelSearchButton = m_scene->cancelSearchButton;
    scrollView = m_scene->scrollView;
    scrollView->setBackgroundRole(QPalette::Base); // its insets have the same background as the table
    tableView = m_scene->tableView;
    detailView = m_scene->detailView;
    detailViewBottomConstraint = root->bottomConstraint();
    detailViewImageView = m_scene->detailViewImageView;
    detailFileLabel = m_scene->detailFileLabel;
    detailTitleLabel = m_scene->detailTitleLabel;
    detailLanguageLabel = m_scene->detailLanguageLabel;
    dragFilesHereView = m_scene->dragFilesHereView;
    downloadButton = m_scene->downloadButton;
    connectScene(*root, *this);
    setView(std::move(root));
}

void MainViewController::viewDidLoad()
{
    ViewController::viewDidLoad();
    // The scene names the double action `download:` and the field's end of editing; both are connected by
    // now.
    tableView->setDataSource(this);
    tableView->setDelegate(this);
    dragFilesHereView->outlineToo(*tableView); // which replaces it while there are results
    connect(m_scene->searchField, &SearchField::leftDownwards, this, &MainViewController::enterList);
    cancelSearchButton->hide();
    showDropPrompt();
    connect(&ServiceStatus::shared(), &ServiceStatus::changed, this, &MainViewController::showServiceStatus);
    showServiceStatus();
    updateUIState(false);
    // This property is "en" also when nothing is stored.
    languageCodeObserver = UserDefaults::standard().observe(u"languageCode"_s, [this](const QVariant &) {
        languageObservation(UserDefaults::standard().languageCode());
    });

    if (m_pendingRequest && *m_pendingRequest) {
        searchForFile((*m_pendingRequest)->url, (*m_pendingRequest)->requestInfo);
        m_pendingRequest->reset();
    }
}

void MainViewController::viewWillAppear()
{
    PlatformController::viewWillAppear();
    if (ui::Window *host = window())
        dragFilesHereView->takeDropsOf(*host);
}

void MainViewController::viewDidAppear()
{
    focusSearchField(nullptr);
}

void MainViewController::focusSearchField(QObject *)
{
    if (ui::Window *host = window()) {
        host->makeFirstResponder(searchField);
        searchField->selectAll(); // so that typing replaces the old text
    }
}

void MainViewController::controlTextDidEndEditing(QObject *)
{
    // After Return the field still has the focus and keeps its caret or selection.
    if (!searchField->hasFocus())
        return;
    const int caret = searchField->cursorPosition();
    const int start = searchField->selectionStart();
    const int length = searchField->selectionLength();
    MainQueue::shared().async(this, [=, this, text = searchField->text()] {
        // Text that was typed meanwhile is kept.
        if (!searchField->hasFocus() || searchField->text() != text)
            return;
        if (start < 0)
            searchField->setCursorPosition(caret);
        else if (caret == start)
            searchField->setSelection(start + length, -length);
        else
            searchField->setSelection(start, length);
    });
}

std::weak_ptr<MainViewController> MainViewController::weakSelf()
{
    return std::static_pointer_cast<MainViewController>(shared_from_this());
}

void registerSearchScenes()
{
    Storyboard::registerController(u"Main"_s, u"MainViewController"_s,
                                   [] { return ViewController::make<MainViewController>(); });
    Storyboard::registerCell(u"Main"_s, u"SubtitleCellID"_s, [] { return SubtitleCellView::fromScene(); });
}
