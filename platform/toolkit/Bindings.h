#pragma once
#include <QObject>
#include <QString>
#include <QWidget>

/// What a binding sets on a control.
enum class Binding
{
    Value,
    SelectedTag,
    SelectedObject,
    Enabled,
    Hidden,
    Title
};

struct BindingOptions
{
    QString transformerName = {}; // an unknown name passes the value through
    bool negate = false;          // of boolean values
};

/// Keeps a control and a property of `source` (with a NOTIFY signal) the same, both ways where a person can
/// edit the control. Ends with either of them. Main thread.
///
/// Value: the checked state of a button, the text of a field or label. SelectedTag and SelectedObject: the
/// item of a combo box whose data equals the value (the text "86400" selects the item with the tag 86400); a
/// value that no item carries selects nothing. Title: the text of a button or label.
void bind(QWidget &control, Binding binding, QObject &source, const QString &property,
          const BindingOptions &options = {});
/// The same with a key of the standard user defaults.
void bindToDefaults(QWidget &control, Binding binding, const QString &key,
                    const BindingOptions &options = {});
