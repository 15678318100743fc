#include "MainViewController.h"

#include <base/MainQueue.h>
#include <base/StandardOutput.h>
#include <base/LocalizedString.h>
#include <features/delivery/FileName.h>
#include <model/LanguageCodeConversion.h>
#include <ui/views/Animator.h>
#include <ui/window/Window.h>

#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto CancelButtonDelay = 10s;
constexpr int SearchErrorCode = 123;
constexpr auto LanguageCodeKey = "languageCode"_L1;
constexpr auto DefaultLanguage = "eng"_L1;

/// The file's name with its extension, for any kind of URL.
QString lastPathComponent(const QUrl &url)
{
    return QString::fromUtf8(FileName::lastPathComponent(url)).remove(QChar::Null);
}
} // namespace

MainViewController::SearchLanguage MainViewController::searchLanguage()
{
    const auto code = UserDefaults::standard().string(LanguageCodeKey);
    if (!code)
        return {QString(), DefaultLanguage};
    return {*code, iso639_2LanguageCode(*code)};
}

void MainViewController::searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo)
{
    const SearchLanguage language = searchLanguage();
    const QString name = lastPathComponent(url);
    if (searchField)
        searchField->setText(name);
    const auto hash = SubtitleService::hashFor(url);
    if (!hash) {
        printLine(u"Failed to create a file hash for the url"_s);
        onMainQueue(weakSelf(), [name](MainViewController &self) { self.searchForText(name, std::nullopt); });
        return;
    }
    const QList<Arg> args = {
        {Param::byteSize, QString::number(hash->size)},
        {Param::movieHash, hash->hash},
        {Param::language, language.sentCode},
    };
    setIsSearching(true);
    setCurrentFileURL(url);
    storeRequestInfo(requestInfo);
    beginQuery(args, [url, language](MainViewController &self) { self.showFileResults(url, language); });
}

void MainViewController::searchForText(const QString &text,
                                       const std::optional<ExternalRequestInfo> &requestInfo)
{
    const SearchLanguage language = searchLanguage();
    const QList<Arg> args = {{Param::text, text}, {Param::language, language.sentCode}};
    setIsSearching(true);
    storeRequestInfo(requestInfo);
    beginQuery(args, [text, language](MainViewController &self) { self.showTextResults(text, language); });
}

void MainViewController::beginQuery(const QList<Arg> &args,
                                    std::function<void(MainViewController &)> resultsStep)
{
    hideDelivered();
    scheduleCancelButtonReveal();
    const int query = ++m_lastQuery;
    m_openQueries.insert(query);
    Q_EMIT isQueryingChanged(true);
    SubtitleService::shared().query(
        args, [weak = weakSelf(), query, step = std::move(resultsStep)](const auto &result) {
            if (const auto self = weak.lock())
                self->finishQuery(query, result, step);
        });
}

/// Runs on the service's thread: stores the results here and changes views on the main queue.
void MainViewController::finishQuery(int query, const Result<QueryResult> &result,
                                     std::function<void(MainViewController &)> resultsStep)
{
    const auto weak = weakSelf();
    if (result) {
        subtitles.store(result->subtitles);
        onMainQueue(weak, [query, step = std::move(resultsStep)](MainViewController &self) {
            if (self.isQueryCancelled(query))
                return;
            step(self); // which may ask the next query
            self.endQuery(query);
        });
    } else {
        const QString description = result.error().localizedDescription;
        printLine(u"Error: "_s + description);
        onMainQueue(weak, [query, description](MainViewController &self) {
            if (self.isQueryCancelled(query))
                return;
            self.endQuery(query);
            self.presentError(base::Error{QString(), SearchErrorCode, description});
        });
    }
    // Queued after the step above, so it also runs after a fallback search that the step has started, and
    // sets `isSearching` back while that one is still under way.
    onMainQueue(weak, [query](MainViewController &self) {
        if (self.isQueryCancelled(query))
            return;
        self.setIsSearching(false);
        self.revealCancelButton();
    });
}

void MainViewController::endQuery(int query)
{
    m_openQueries.remove(query);
    if (isQuerying())
        return;
    showMessage(m_answer);
    Q_EMIT isQueryingChanged(false);
}

void MainViewController::scheduleCancelButtonReveal()
{
    MainQueue::shared().asyncAfter(CancelButtonDelay, [weak = weakSelf()] {
        const auto self = weak.lock();
        if (self && self->isSearching())
            self->revealCancelButton();
    });
}

void MainViewController::revealCancelButton()
{
    if (cancelSearchButton)
        Animator::setHidden(*cancelSearchButton, false);
}

void MainViewController::showFileResults(const QUrl &url, const SearchLanguage &language)
{
    showResultCount();
    reloadTable();
    const auto found = subtitles.load();
    if (found && !found->isEmpty()) {
        showLanguageNotice(language);
        updateUIState(true);
        return;
    }
    const QString words = VideoFileUtilities::componentsFrom(url).searchString;
    if (searchField)
        searchField->setText(words);
    showFileNotFound(url, language);
    showWordsSearch(words);
    searchForText(searchField ? searchField->text() : words, std::nullopt);
}

void MainViewController::showTextResults(const QString &text, const SearchLanguage &language)
{
    showResultCount();
    if (tableView)
        tableView->scrollRowToVisible(0);
    reloadTable();
    const auto found = subtitles.load();
    if (!found || found->isEmpty())
        showNothingFound(text, language);
    else
        showLanguageNotice(language);
    updateUIState(true);
}

void MainViewController::doSearch(QObject *)
{
    const QString text = searchField ? searchField->text() : QString();
    if (text.isEmpty())
        return;
    forgetFileAndRequest();
    searchForText(text, std::nullopt);
}

void MainViewController::textFieldActionWithTextField(QObject *sender)
{
    const auto *field = qobject_cast<QLineEdit *>(sender);
    if (field && !field->text().isEmpty())
        searchForText(field->text(), std::nullopt);
}

void MainViewController::cancelQuery(QObject *)
{
    SubtitleService::shared().cancelQueryTask();
    m_lastCancelledQuery = m_lastQuery; // answers that have come already may wait in the main queue
    if (!isSearching() && searchField)
        searchField->clear();
    setIsSearching(false);
    if (cancelSearchButton)
        Animator::setHidden(*cancelSearchButton, true);
    forgetFileAndRequest();
    subtitles.store(SubtitleList());
    m_openQueries.clear();
    Q_EMIT isQueryingChanged(false);
    showDropPrompt();
    hideDelivered();
    reloadTable();
    updateUIState(true);
    setWindowTitle(u"Plovendix"_s);
    focusSearchField(nullptr);
}

void MainViewController::storeRequestInfo(const std::optional<ExternalRequestInfo> &requestInfo)
{
    if (!requestInfo)
        return;
    currentExternalRequestInfo.store(*requestInfo);
    updateDownloadButton();
    showSaveTarget();
}

void MainViewController::setCurrentFileURL(const std::optional<QUrl> &url)
{
    currentFileURL.store(url);
    showSaveTarget();
}

void MainViewController::forgetFileAndRequest()
{
    setCurrentFileURL(std::nullopt);
    currentExternalRequestInfo.clear();
    updateDownloadButton();
}

void MainViewController::updateDownloadButton()
{
    if (!downloadButton)
        return;
    const QString comment = u"Download subtitle file"_s;
    if (const auto info = currentExternalRequestInfo.load()) {
        QString title = String::fill(String::localize(u"Send to %@"_s, comment), {info->name});
        // The name comes from outside, so ampersands must not become mnemonics.
        downloadButton->setText(title.replace(u'&', "&&"_L1));
        return;
    }
    downloadButton->setText(String::localize(u"Download"_s, comment));
}

void MainViewController::showResultCount()
{
    const auto found = subtitles.load();
    const auto count = found ? found->size() : 0;
    setWindowTitle(
        String::fill(String::localize(u"Plovendix (%d subtitles found)"_s), {QString::number(count)}));
}

void MainViewController::setWindowTitle(const QString &title)
{
    if (ui::Window *host = window())
        host->setWindowTitle(title);
}

void MainViewController::languageObservation(const QString &newCode)
{
    printLine(u"language code changed to "_s + newCode);
    MetadataService::shared().preferredLanguage = newCode;
    if (tableView)
        tableView->deselectAll();
    if (const auto url = currentFileURL.value()) {
        searchForFile(*url, currentExternalRequestInfo.value());
        return;
    }
    const QString text = searchField ? searchField->text() : QString();
    if (text.isEmpty())
        return;
    forgetFileAndRequest();
    searchForText(text, std::nullopt);
}

void MainViewController::onMainQueue(const std::weak_ptr<MainViewController> &controller,
                                     std::function<void(MainViewController &)> block)
{
    MainQueue::shared().async([controller, run = std::move(block)] {
        if (const auto self = controller.lock())
            run(*self);
    });
}
