#include "ui_PrefsServicesViewController.h"

#include "FolderImportSection.h"
#include <base/Links.h>
#include "PrefsServicesViewController.h"

#include <base/Workspace.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/window/Window.h>

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int LongestFolder = 270; // points
constexpr size_t SubtitleAnswer = 0;
constexpr size_t FilmAnswer = 1;

/// The folder with "~" for the home folder.
QString shortFolder(const QString &file)
{
    const QString folder = QFileInfo(file).absolutePath();
    const QString home = QDir::homePath();
    return folder.startsWith(home + u'/') ? u'~' + folder.mid(home.size()) : folder;
}

QString downloadsLeft(const ServiceAccounts::Connection &connection)
{
    if (!connection.remainingDownloads)
        return {};
    const QLocale locale;
    const QString remaining = locale.toString(*connection.remainingDownloads);
    if (!connection.allowedDownloads)
        return String::fill(String::localize(u"Downloads left today: %@."_s), {remaining});
    return String::fill(String::localize(u"Downloads left today: %1$@ of %2$@."_s),
                        {remaining, locale.toString(*connection.allowedDownloads)});
}

QString sentenceFor(const Result<ServiceAccounts::Connection> &answer)
{
    if (!answer)
        return answer.error().localizedDescription;
    const QString accepted = answer->isLoggedIn
                                 ? String::localize(u"The subtitle service accepts the key and the login."_s)
                                 : String::localize(u"The subtitle service accepts the key."_s);
    return u"%1 %2"_s.arg(accepted, downloadsLeft(*answer)).trimmed();
}

QString sentenceFor(const Result<void> &answer)
{
    return answer ? String::localize(u"The film database accepts its key."_s)
                  : answer.error().localizedDescription;
}
} // namespace

PrefsServicesViewController::PrefsServicesViewController() : m_accounts(ServiceAccounts::shared()) {}
PrefsServicesViewController::~PrefsServicesViewController() = default;

QString PrefsServicesViewController::title() const
{
    return String::localize(u"Services"_s);
}

void PrefsServicesViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::PrefsServicesViewController>();
    m_scene->setupUi(root.get());
    m_fields = {{m_scene->keyField, Item::SubtitleKey},
                {m_scene->passwordField, Item::SubtitlePassword},
                {m_scene->metadataKeyField, Item::MetadataKey}};
    connectScene(*root, *this);
    setView(std::move(root));
}

void PrefsServicesViewController::viewDidLoad()
{
    PlatformController::viewDidLoad();
    for (const Field &field : m_fields)
        connect(field.edit, &QLineEdit::editingFinished, this, [this, field] { save(field); });
    if (m_accounts) {
        connect(m_accounts.get(), &ServiceAccounts::changed, this, &PrefsServicesViewController::showTexts);
        connect(m_accounts.get(), &ServiceAccounts::changed, this, &PrefsServicesViewController::showAnswers);
        showAnswers();
    }
    m_scene->testButton->setEnabled(m_accounts != nullptr);
    m_scene->catalogueButton->setEnabled(m_accounts != nullptr);
    makeFolderSection();
    showTexts();
    showCataloguePlace();
}

void PrefsServicesViewController::makeFolderSection()
{
    m_folders =
        new FolderImportSection({m_scene->addFolderButton, m_scene->importIndicator, m_scene->importLine,
                                 m_scene->cancelImportButton, m_scene->importLabel},
                                *view());
    connect(m_folders, &FolderImportSection::catalogueChanged, this,
            &PrefsServicesViewController::showCataloguePlace);
}

/// May be called before the view was loaded, which then shows the same state.
void PrefsServicesViewController::viewWillAppear()
{
    if (isViewLoaded())
        showCataloguePlace();
}

/// The window grew downwards to this pane's size.
void PrefsServicesViewController::viewDidAppear()
{
    ui::Window *host = window();
    if (!host)
        return;
    const QRect room = host->screen()->availableGeometry();
    const int highest = std::max(room.top(), room.bottom() + 1 - host->height());
    if (host->y() > highest)
        host->move(host->x(), highest);
}

/// A field that is being edited is left unchanged.
void PrefsServicesViewController::showTexts()
{
    for (const auto &[edit, item] : m_fields) {
        const bool isFixed = m_accounts && m_accounts->isFixed(item);
        edit->setEnabled(m_accounts && !isFixed);
        edit->setToolTip(isFixed ? String::localize(u"Set by the environment"_s) : QString());
        if (m_accounts && !edit->isModified())
            edit->setText(m_accounts->text(item));
    }
}

void PrefsServicesViewController::showCataloguePlace()
{
    if (!m_accounts)
        return;
    const ServiceAccounts::Catalogue catalogue = m_accounts->catalogue();
    QPushButton *button = m_scene->catalogueButton;
    const QString folder =
        button->fontMetrics().elidedText(shortFolder(catalogue.file), Qt::ElideMiddle, LongestFolder);
    button->setText(QString(folder).replace(u'&', "&&"_L1)); // a path has no mnemonics
    button->setToolTip(QFileInfo(catalogue.file).absolutePath());
    QString size = QLocale().formattedDataSize(catalogue.bytes);
    if (!catalogue.isOwn)
        size = String::fill(String::localize(u"%@, comes with the program"_s), {size});
    m_scene->catalogueSizeLabel->setText(size);
}

void PrefsServicesViewController::save(const Field &field)
{
    if (!m_accounts || !field.edit->isModified())
        return;
    field.edit->setModified(false);
    if (field.edit->text() == m_accounts->text(field.item))
        return;
    m_notKept.clear();
    if (!isTesting())
        m_answers.clear();
    showAnswers();
    m_accounts->setText(field.item, field.edit->text(), [weak = weakSelf()](const Result<void> &kept) {
        const auto self = weak.lock();
        if (!self)
            return;
        if (!kept)
            self->m_notKept = kept.error().localizedDescription;
        self->showAnswers();
    });
}

void PrefsServicesViewController::getKey(QObject *)
{
    Links::open(Links::SubtitleKeyPage);
}

void PrefsServicesViewController::testConnection(QObject *)
{
    for (const Field &field : m_fields)
        save(field);
    const bool asksFilms = !m_accounts->text(Item::MetadataKey).isEmpty();
    m_answers.assign(asksFilms ? 2 : 1, std::nullopt);
    showAnswers();
    m_accounts->testSubtitles([weak = weakSelf()](const Result<ServiceAccounts::Connection> &answer) {
        const auto self = weak.lock();
        if (!self)
            return;
        QString sentence = sentenceFor(answer);
        if (answer && self->hasHalfAnAccount())
            sentence +=
                u' ' + String::localize(u"No login was tried: it takes both user name and password."_s);
        self->takeAnswer(SubtitleAnswer, sentence);
    });
    if (!asksFilms)
        return;
    m_accounts->testFilms([weak = weakSelf()](const Result<void> &answer) {
        if (const auto self = weak.lock())
            self->takeAnswer(FilmAnswer, sentenceFor(answer));
    });
}

bool PrefsServicesViewController::hasHalfAnAccount() const
{
    const bool hasName = !m_scene->userField->text().trimmed().isEmpty();
    return hasName == m_accounts->text(Item::SubtitlePassword).isEmpty();
}

bool PrefsServicesViewController::isTesting() const
{
    return std::find(m_answers.begin(), m_answers.end(), std::nullopt) != m_answers.end();
}

void PrefsServicesViewController::takeAnswer(size_t place, const QString &sentence)
{
    m_answers.at(place) = sentence;
    showAnswers();
}

void PrefsServicesViewController::showAnswers()
{
    const QString testing = String::localize(u"Testing…"_s);
    const bool isAnswered = std::any_of(m_answers.begin(), m_answers.end(),
                                        [](const auto &answer) { return answer.has_value(); });
    QStringList lines;
    const QString trouble = m_notKept.isEmpty() && m_accounts ? m_accounts->whyUnread() : m_notKept;
    if (!trouble.isEmpty())
        lines += trouble;
    if (isTesting() && !isAnswered)
        lines += testing;
    else
        std::transform(m_answers.begin(), m_answers.end(), std::back_inserter(lines),
                       [&testing](const auto &answer) { return answer.value_or(testing); });
    m_scene->statusLabel->setText(lines.join(u'\n'));
    m_scene->testButton->setEnabled(!isTesting());
}

void PrefsServicesViewController::showCatalogue(QObject *)
{
    if (m_accounts)
        Workspace::sharedWorkspace().showInFileBrowser(QUrl::fromLocalFile(m_accounts->catalogue().file));
}

void PrefsServicesViewController::addFolder(QObject *)
{
    m_folders->askAndStart();
}

void PrefsServicesViewController::cancelImport(QObject *)
{
    m_folders->cancel();
}

std::weak_ptr<PrefsServicesViewController> PrefsServicesViewController::weakSelf()
{
    return std::static_pointer_cast<PrefsServicesViewController>(shared_from_this());
}
