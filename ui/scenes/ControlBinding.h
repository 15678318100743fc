#pragma once
#include "BindingSource.h"
#include "BindingTarget.h"
#include <QObject>
#include <memory>

class ValueTransformer;

/// One binding under way: a child of its control, gone with it or with its source. Main thread only.
class ControlBinding final : public QObject
{
    Q_OBJECT

public:
    /// Starts a binding; it takes the place of an earlier one of the same kind on the control.
    static void make(QWidget &control, Binding binding, std::unique_ptr<BindingSource> source,
                     const BindingOptions &options);
    ~ControlBinding() override;

private:
    ControlBinding(QWidget &control, Binding binding, std::unique_ptr<BindingSource> source,
                   const BindingOptions &options);

    void showValue();
    void takeEdit();
    void end();
    /// Whether a person chooses one of several items, which is stored also when it is the one that shows: a
    /// default becomes a setting then. A field whose edit ends unchanged stores nothing.
    bool isChoice() const;
    void followItems(QWidget &control);
    std::shared_ptr<const ValueTransformer> transformer() const;

    Binding m_binding;
    BindingOptions m_options;
    std::unique_ptr<BindingSource> m_source;
    BindingTarget m_target;
    bool m_showing = false; // what changes meanwhile is no edit
    bool m_ended = false;   // and waits to be deleted
};
