#include "ui_AboutViewController.h"

#include "AboutViewController.h"
#include <base/Links.h>
#include "RtfReader.h"

#include <base/Bundle.h>
#include <base/FatalFault.h>
#include <base/StandardOutput.h>
#include <base/Workspace.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/window/Window.h>

#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace
{
constexpr double CreditsMargin = 10;     // points
constexpr double CreditsNormalSize = 12; // points that stand for the desktop's own size

/// The look on the screen: sizes in proportion to the desktop's font, links underlined, no colour.
QTextCharFormat shownLook(const QTextCharFormat &look, QFont font)
{
    const double points =
        look.hasProperty(QTextFormat::FontPointSize) ? look.fontPointSize() : CreditsNormalSize;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * points / CreditsNormalSize);
    else // a desktop that gives its font in pixels
        font.setPixelSize(qMax(1, qRound(font.pixelSize() * points / CreditsNormalSize)));
    font.setBold(look.fontWeight() == QFont::Bold);
    font.setItalic(look.fontItalic());
    QTextCharFormat shown;
    shown.setFont(font);
    if (!look.anchorHref().isEmpty()) {
        shown.setAnchor(true);
        shown.setAnchorHref(look.anchorHref());
        shown.setFontUnderline(true);
    }
    return shown;
}

bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString;
}
} // namespace

AboutViewController::AboutViewController()
{
    const auto information = Bundle::main().infoDictionary();
    if (!information)
        fatalFault(u"The main bundle has no information dictionary"_s);
    m_appName = information->value(u"CFBundleName"_s);
    m_appCopyright = information->value(u"NSHumanReadableCopyright"_s);
    m_visitWebSiteButtonTitle = String::localize(u"Visit the Quorvane Website"_s);
    m_rateAppButtonTitle = String::localize(u"Quorvane in the App Store"_s);
}

AboutViewController::~AboutViewController() = default;

QString AboutViewController::appVersion() const
{
    const auto information = Bundle::main().infoDictionary().value_or(QVariantMap());
    const QVariant version = information.value(u"CFBundleShortVersionString"_s);
    const QVariant build = information.value(u"CFBundleVersion"_s);
    if (!isText(version) || !isText(build))
        return u"Unknown"_s;
    return String::fill(String::localize(u"Version %@ (%@)"_s), {version.toString(), build.toString()});
}

void AboutViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::AboutViewController>();
    m_scene->setupUi(root.get());
    creditsTextView = m_scene->creditsTextView;
    creditsTextView->viewport()->setAutoFillBackground(false);
    creditsTextView->document()->setDocumentMargin(CreditsMargin);
    m_scene->iconView->setImage(ui::Image::named(u"com.quorvane.Plovendix"_s));
    connect(creditsTextView, &QTextBrowser::anchorClicked, this,
            [](const QUrl &link) { Workspace::sharedWorkspace().openURL(link); });
    connectScene(*root, *this);
    setView(std::move(root));
}

void AboutViewController::viewWillAppear()
{
    PlatformController::viewWillAppear();
    ui::Window *about = window();
    if (!about)
        return;
    styleWindow(*about);
    showCredits();
}

void AboutViewController::viewDidAppear()
{
    PlatformController::viewDidAppear();
    // Focus the credits, so that keys scroll them at once.
    if (ui::Window *about = window())
        about->makeFirstResponder(creditsTextView);
}

void AboutViewController::styleWindow(ui::Window &about)
{
    about.setFullSizeContentView(true);
    about.setTitlebarAppearsTransparent(true);
    about.setTitleVisibility(ui::Window::TitleVisibility::Hidden);
    about.setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    about.setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    about.center();
}

void AboutViewController::showCredits()
{
    const auto path = Bundle::main().pathForResource(u"Credits"_s, u"rtf"_s);
    if (!path)
        return;
    const auto credits = readRtfFile(*path);
    if (!credits) {
        printLine(u"Couldn't set the credits"_s);
        return;
    }
    creditsTextView->clear();
    QTextCursor cursor(creditsTextView->document());
    cursor.beginEditBlock();
    for (const RtfRun &run : *credits)
        cursor.insertText(run.text, shownLook(run.look, creditsTextView->font()));
    cursor.endEditBlock();
    // Filling it has taken the view's cursor to the end, and the view would follow when it is shown.
    creditsTextView->moveCursor(QTextCursor::Start);
}

void AboutViewController::visitQuorvaneWebsite(QObject *)
{
    Links::open(Links::Website);
}

void AboutViewController::rateInAppStore(QObject *)
{
    // Few desktops have a store that opens the link.
    if (!Links::open(Links::AppStorePage))
        Links::open(Links::Website);
}
