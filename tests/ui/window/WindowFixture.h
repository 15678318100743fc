#pragma once
#include <ui/system/WindowSystem.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>

/// A content controller that counts its appearances; its view has one field, named "field".
class CountingController : public ViewController
{
    Q_OBJECT

public:
    int willAppear = 0;
    int didAppear = 0;
    bool wasVisibleOnWill = false;
    bool wasVisibleOnDid = false;

    void loadView() override
    {
        auto content = std::make_unique<QWidget>();
        auto *field = new QLineEdit(content.get());
        field->setObjectName(QStringLiteral("field"));
        setView(std::move(content));
    }
    void viewWillAppear() override
    {
        ++willAppear;
        wasVisibleOnWill = window()->isVisible();
    }
    void viewDidAppear() override
    {
        ++didAppear;
        wasVisibleOnDid = window()->isVisible();
    }
};

/// What assistive tools call it is how tests find it.
inline QAbstractButton *buttonNamed(const ui::Window &window, const QString &name)
{
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->accessibleName() == name)
            return button;
    }
    return nullptr;
}

/// Pretends for a while that a compositor runs, or that none does.
class Composited final
{
public:
    explicit Composited(bool composited) { WindowSystem::shared().setComposited(composited); }
    ~Composited() { WindowSystem::shared().setComposited(std::nullopt); }
    Composited(const Composited &) = delete;
    Composited &operator=(const Composited &) = delete;

    void change(bool composited) { WindowSystem::shared().setComposited(composited); }
};
