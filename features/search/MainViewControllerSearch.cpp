#include "MainViewController.h"

#include <base/FileManager.h>
#include <base/MainQueue.h>
#include <base/StandardOutput.h>
#include <base/LocalizedString.h>
#include <features/delivery/FileName.h>
#include <model/LanguageCodes.h>
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

SearchLanguage searchLanguage()
{
    const auto code = UserDefaults::standard().string(LanguageCodeKey);
    return code ? SearchLanguage{*code, LanguageCodes::shared().iso639_2LanguageCode(*code)}
                : SearchLanguage{{}, DefaultLanguage};
}
} // namespace

void MainViewController::searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo)
{
    const SearchLanguage language = searchLanguage();
    const QString name = QString::fromUtf8(FileName::lastPathComponent(url)).remove(QChar::Null);
    searchField->setText(name);
    const auto hash = SubtitleService::hashFor(url);
    if (!hash) {
        printLine(u"Failed to create a file hash for the url"_s);
        MainQueue::shared().async(this, [this, name] { searchForText(name, std::nullopt); });
        return;
    }
    setIsSearching(true);
    setCurrentFileURL(url);
    storeRequestInfo(requestInfo);
    beginQuery({{Param::byteSize, QString::number(hash->size)}, {Param::movieHash, hash->hash}},
               {.language = language, .text = name, .file = url});
}

void MainViewController::searchForText(const QString &text,
                                       const std::optional<ExternalRequestInfo> &requestInfo)
{
    const SearchLanguage language = searchLanguage();
    setIsSearching(true);
    storeRequestInfo(requestInfo);
    beginQuery({{Param::text, text}}, {.language = language, .text = text});
}

void MainViewController::beginQuery(QList<Arg> args, Search search)
{
    hideDelivered();
    MainQueue::shared().asyncAfter(CancelButtonDelay, [self = QPointer(this)] {
        if (self && self->isSearching())
            self->revealCancelButton();
    });
    search.number = ++m_lastQuery;
    m_openQueries.insert(search.number);
    Q_EMIT isQueryingChanged(true);
    args += {Param::language, search.language.sentCode};
    SubtitleService::shared().query(args, [weak = weakSelf(), search](const auto &result) {
        if (const auto self = weak.lock())
            self->finishQuery(search, result);
    });
}

/// Runs on the service's thread: stores the results here and changes views on the main queue.
void MainViewController::finishQuery(const Search &search, const Result<QueryResult> &result)
{
    if (result)
        subtitles.store(result->subtitles);
    else
        printLine(u"Error: "_s + result.error().localizedDescription);
    MainQueue::shared().async([weak = weakSelf(), search, result] {
        const auto self = weak.lock();
        if (self && search.number > self->m_lastCancelledQuery)
            self->showOutcome(search, result);
    });
}

void MainViewController::showOutcome(const Search &search, const Result<QueryResult> &result)
{
    if (result) {
        showResults(search); // which may ask the next query
        endQuery(search);
    } else {
        endQuery(search);
        presentError(base::Error{QString(), SearchErrorCode, result.error().localizedDescription});
    }
    // Also after a fallback search that has just begun: `isSearching` is set back while it is under way.
    setIsSearching(false);
    revealCancelButton();
}

void MainViewController::endQuery(const Search &search)
{
    m_openQueries.remove(search.number);
    if (isQuerying())
        return;
    showMessage(m_answer);
    Q_EMIT isQueryingChanged(false);
}

void MainViewController::revealCancelButton()
{
    Animator::setHidden(*cancelSearchButton, false);
}

void MainViewController::showResults(const Search &search)
{
    showResultCount();
    if (!search.file)
        tableView->scrollRowToVisible(0);
    reloadTable();
    if (hasResults())
        showNotices(search.language);
    else if (search.file)
        return searchForWordsOf(*search.file, search.language);
    else
        showNothingFound(search);
    updateUIState(true);
}

void MainViewController::searchForWordsOf(const QUrl &url, const SearchLanguage &language)
{
    const QString words = VideoFileUtilities::componentsFrom(url).searchString;
    searchField->setText(words);
    // This stays if the next search fails. The list may still be shown, without rows.
    const DropAreaMessage missing = nothingFound(FileManager::displayName(url), language);
    m_answer = {.dropArea = missing, .aboveRows = missing.headline};
    const DropAreaMessage next = wordsSearch(words);
    showMessage({.dropArea = next, .aboveRows = next.headline}); // until the answer comes
    searchForText(searchField->text(), std::nullopt);
}

void MainViewController::doSearch(QObject *)
{
    const QString text = searchField->text();
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
    if (!isSearching())
        searchField->clear();
    setIsSearching(false);
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
    currentExternalRequestInfo.store(requestInfo);
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
    currentExternalRequestInfo.store(std::nullopt);
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
    const QString count = QString::number(found ? found->size() : 0);
    setWindowTitle(String::fill(String::localize(u"Plovendix (%d subtitles found)"_s), {count}));
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
    tableView->deselectAll();
    if (const auto url = currentFileURL.value())
        searchForFile(*url, currentExternalRequestInfo.value());
    else
        doSearch(nullptr);
}
