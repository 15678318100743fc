#pragma once
#include <ui/system/WindowSystem.h>
#include <ui/window/TitleBar.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QTest>

/// A content controller that notes its appearances; its view has one field.
class ContentController : public ViewController
{
    Q_OBJECT

public:
    QStringList appearances; // "will" and "did", and what the window was when that is wrong
    QLineEdit *field = nullptr;

    void loadView() override
    {
        auto content = std::make_unique<QWidget>();
        field = new QLineEdit(content.get());
        setView(std::move(content));
    }
    void viewWillAppear() override
    {
        appearances += window()->isVisible() ? QStringLiteral("will, shown") : QStringLiteral("will");
    }
    void viewDidAppear() override
    {
        appearances += window()->isVisible() ? QStringLiteral("did") : QStringLiteral("did, hidden");
    }
};

/// Tests find a button by what assistive tools call it.
inline QAbstractButton *buttonNamed(const QWidget &window, const QString &name)
{
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->accessibleName() == name)
            return button;
    }
    return nullptr;
}

inline void activate(QWidget &window)
{
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

inline void rightClick(TitleBar &titleBar)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, {300, 15}, titleBar.mapToGlobal(QPoint(300, 15)));
    QApplication::sendEvent(&titleBar, &event);
}

/// Pretends for a while that a compositor runs, or that none does.
class Composited final
{
public:
    explicit Composited(bool composited) { change(composited); }
    ~Composited() { WindowSystem::shared().setComposited(std::nullopt); }
    Composited(const Composited &) = delete;
    Composited &operator=(const Composited &) = delete;

    void change(bool composited) { WindowSystem::shared().setComposited(composited); }
};
