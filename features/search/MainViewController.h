#pragma once
#include "DropAreaMessage.h"
#include <base/UserDefaults.h>
#include <features/delivery/CompanionDelivery.h>
#include <features/delivery/ExternalAppInfo.h>
#include <model/LocaleUtilities.h>
#include <model/MetadataService.h>
#include <model/SubtitleService.h>
#include <ui/scenes/TableView.h>
#include <ui/window/PlatformSpecificController.h>
#include <QPointer>
#include <QSet>

class DownloadPrompt;
class DragFilesHereView;
class ImageView;
class LayoutConstraint;
class QLineEdit;
class QPushButton;
class QToolButton;
class SavePanel;
namespace ui
{
class Label;
}
namespace Ui
{
class MainViewController;
}

/// An optional value that one thread stores and others read: an immutable snapshot behind a shared pointer,
/// exchanged atomically. Readers keep a loaded value while they hold the pointer.
template <class Value>
class Snapshot final
{
public:
    /// The value, or null.
    std::shared_ptr<const Value> load() const { return std::atomic_load(&m_value); }
    std::optional<Value> value() const
    {
        const auto loaded = load();
        return loaded ? std::optional(*loaded) : std::nullopt;
    }
    void store(std::optional<Value> value)
    {
        std::atomic_store(&m_value, value ? std::make_shared<const Value>(std::move(*value)) : nullptr);
    }

private:
    std::shared_ptr<const Value> m_value;
};

/// The main window's content: searches for subtitles of a file or by words, lists them, shows the selected
/// one, and downloads and delivers it. Owned by the window; lives on the main thread.
///
/// Services call completions on any thread. Data that these write and delivery reads (`subtitles`,
/// `currentFileURL`, `currentExternalRequestInfo`) are snapshots; views change only in blocks on the main
/// queue. Results are neither sorted nor filtered, and a later query does not stop an earlier one: the last
/// to finish wins. Only tests derive from it, to observe the presented errors.
class MainViewController : public PlatformController<ViewController>,
                           public FileSearching,
                           public TableViewDataSource,
                           public TableViewDelegate
{
    Q_OBJECT
    Q_PROPERTY(bool isSearching READ isSearching WRITE setIsSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(bool isQuerying READ isQuerying NOTIFY isQueryingChanged)
    Q_PROPERTY(bool isDownloading READ isDownloading WRITE setIsDownloading NOTIFY isDownloadingChanged)
    Q_PROPERTY(QList<ExternalAppInfo> quorvaneAppsArray READ quorvaneAppsArray)
    Q_PROPERTY(QList<Language> languagesArray READ languagesArray CONSTANT)

public:
    using SendSubtitleErrors = ::SendSubtitleErrors;

    MainViewController();
    ~MainViewController() override;

    /// Where a request waits that came before the view was loaded, which takes it from there.
    void setPendingRequest(std::optional<ExternalRequest> *request) { m_pendingRequest = request; }
    /// The prompt that may be shown before a download; none at first. It must outlive the controller.
    void setDownloadPrompt(DownloadPrompt *prompt) { m_downloadPrompt = prompt; }

    bool isSearching() const { return m_isSearching; }
    void setIsSearching(bool searching);
    /// Whether any query is unanswered. `isSearching` is already false while the words of a file's name are
    /// searched for after its hash found nothing.
    bool isQuerying() const { return !m_openQueries.isEmpty(); }
    bool isDownloading() const { return m_isDownloading; }
    void setIsDownloading(bool downloading);
    /// The installed companion applications, looked up on every call.
    QList<ExternalAppInfo> quorvaneAppsArray() const;
    /// The language catalogue at construction time.
    const QList<Language> &languagesArray() const { return m_languagesArray; }

    /// Searches subtitles for the video file at `url`, by hash, then by the words of its name. Without
    /// `requestInfo` the stored one is kept.
    void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo) override;
    /// Searches by words, as they are.
    void searchForText(const QString &text, const std::optional<ExternalRequestInfo> &requestInfo);
    /// Sets the button's title to the delivery that a download will use.
    void updateDownloadButton();
    /// Shows the results or the drop target, and the panel for a selected row.
    void updateUIState(bool animated);
    /// Fills the panel with the selected result and looks up its poster.
    void updateDetailView();
    /// Downloads the selected result and delivers it; Alt alone forces the save sheet.
    void downloadSelectedSubtitle();
    /// The same, always with the save sheet.
    void saveSelectedSubtitleAs();
    /// Shows the sheet for the downloaded file, under its own name when none is suggested.
    void presentSavePanel(const std::shared_ptr<SavePanel> &panel,
                          const std::optional<QString> &suggestedName, const QUrl &file);

    Q_INVOKABLE void doSearch(QObject *sender);
    Q_INVOKABLE void cancelQuery(QObject *sender);
    Q_INVOKABLE void textFieldActionWithTextField(QObject *sender);
    Q_INVOKABLE void controlTextDidEndEditing(QObject *sender);
    Q_INVOKABLE void download(QObject *sender);
    Q_INVOKABLE void cancelDownload(QObject *sender);
    Q_INVOKABLE void focusSearchField(QObject *sender);
    Q_INVOKABLE void showInFolder(QObject *sender);

    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    int numberOfRowsInTableView() override;
    TableCellView *tableViewViewForRow(int row) override;
    QString tableViewAccessibleTextForRow(int row) override;
    void tableViewSelectionDidChange() override;

Q_SIGNALS:
    void isSearchingChanged(bool searching);
    void isQueryingChanged(bool querying);
    void isDownloadingChanged(bool downloading);

private:
    using SubtitleList = QList<SubtitlePtr>;

    /// A query, from its start to its answer.
    struct Search
    {
        SearchLanguage language;
        QString text;
        std::optional<QUrl> file = {}; // searched for instead of the text
        int number = 0;
    };

    /// A download from its start to the end of its delivery.
    struct Download
    {
        int number = 0;
        SubtitlePtr subtitle;
        bool forceSavePanel = false;
    };

    /// What the window says of an answer: in the drop area, and in the line above the rows.
    struct AnswerMessage
    {
        DropAreaMessage dropArea;
        bool hintIsLong = false;
        QString aboveRows = {};
    };

    // The search (MainViewControllerSearch.cpp).
    void beginQuery(QList<Arg> args, Search search);
    void finishQuery(const Search &search, const Result<QueryResult> &result);
    void showOutcome(const Search &search, const Result<QueryResult> &result);
    void endQuery(const Search &search);
    void revealCancelButton();
    void showResults(const Search &search);
    void searchForWordsOf(const QUrl &url, const SearchLanguage &language);
    void storeRequestInfo(const std::optional<ExternalRequestInfo> &requestInfo);
    void setCurrentFileURL(const std::optional<QUrl> &url);
    void forgetFileAndRequest();
    void showResultCount();
    void setWindowTitle(const QString &title);
    void languageObservation(const QString &newCode);

    // The list and the panel (MainViewControllerResults.cpp, MainViewControllerDetail.cpp).
    bool hasResults() const;
    /// The result in a row of the table, which must exist.
    SubtitlePtr shownSubtitle(int row) const;
    void reloadTable();
    void enterList();
    void showDropPrompt();
    void showNothingFound(const Search &search);
    void showNotices(const SearchLanguage &language);
    void showMessage(const AnswerMessage &message);
    void showSaveTarget();
    void showServiceStatus();
    void showDetailView(bool animated);
    void hideDetailView(bool animated);
    void loadPoster(const QString &imdbID);
    void fetchPoster(const FindResult &found);

    // Download and delivery (MainViewControllerDownload.cpp).
    /// The row that a download would take; nothing without a selection or a result list.
    std::optional<int> rowToDownload() const;
    void startDownload(bool forceSavePanel);
    void finishDownload(const Download &download, const Result<QUrl> &result);
    void deliverDownloadedSubtitle(const Download &download, const QUrl &file);
    Result<bool> sendSubtitleToExternalApp(const Download &download, const QUrl &file,
                                           const ExternalRequestInfo &request);
    /// Queues a block that runs on the main queue unless the download has been cancelled by then.
    void unlessCancelled(const Download &download, std::function<void()> block);
    void beginSheet(const std::shared_ptr<SavePanel> &panel, const QUrl &file);
    void moveToChosenPlace(const QUrl &file, const std::shared_ptr<SavePanel> &panel);
    void showDelivered(const QString &text, const std::optional<QUrl> &file);
    void showDeliveryText(const QString &text, const std::optional<QUrl> &file);
    void hideDelivered();
    void presentErrorOnWindow(const base::Error &error);
    std::weak_ptr<MainViewController> weakSelf();

    // Outlets of the scene.
    QLineEdit *searchField = nullptr;
    QToolButton *cancelSearchButton = nullptr;
    QWidget *scrollView = nullptr;
    TableView *tableView = nullptr;
    QWidget *detailView = nullptr;
    LayoutConstraint *detailViewBottomConstraint = nullptr;
    ImageView *detailViewImageView = nullptr;
    ui::Label *detailFileLabel = nullptr;
    ui::Label *detailTitleLabel = nullptr;
    ui::Label *detailLanguageLabel = nullptr;
    DragFilesHereView *dragFilesHereView = nullptr;
    QPointer<QPushButton> downloadButton; // may be destroyed first

    const QList<Language> m_languagesArray;
    std::optional<ExternalRequest> *m_pendingRequest = nullptr;
    DownloadPrompt *m_downloadPrompt = nullptr;
    bool m_isSearching = false;
    bool m_isDownloading = false;
    bool m_hasToldOfKeys = false; // the hint is shown only once
    UserDefaults::Observation languageCodeObserver;
    Snapshot<SubtitleList> subtitles;
    Snapshot<QUrl> currentFileURL;
    Snapshot<ExternalRequestInfo> currentExternalRequestInfo;

    std::unique_ptr<Ui::MainViewController> m_scene;
    QSet<int> m_openQueries; // the numbers of queries that are neither answered nor cancelled
    int m_lastQuery = 0;
    int m_lastCancelledQuery = 0;
    int m_lastDownload = 0;
    int m_lastCancelledDownload = 0;
    AnswerMessage m_answer;              // of the last answer; a search that fails leaves it
    SubtitleList m_shownSubtitles;       // the rows of the table: the results as of its last reload
    std::optional<QUrl> m_deliveredFile; // for "Show in folder"
};

/// Registers the scenes "MainViewController" and "SubtitleCellID" with the storyboard "Main".
void registerSearchScenes();
