#pragma once
#include <platform/Error.h>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

class Window;

/// Holds a view and what happens in it. Main thread only, but the last reference may be dropped anywhere: `make`
/// gives a pointer whose deleter returns to the main thread.
///
/// The view is loaded on first use: `loadView`, then `viewDidLoad`. It belongs to its controller until a window or
/// another view adopts it.
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

    /// Who presented this controller modally, or nothing.
    std::shared_ptr<ViewController> presentingViewController() const;
    /// Shows `controller` in a window of its own, modal to the program. Returns at once.
    void presentViewControllerAsModalWindow(const std::shared_ptr<ViewController> &controller);
    /// Ends a modal presentation of this controller; does nothing when there is none.
    void dismissController(QObject *sender = nullptr);

    /// Shows the standard error alert over the controller's window and returns when it was dismissed. The answer says
    /// whether the error was recovered from, which no error here is.
    virtual bool presentError(const Error &error);

Q_SIGNALS:
    void titleChanged(const QString &title);

protected:
    void setView(std::unique_ptr<QWidget> view);

private:
    static void destroyOnMainThread(ViewController *controller);

    QString m_title;
    QPointer<QWidget> m_view;
    std::unique_ptr<QWidget> m_ownedView; // until a window adopts it
    std::weak_ptr<ViewController> m_presenting;
};
