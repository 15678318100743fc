#include "ui_MainViewController.h"

#include "MainViewController.h"

#include <base/FileManager.h>
#include <base/MainQueue.h>
#include <base/StandardOutput.h>
#include <base/LocalizedString.h>
#include <ui/controls/Label.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>
#include <ui/views/LayoutConstraint.h>

namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr qreal PanelShown = 0;
constexpr qreal PanelHidden = -168;
constexpr QMargins InsetsWithPanel(0, 80, 0, 168); // left, top, right, bottom
constexpr QMargins InsetsWithoutPanel(0, 80, 0, 0);
constexpr auto PanelDuration = 250ms;
constexpr qreal PosterCornerRadius = 6;
constexpr QSize PosterSize(154, 154);

void printError(const base::Error &error)
{
    printLine(u"Error: "_s + error.localizedDescription);
}
} // namespace

void MainViewController::updateDetailView()
{
    const int row = tableView->selectedRow();
    if (row < 0)
        return printLine(u"No subtitles available"_s);
    // The results of a search that has just ended may be stored while the table still shows the rows before.
    const auto found = subtitles.load();
    if (!found)
        return;
    if (found->isEmpty())
        return printLine(u"This doesn't work"_s);
    const SubtitlePtr subtitle = shownSubtitle(row);
    detailFileLabel->setText(subtitle->subFileName);
    detailTitleLabel->setText(subtitle->detailString());
    detailLanguageLabel->setText(subtitle->languageName);

    // Subviews share its surface in any case.
    detailViewImageView->setWantsLayer(true);
    detailViewImageView->layer()->setCornerRadius(PosterCornerRadius);
    detailViewImageView->layer()->setMasksToBounds(true);
    detailViewImageView->setImageWithFade(std::nullopt);
    if (subtitle->imdbID)
        loadPoster(*subtitle->imdbID);
    else
        printLine(u"No poster image found"_s);
}

/// Does not check that the selection is unchanged: the last poster to arrive is shown.
void MainViewController::loadPoster(const QString &imdbID)
{
    const auto take = [self = QPointer(this)](const Result<FindResult> &found) {
        if (!self)
            return;
        if (!found)
            return printError(found.error());
        self->fetchPoster(*found);
    };
    MetadataService::shared().findExternally(imdbID, ExternalSource::imdb, take);
}

void MainViewController::fetchPoster(const FindResult &found)
{
    const QList<TmdbItem> &items = found.movieResults.isEmpty() ? found.tvResults : found.movieResults;
    if (items.isEmpty())
        return;
    const auto show = [self = QPointer(this)](const Result<QImage> &image) {
        if (!self)
            return;
        if (!image)
            return printError(image.error());
        self->detailViewImageView->setImageWithFade(ui::Image(*image));
    };
    MetadataService::shared().fetchImage(items.first(), ImageKind::Poster, PosterSize, show);
}

void MainViewController::showDetailView(bool animated)
{
    if (detailViewBottomConstraint->constant() == PanelShown)
        return;
    scrollView->setContentsMargins(InsetsWithPanel);
    if (!animated)
        return detailViewBottomConstraint->setConstant(PanelShown);
    Animator::setConstant(*detailViewBottomConstraint, PanelShown, PanelDuration, [self = QPointer(this)] {
        if (self)
            MainQueue::shared().async(
                self, [self] { self->tableView->scrollRowToVisible(self->tableView->selectedRow()); });
    });
}

void MainViewController::hideDetailView(bool animated)
{
    if (detailViewBottomConstraint->constant() == PanelHidden)
        return;
    scrollView->setContentsMargins(InsetsWithoutPanel);
    if (animated)
        Animator::setConstant(*detailViewBottomConstraint, PanelHidden, PanelDuration);
    else
        detailViewBottomConstraint->setConstant(PanelHidden);
}

/// The file of the search, also after words were typed; the save sheet starts from it.
void MainViewController::showSaveTarget()
{
    const auto url = currentFileURL.value();
    const bool isSavedBeside = url && !currentExternalRequestInfo.load();
    if (isSavedBeside)
        m_scene->saveTargetLabel->setText(
            String::fill(String::localize(u"Saves beside “%@”"_s), {FileManager::displayName(*url)}));
    m_scene->saveTargetLabel->setVisible(isSavedBeside);
}
