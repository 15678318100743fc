#pragma once
#include <base/UserDefaults.h>
#include <features/delivery/CompanionDelivery.h>
#include <features/delivery/ExternalAppInfo.h>
#include <features/delivery/FileSearching.h>
#include <model/Language.h>
#include <ui/scenes/TableView.h>
#include "DropAreaMessage.h"
#include "Snapshot.h"
#include <model/MetadataService.h>
#include <model/SubtitleService.h>
#include <ui/window/PlatformSpecificController.h>
#include <QSet>

class DragFilesHereView;
class ImageView;
namespace ui
{
class Label;
}
class LayoutConstraint;
class QLineEdit;
class QPushButton;
class QToolButton;
class SavePanel;
class ScrollView;
namespace Ui
{
class MainViewController;
}

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
    enum class SaveChoice
    {
        AsRequested,
        AlwaysSheet
    };

    /// The language of one search: the setting when it started, and the code that was sent.
    struct SearchLanguage
    {
        QString preferredCode; // empty when none is stored
        QString sentCode;
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
    static SearchLanguage searchLanguage();
    void beginQuery(const QList<Arg> &args, std::function<void(MainViewController &)> resultsStep);
    void finishQuery(int query, const Result<QueryResult> &result,
                     std::function<void(MainViewController &)> resultsStep);
    void endQuery(int query);
    bool isQueryCancelled(int query) const { return query <= m_lastCancelledQuery; }
    void scheduleCancelButtonReveal();
    void revealCancelButton();
    void showFileResults(const QUrl &url, const SearchLanguage &language);
    void showTextResults(const QString &text, const SearchLanguage &language);
    void storeRequestInfo(const std::optional<ExternalRequestInfo> &requestInfo);
    void setCurrentFileURL(const std::optional<QUrl> &url);
    void forgetFileAndRequest();
    void showResultCount();
    void setWindowTitle(const QString &title);
    void languageObservation(const QString &newCode);

    // The list and the panel (MainViewControllerResults.cpp, MainViewControllerDetail.cpp).
    void reloadTable();
    void enterList();
    void showDropPrompt();
    void showNothingFound(const QString &text, const SearchLanguage &language);
    void showFileNotFound(const QUrl &url, const SearchLanguage &language);
    void showLanguageNotice(const SearchLanguage &language);
    void showWordsSearch(const QString &words);
    void showMessage(const AnswerMessage &message);
    void showSaveTarget();
    void showPause();
    void showRemainingDownloads();
    void showDetailView(bool animated);
    void hideDetailView(bool animated);
    void loadPoster(const QString &imdbID);
    void fetchPoster(const FindResult &found);

    // Download and delivery (MainViewControllerDownload.cpp).
    /// The row that a download would take; nothing without a selection or a result list.
    std::optional<int> rowToDownload() const;
    void startDownload(SaveChoice choice);
    void finishDownload(const Download &download, const Result<QUrl> &result);
    void deliverDownloadedSubtitle(const Download &download, const QUrl &file);
    Result<bool> sendSubtitleToExternalApp(const Download &download, const QUrl &file,
                                           const ExternalRequestInfo &request);
    /// Queues a block that runs on the main queue unless the download has been cancelled by then.
    void unlessCancelled(const Download &download, std::function<void(MainViewController &)> block);
    void beginSheet(const std::shared_ptr<SavePanel> &panel, const QUrl &file);
    void moveToChosenPlace(const QUrl &file, const std::shared_ptr<SavePanel> &panel);
    void askForAnotherName(const QUrl &file, const std::shared_ptr<SavePanel> &panel, const QUrl &taken);
    void showDelivered(const QString &text, const std::optional<QUrl> &file);
    void showWhereItLies(const QUrl &file);
    void showDeliveryText(const QString &text, const std::optional<QUrl> &file);
    void hideDelivered();
    void presentErrorOnWindow(const base::Error &error);
    std::weak_ptr<MainViewController> weakSelf();
    /// Queues a block for the main queue that runs if the controller still exists.
    static void onMainQueue(const std::weak_ptr<MainViewController> &controller,
                            std::function<void(MainViewController &)> block);

    // Outlets of the scene; the weak ones may be destroyed before the controller.
    QPointer<QLineEdit> searchField;
    QPointer<QToolButton> cancelSearchButton;
    ScrollView *scrollView = nullptr;
    QPointer<TableView> tableView;
    QWidget *detailView = nullptr;
    LayoutConstraint *detailViewBottomConstraint = nullptr;
    ImageView *detailViewImageView = nullptr;
    ui::Label *detailFileLabel = nullptr;
    ui::Label *detailTitleLabel = nullptr;
    ui::Label *detailLanguageLabel = nullptr;
    DragFilesHereView *dragFilesHereView = nullptr;
    QPointer<QPushButton> downloadButton;

    const QList<Language> m_languagesArray;
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
    AnswerMessage m_answer;                               // of the last answer; a search that fails leaves it
    std::shared_ptr<const SubtitleList> m_shownSubtitles; // the rows of the table as of its last reload
    std::optional<QUrl> m_deliveredFile;                  // for "Show in folder"
};
