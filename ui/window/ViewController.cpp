#include "ViewController.h"

#include "ErrorAlert.h"
#include "Window.h"

#include <base/FatalFault.h>
#include <base/MainQueue.h>

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QWindow>

/// Owns a controller's view during the controller's life. A parent would delete its child view; the keeper
/// takes the view back just before.
class ViewController::Keeper final : public QObject
{
public:
    explicit Keeper(std::unique_ptr<QWidget> view) : m_view(view.release())
    {
        m_view->installEventFilter(this);
        watchParent();
    }
    ~Keeper() override
    {
        disconnect(m_parentGoes);
        const std::unique_ptr<QWidget> view(m_view.data());
    }

    /// The view; null when other code deleted it.
    QWidget *view() const { return m_view; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_view && event->type() == QEvent::ParentChange)
            watchParent();
        return false;
    }

private:
    void watchParent()
    {
        disconnect(m_parentGoes);
        // A widget emits destroyed before it deletes its children.
        if (QWidget *parent = m_view->parentWidget())
            m_parentGoes = connect(parent, &QObject::destroyed, this, [this] {
                if (m_view)
                    m_view->setParent(nullptr);
            });
    }

    QPointer<QWidget> m_view;
    QMetaObject::Connection m_parentGoes;
};

ViewController::ViewController() = default;

ViewController::~ViewController()
{
    if (!m_keeper || !m_keeper->view())
        return;
    // The derived class is already destroyed, so signals of the view must not reach it.
    const auto parts = m_keeper->view()->findChildren<QObject *>();
    for (QObject *part : parts)
        part->disconnect(this);
    m_keeper->view()->disconnect(this);
}

QWidget *ViewController::view()
{
    Q_ASSERT(MainQueue::isMainThread());
    if (isViewLoaded() || m_loadingView)
        return m_keeper ? m_keeper->view() : nullptr;
    {
        const QScopedValueRollback loading(m_loadingView, true);
        loadView();
    }
    if (!isViewLoaded())
        fatalFault(QStringLiteral("A controller of the class %1 loaded no view")
                       .arg(QString::fromUtf8(metaObject()->className())));
    viewDidLoad();
    return m_keeper->view();
}

bool ViewController::isViewLoaded() const
{
    return m_keeper && m_keeper->view();
}

ui::Window *ViewController::window() const
{
    return isViewLoaded() ? qobject_cast<ui::Window *>(m_keeper->view()->window()) : nullptr;
}

QString ViewController::title() const
{
    return m_title;
}

void ViewController::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    // A derived class may compute its title.
    Q_EMIT titleChanged(this->title());
}

void ViewController::loadView()
{
    setView(std::make_unique<QWidget>());
}

void ViewController::setView(std::unique_ptr<QWidget> view)
{
    m_keeper = view ? std::make_unique<Keeper>(std::move(view)) : nullptr;
}

std::shared_ptr<ViewController> ViewController::presentingViewController() const
{
    return m_modalWindow ? m_presenting.lock() : nullptr;
}

void ViewController::presentViewControllerAsModalWindow(const std::shared_ptr<ViewController> &controller)
{
    if (controller->m_modalWindow)
        return controller->m_modalWindow->makeKeyAndOrderFront();
    controller->beginModalPresentation(weak_from_this().lock());
}

void ViewController::beginModalPresentation(const std::shared_ptr<ViewController> &presenter)
{
    auto *modalWindow = new ui::Window;
    m_presenting = presenter;
    m_modalWindow = modalWindow;
    // The window has no parent, so a presentation that is still shown at the program's end is ended here.
    connect(qApp, &QCoreApplication::aboutToQuit, modalWindow, [this] { dismissController(); });
    connect(modalWindow, &ui::Window::closed, this, [this] { dismissController(); });

    // The size that the scene gave the view; the window would overwrite it.
    const QSize contentSize = view()->testAttribute(Qt::WA_Resized) ? view()->size() : view()->sizeHint();
    modalWindow->setContentViewController(shared_from_this());
    if (contentSize.isValid())
        modalWindow->setContentSize(contentSize);
    modalWindow->setWindowModality(Qt::ApplicationModal);
    // A minimised modal window would block the program invisibly.
    modalWindow->setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    modalWindow->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    ui::Window *presenterWindow = presenter ? presenter->window() : nullptr;
    if (presenterWindow && presenterWindow->windowHandle()) {
        modalWindow->winId();
        modalWindow->windowHandle()->setTransientParent(presenterWindow->windowHandle());
    }
    modalWindow->center();
    modalWindow->makeKeyAndOrderFront();
}

void ViewController::dismissController(QObject *)
{
    if (!m_modalWindow)
        return;
    ui::Window *modalWindow = m_modalWindow;
    m_modalWindow = nullptr;
    m_presenting.reset();
    modalWindow->hide();
    // Deleted later, because the window holds this controller and may be the sender.
    modalWindow->deleteLater();
}

bool ViewController::presentError(const base::Error &error)
{
    showErrorAlert(error, window());
    return false;
}

void ViewController::destroyOnMainThread(ViewController *controller)
{
    const auto destroy = [controller] {
        // Taken out of its window before the controller is destroyed: hiding moves the focus, which ends
        // edits.
        if (controller->isViewLoaded())
            controller->m_keeper->view()->setParent(nullptr);
        const std::unique_ptr<ViewController> last(controller);
    };
    if (MainQueue::isMainThread())
        destroy();
    else
        MainQueue::shared().async(destroy);
}
