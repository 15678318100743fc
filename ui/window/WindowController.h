#pragma once
#include <QObject>
#include <memory>

class ViewController;
namespace ui
{
class Window;
}

/// Owns one window and prepares it once it has loaded. Main thread only.
class WindowController : public QObject
{
    Q_OBJECT

public:
    WindowController();
    ~WindowController() override;

    /// The window, made by `loadWindow` and prepared by `windowDidLoad` on first use.
    ui::Window *window();
    bool isWindowLoaded() const { return m_window != nullptr; }
    void showWindow(QObject *sender = nullptr);

    std::shared_ptr<ViewController> contentViewController() const;
    void setContentViewController(const std::shared_ptr<ViewController> &controller);

    virtual void loadWindow();
    virtual void windowDidLoad() {}

protected:
    void setWindow(std::unique_ptr<ui::Window> window);

private:
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<ViewController> m_content; // until the window has loaded
};
