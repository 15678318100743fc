#include "MainViewController.h"

#include <delivery/FileName.h>
#include <languages/catalogue/LanguageCodeConversion.h>
#include <platform/Animator.h>
#include <platform/MainQueue.h>
#include <platform/StandardOutput.h>
#include <platform/Window.h>
#include <views/StringHelpers.h>

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

/// The file's name with its extension, whatever kind of URL names it.
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
    currentFileURL.store(url);
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
    showDropPrompt();
    hideDelivered();
    scheduleCancelButtonReveal();
    SubtitleService::shared().query(args,
                                    [weak = weakSelf(), step = std::move(resultsStep)](const auto &result) {
                                        if (const auto self = weak.lock())
                                            self->finishQuery(result, step);
                                    });
}

/// On whatever thread the service answers on: what was found is stored here, what is seen changes on the main
/// queue.
void MainViewController::finishQuery(const Result<QueryResult> &result,
                                     std::function<void(MainViewController &)> resultsStep)
{
    const auto weak = weakSelf();
    if (result) {
        subtitles.store(result->subtitles);
        onMainQueue(weak, std::move(resultsStep));
    } else {
        const QString description = result.error().localizedDescription;
        printLine(u"Error: "_s + description);
        onMainQueue(weak, [description](MainViewController &self) {
            self.presentError(Error{QString(), SearchErrorCode, description});
        });
    }
    // Queued after the step above, so it also runs after a fallback search that the step has started, and
    // sets `isSearching` back while that one is still under way.
    onMainQueue(weak, [](MainViewController &self) {
        self.setIsSearching(false);
        self.revealCancelButton();
    });
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
    if (!isSearching() && searchField)
        searchField->clear();
    setIsSearching(false);
    if (cancelSearchButton)
        Animator::setHidden(*cancelSearchButton, true);
    forgetFileAndRequest();
    subtitles.store(SubtitleList());
    showDropPrompt();
    hideDelivered();
    reloadTable();
    updateUIState(true);
    setWindowTitle(u"Plovendix"_s);
    focusSearchField(nullptr);
}

void MainViewController::controlTextDidEndEditing(QObject *)
{
    // Where editing ended by Return, the field still has the focus and keeps its caret or selection.
    if (!searchField || !searchField->hasFocus())
        return;
    const int caret = searchField->cursorPosition();
    const int start = searchField->selectionStart();
    const int length = searchField->selectionLength();
    onMainQueue(weakSelf(), [=, text = searchField->text()](MainViewController &self) {
        if (!self.searchField || !self.searchField->hasFocus())
            return;
        // Who types on meanwhile is not set back.
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

void MainViewController::storeRequestInfo(const std::optional<ExternalRequestInfo> &requestInfo)
{
    if (!requestInfo)
        return;
    currentExternalRequestInfo.store(*requestInfo);
    updateDownloadButton();
}

void MainViewController::forgetFileAndRequest()
{
    currentFileURL.clear();
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
        // The name comes from outside and the button has no mnemonic.
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
    if (Window *host = window())
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
