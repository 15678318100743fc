#include "ui_MainViewController.h"

#include "MainViewController.h"
#include "PendingRequest.h"
#include "SearchField.h"

#include <base/Workspace.h>
#include <model/LocaleUtilities.h>
#include <model/ServiceStatus.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/window/Window.h>

MainViewController::MainViewController() : m_languagesArray(LocaleUtilities::shared().languages()) {}

MainViewController::~MainViewController()
{
    languageCodeObserver.invalidate();
}

void MainViewController::setIsSearching(bool searching)
{
    if (m_isSearching == searching)
        return;
    m_isSearching = searching;
    Q_EMIT isSearchingChanged(searching);
}

void MainViewController::setIsDownloading(bool downloading)
{
    if (m_isDownloading == downloading)
        return;
    m_isDownloading = downloading;
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
    connect(&ServiceStatus::shared(), &ServiceStatus::changed, this,
            &MainViewController::showRemainingDownloads);
    connect(&ServiceStatus::shared(), &ServiceStatus::changed, this, &MainViewController::showPause);
    showRemainingDownloads();
    updateUIState(false);
    // This property is "en" also when nothing is stored.
    languageCodeObserver =
        UserDefaults::standard().observe(QStringLiteral("languageCode"), [this](const QVariant &) {
            languageObservation(UserDefaults::standard().languageCode());
        });

    PendingRequest *pending = PendingRequest::shared();
    if (!pending)
        return;
    if (const auto request = pending->externalRequest()) {
        searchForFile(request->url, request->requestInfo);
        pending->setExternalRequest(std::nullopt);
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
    ui::Window *host = window();
    if (!host || !searchField)
        return;
    host->makeFirstResponder(searchField);
    searchField->selectAll(); // so that typing replaces the old text
}

void MainViewController::controlTextDidEndEditing(QObject *)
{
    // After Return the field still has the focus and keeps its caret or selection.
    if (!searchField || !searchField->hasFocus())
        return;
    const int caret = searchField->cursorPosition();
    const int start = searchField->selectionStart();
    const int length = searchField->selectionLength();
    onMainQueue(weakSelf(), [=, text = searchField->text()](MainViewController &self) {
        if (!self.searchField || !self.searchField->hasFocus())
            return;
        // Text that was typed meanwhile is kept.
        if (self.searchField->text() != text)
            return;
        if (start < 0)
            self.searchField->setCursorPosition(caret);
        else if (caret == start)
            self.searchField->setSelection(start + length, -length);
        else
            self.searchField->setSelection(start, length);
    });
}

std::weak_ptr<MainViewController> MainViewController::weakSelf()
{
    return std::static_pointer_cast<MainViewController>(shared_from_this());
}
