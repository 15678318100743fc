#include "ControlBinding.h"

#include <base/ValueTransformer.h>

#include <QAbstractItemModel>
#include <QComboBox>
#include <QPointer>
#include <QScopedValueRollback>

void ControlBinding::make(QWidget &control, Binding binding, std::unique_ptr<BindingSource> source,
                          const BindingOptions &options)
{
    const auto earlier = control.findChildren<ControlBinding *>(QString(), Qt::FindDirectChildrenOnly);
    for (ControlBinding *other : earlier) {
        if (other->m_binding == binding)
            other->end();
    }
    auto *made = new ControlBinding(control, binding, std::move(source), options);
    made->setParent(&control);
}

ControlBinding::ControlBinding(QWidget &control, Binding binding, std::unique_ptr<BindingSource> source,
                               const BindingOptions &options)
    : m_binding(binding), m_options(options), m_source(std::move(source)), m_target(control, binding)
{
    connect(m_source.get(), &BindingSource::valueChanged, this, &ControlBinding::showValue);
    connect(m_source.get(), &BindingSource::gone, this, &ControlBinding::end);
    connect(&m_target, &BindingTarget::edited, this, &ControlBinding::takeEdit);
    if (isChoice())
        followItems(control);
    showValue();
}

ControlBinding::~ControlBinding() = default;

/// A pop-up may be filled after it was bound, and selects its first item by itself.
void ControlBinding::followItems(QWidget &control)
{
    const QAbstractItemModel *model = qobject_cast<QComboBox *>(&control)->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &ControlBinding::showValue);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &ControlBinding::showValue);
    connect(model, &QAbstractItemModel::dataChanged, this, &ControlBinding::showValue);
    connect(model, &QAbstractItemModel::modelReset, this, &ControlBinding::showValue);
}

void ControlBinding::showValue()
{
    if (m_ended)
        return;
    QVariant value = m_source->value();
    if (const auto known = transformer())
        value = known->transformedValue(value);
    if (m_options.negate)
        value = !UserDefaults::toBoolean(value);
    const QScopedValueRollback showing(m_showing, true);
    m_target.show(value);
}

void ControlBinding::takeEdit()
{
    QVariant value = m_target.shownValue();
    if (m_showing || m_ended || !value.isValid())
        return;
    if (m_options.negate)
        value = !UserDefaults::toBoolean(value);
    const auto known = transformer();
    if (known && known->allowsReverseTransformation())
        value = known->reverseTransformedValue(value);
    const QPointer<ControlBinding> self(this);
    // A value that cannot be transformed back is not stored, and the control shows the stored one again.
    const bool canStore = value.isValid() && (!known || known->allowsReverseTransformation());
    if (canStore && (isChoice() || !BindingTarget::isSameValue(value, m_source->value())))
        m_source->setValue(value);
    if (self)
        showValue();
}

bool ControlBinding::isChoice() const
{
    return m_binding == Binding::SelectedTag || m_binding == Binding::SelectedObject;
}

void ControlBinding::end()
{
    m_ended = true;
    deleteLater();
}

std::shared_ptr<const ValueTransformer> ControlBinding::transformer() const
{
    return m_options.transformerName.isEmpty() ? nullptr
                                               : ValueTransformer::forName(m_options.transformerName);
}
