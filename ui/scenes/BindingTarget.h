#pragma once
#include "Bindings.h"
#include <QObject>
#include <QVariant>

/// One aspect of a control that is bound: shows a value and signals edits by the person. A binding that the
/// control does not support is a fatal fault. Main thread only.
class BindingTarget final : public QObject
{
    Q_OBJECT

public:
    BindingTarget(QWidget &control, Binding binding);

    void show(const QVariant &value);
    /// The shown value; invalid for a pop-up without a selection and for a control that cannot be edited.
    QVariant shownValue() const;

    /// Whether two values mean the same. Settings are texts as often as numbers, so a number equals its text.
    static bool isSameValue(const QVariant &a, const QVariant &b);

Q_SIGNALS:
    void edited();

private:
    void connectEdits();
    void showText(const QString &text);
    void selectItem(const QVariant &value);

    QWidget &m_control; // its binding, which owns this object, is its child
    Binding m_binding;
};
