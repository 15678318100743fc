#pragma once
#include "Bindings.h"
#include <QVariant>
#include <functional>

/// One aspect of a control that is bound: shows a value and signals edits by the person. A binding that the
/// control does not support is a fatal fault. Main thread only.
class BindingTarget final : public QObject
{
    Q_OBJECT

public:
    BindingTarget(QWidget &control, Binding binding);

    void show(const QVariant &value) { m_show(value); }
    /// The shown value; invalid for a pop-up without a selection and for a control that cannot be edited.
    QVariant shownValue() const { return m_read ? m_read() : QVariant(); }

    /// Whether two values mean the same. Settings are texts as often as numbers, so a number equals its text.
    static bool isSameValue(const QVariant &a, const QVariant &b);

Q_SIGNALS:
    void edited();
    /// The items of a pop-up changed. It may be filled after it was bound, and selects its first item by
    /// itself.
    void itemsChanged();

private:
    bool supportSelection(QWidget &control);
    bool supportValue(QWidget &control);
    bool supportTitle(QWidget &control);
    bool supportText(QWidget &control);

    std::function<void(const QVariant &)> m_show;
    std::function<QVariant()> m_read; // none for a control that cannot be edited
};
