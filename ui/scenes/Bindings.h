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

/// Keeps a control and a property of `source` the same, both ways where a person can edit the control: a
/// field stores its text when the edit ends. Without a NOTIFY signal the property is read once. Ends with
/// either of them, or when the control is bound anew in the same way. A property that is not there and a
/// control that has nothing of the kind are fatal faults. Main thread.
///
/// Value: the checked state of a button, the text of a field or label; a date as the region writes it.
/// SelectedTag and SelectedObject: the item of a combo box whose data equals the value (the text "86400"
/// selects the item with the tag 86400); a value that no item carries selects nothing, and an item that the
/// person chooses is stored also when it shows already. Title: the text of a
/// button or label. Texts are shown as they are, never as markup or with mnemonics.
void bind(QWidget &control, Binding binding, QObject &source, const QString &property,
          const BindingOptions &options = {});
/// The same with a key of the standard user defaults.
void bindToDefaults(QWidget &control, Binding binding, const QString &key,
                    const BindingOptions &options = {});
