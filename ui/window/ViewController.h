#pragma once
#include <base/Error.h>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

class ViewKeeper;
class Window;

/// Holds a view and what happens in it. Main thread only, but the last reference may be dropped anywhere:
/// `make` gives a pointer whose deleter returns to the main thread.
///
/// The view is loaded on first use: `loadView`, then `viewDidLoad`. It belongs to its controller; a window or
/// another view that adopts it (takes it as a child) shows it only. An adopter that goes first hands the view
/// back, hidden and without a parent; a controller that goes first takes the view along.
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

    /// The view, loaded now if it was not yet.
    QWidget *view();
    bool isViewLoaded() const;
    /// The window that shows the view, or nothing.
    Window *window() const;

    virtual QString title() const;
    virtual void setTitle(const QString &title);

    /// Makes the view and hands it to `setView`; the base makes an empty one.
    virtual void loadView();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}

    /// Called by the window, and by any view that shows controllers in turn, each time it is about to show
    /// this controller's view and when it has.
    void notifyWillAppear() { viewWillAppear(); }
    void notifyDidAppear() { viewDidAppear(); }

    /// Who presented this controller modally, or nothing.
    std::shared_ptr<ViewController> presentingViewController() const;
    /// Shows `controller` in a window of its own, modal to the program. Returns at once. The presentation
    /// keeps `controller` alive until it is dismissed or its window closed; it outlives its presenter.
    void presentViewControllerAsModalWindow(const std::shared_ptr<ViewController> &controller);
    /// Ends a modal presentation of this controller; does nothing when there is none.
    void dismissController(QObject *sender = nullptr);

    /// Shows the standard error alert over the controller's window and returns when it was dismissed. The
    /// answer says whether the error was recovered from, which no error here is.
    virtual bool presentError(const Error &error);

Q_SIGNALS:
    void titleChanged(const QString &title);

protected:
    void setView(std::unique_ptr<QWidget> view);

private:
    static void destroyOnMainThread(ViewController *controller);
    void beginModalPresentation(const std::shared_ptr<ViewController> &presenter);

    QString m_title;
    std::unique_ptr<ViewKeeper> m_keeper;
    bool m_loadingView = false;
    std::weak_ptr<ViewController> m_presenting;
    QPointer<Window> m_modalWindow; // of the presentation under way; holds this controller
};
