#pragma once
#include "ViewController.h"
#include <QString>
#include <functional>
#include <memory>

/// The operations that every view controller offers to the code that shows it, on any platform.
class PlatformSpecificController
{
public:
    using Completion = std::function<void()>;

    virtual ~PlatformSpecificController() = default;

    virtual bool viewActuallyLoaded() const = 0;
    /// Shows the message in the standard error alert, then calls `completion`, which is required.
    virtual void presentErrorMessage(const QString &message, const Completion &completion) = 0;
    /// Dismisses the controller and calls `completion`, if any, at once. `animated` has no effect.
    virtual void dismissCurrentViewController(bool animated, const Completion &completion) = 0;
    /// Shows `controller` in a new window and calls `completion`, if any, once it is shown.
    virtual void presentViewControllerModally(const std::shared_ptr<ViewController> &controller,
                                              bool animated, const Completion &completion) = 0;
};

/// Adds those operations to `Base`, a view controller class.
template <class Base = ViewController>
class PlatformController : public Base, public PlatformSpecificController
{
public:
    using Base::Base;

    bool viewActuallyLoaded() const override { return this->isViewLoaded(); }

    void presentErrorMessage(const QString &message, const Completion &completion) override
    {
        this->presentError(base::Error{QString(), MessageErrorCode, message});
        completion();
    }

    void dismissCurrentViewController(bool, const Completion &completion) override
    {
        this->dismissController(nullptr);
        if (completion)
            completion();
    }

    void presentViewControllerModally(const std::shared_ptr<ViewController> &controller, bool,
                                      const Completion &completion) override
    {
        this->presentViewControllerAsModalWindow(controller);
        if (completion)
            completion();
    }

    static constexpr int MessageErrorCode = 123;
};
