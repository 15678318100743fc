#pragma once
#include <base/Result.h>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

namespace ui
{
class Window;
}

/// Holds a view and its logic. Main thread only, but the last reference may be released on any thread: `make`
/// returns a pointer whose deleter switches to the main thread.
///
/// The view is loaded on first use: `loadView`, then `viewDidLoad`. The controller owns the view; a window or
/// another view that adopts it as a child only shows it. An adopter that is destroyed first returns the view,
/// hidden and without a parent; a controller that is destroyed first destroys the view.
class ViewController : public QObject, public std::enable_shared_from_this<ViewController>
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)

public:
    template <class Controller, class... Arguments>
    static std::shared_ptr<Controller> make(Arguments &&...arguments)
    {
        return std::shared_ptr<Controller>(new Controller(std::forward<Arguments>(arguments)...),
                                           [](Controller *controller) { destroyOnMainThread(controller); });
    }

    ViewController();
    ~ViewController() override;

    /// The view, loaded on first use.
    QWidget *view();
    bool isViewLoaded() const;
    /// The window that shows the view, or null.
    ui::Window *window() const;

    virtual QString title() const;
    virtual void setTitle(const QString &title);

    /// Makes the view and passes it to `setView`; the base class makes an empty one.
    virtual void loadView();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}

    /// The window, or another view that shows controllers, calls these before and after it shows this
    /// controller's view.
    void notifyWillAppear() { viewWillAppear(); }
    void notifyDidAppear() { viewDidAppear(); }

    /// The controller that presented this one modally, or null.
    std::shared_ptr<ViewController> presentingViewController() const;
    /// Shows `controller` in a new application-modal window. Returns at once. The presentation keeps
    /// `controller` alive until it is dismissed or its window is closed, and may outlive the presenter.
    void presentViewControllerAsModalWindow(const std::shared_ptr<ViewController> &controller);
    /// Ends a modal presentation of this controller; does nothing without one.
    void dismissController(QObject *sender = nullptr);

    /// Shows the standard error alert over the controller's window and returns when it is dismissed. Returns
    /// whether the program recovered from the error, which is always false.
    virtual bool presentError(const base::Error &error);

Q_SIGNALS:
    void titleChanged(const QString &title);

protected:
    void setView(std::unique_ptr<QWidget> view);

private:
    class Keeper;

    static void destroyOnMainThread(ViewController *controller);
    void beginModalPresentation(const std::shared_ptr<ViewController> &presenter);

    QString m_title;
    std::unique_ptr<Keeper> m_keeper;
    bool m_loadingView = false;
    std::weak_ptr<ViewController> m_presenting;
    QPointer<ui::Window> m_modalWindow; // of the current presentation; holds this controller
};
