#pragma once
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

/// Keeps a control and a property of `source` equal, in both directions when the control is editable: a field
/// stores its text when the edit ends. Without a NOTIFY signal the property is read once. The binding ends
/// with either object, or when the control is bound anew in the same way. A missing property and an
/// unsupported control are fatal faults. Main thread.
///
/// Value: the checked state of a button, the text of a field or label; dates in the region's form.
/// SelectedTag and SelectedObject: the item of a combo box whose data equals the value (the text "86400"
/// selects the item with the tag 86400); an unknown value selects nothing, and a chosen item is stored even
/// if it was shown already. Title: the text of a button or label. Texts are shown literally, without markup
/// or mnemonics.
void bind(QWidget &control, Binding binding, QObject &source, const QString &property,
          const BindingOptions &options = {});
/// The same for a key of the standard user defaults.
void bindToDefaults(QWidget &control, Binding binding, const QString &key,
                    const BindingOptions &options = {});
