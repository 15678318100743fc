#pragma once
#include "Bindings.h"
#include <QObject>
#include <QVariant>

/// One aspect of a control as a binding sees it: shows a value, and says when the person has changed it. A
/// binding that the control has no aspect for is a fatal fault. Main thread only.
class BindingTarget final : public QObject
{
    Q_OBJECT

public:
    BindingTarget(QWidget &control, Binding binding);

    void show(const QVariant &value);
    /// What the control shows now; invalid for a pop-up without a selection and for what no one can edit.
    QVariant shownValue() const;

    /// A value as a yes or a no; nothing is a no.
    static bool toBoolean(const QVariant &value);
    /// Whether two values mean the same. Settings are texts as often as numbers, so a number equals its text.
    static bool isSameValue(const QVariant &a, const QVariant &b);

Q_SIGNALS:
    void edited();

private:
    void connectEdits();
    void showText(const QString &text);
    void selectItem(const QVariant &value);

    QWidget &m_control; // its binding, which owns us, is its child
    Binding m_binding;
};
