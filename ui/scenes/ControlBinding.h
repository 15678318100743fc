#pragma once
#include "BindingSource.h"
#include "BindingTarget.h"
#include <QObject>
#include <memory>

class ValueTransformer;

/// One binding: a child of its control, destroyed with it or with its source. Main thread only.
class ControlBinding final : public QObject
{
    Q_OBJECT

public:
    /// Starts a binding and replaces an earlier one of the same kind on the control.
    static void make(QWidget &control, Binding binding, std::unique_ptr<BindingSource> source,
                     const BindingOptions &options);
    ~ControlBinding() override;

private:
    ControlBinding(QWidget &control, Binding binding, std::unique_ptr<BindingSource> source,
                   const BindingOptions &options);

    void showValue();
    void takeEdit();
    void end();
    /// Whether the control offers a choice of items. A chosen item is stored even if it was shown already,
    /// which turns a default into a setting. A field whose edit ends unchanged stores nothing.
    bool isChoice() const;
    void followItems(QWidget &control);
    std::shared_ptr<const ValueTransformer> transformer() const;

    Binding m_binding;
    BindingOptions m_options;
    std::unique_ptr<BindingSource> m_source;
    BindingTarget m_target;
    bool m_showing = false; // changes during this are not edits
    bool m_ended = false;   // waits for its deletion
};
