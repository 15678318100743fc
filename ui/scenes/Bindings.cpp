#include "Bindings.h"

#include "BindingTarget.h"

#include <base/FatalFault.h>
#include <base/UserDefaults.h>
#include <base/ValueTransformer.h>

#include <QMetaProperty>
#include <QPointer>
#include <QScopedValueRollback>

namespace
{
/// The value behind a bound control.
struct BindingSource
{
    std::function<QVariant()> read;
    std::function<void(const QVariant &)> write;
};

/// One binding: a child of its control, destroyed with it or with its source.
class ControlBinding final : public QObject
{
    Q_OBJECT

public:
    /// Replaces an earlier binding of the same kind on the control. The binding does not show the value yet.
    ControlBinding(QWidget &control, Binding binding, const BindingOptions &options,
                   const BindingSource &source);
    Q_SLOT void showValue();
    void end();

    UserDefaults::Observation observation;

private:
    void takeEdit();

    Binding m_binding;
    bool m_negates;
    std::shared_ptr<const ValueTransformer> m_transformer;
    BindingSource m_source;
    BindingTarget m_target;
    bool m_showing = false; // changes during this are not edits
    bool m_ended = false;   // waits for its deletion
};

ControlBinding::ControlBinding(QWidget &control, Binding binding, const BindingOptions &options,
                               const BindingSource &source)
    : m_binding(binding),
      m_negates(options.negate),
      m_transformer(ValueTransformer::forName(options.transformerName)),
      m_source(source),
      m_target(control, binding)
{
    const auto earlier = control.findChildren<ControlBinding *>(QString(), Qt::FindDirectChildrenOnly);
    for (ControlBinding *other : earlier) {
        if (other->m_binding == binding)
            other->end();
    }
    setParent(&control);
    connect(&m_target, &BindingTarget::edited, this, &ControlBinding::takeEdit);
    connect(&m_target, &BindingTarget::itemsChanged, this, &ControlBinding::showValue);
}

void ControlBinding::showValue()
{
    if (m_ended)
        return;
    QVariant value = m_source.read();
    if (m_transformer)
        value = m_transformer->transformedValue(value);
    if (m_negates)
        value = !UserDefaults::toBoolean(value);
    const QScopedValueRollback showing(m_showing, true);
    m_target.show(value);
}

void ControlBinding::takeEdit()
{
    QVariant value = m_target.shownValue();
    if (m_showing || m_ended || !value.isValid())
        return;
    if (m_negates)
        value = !UserDefaults::toBoolean(value);
    if (m_transformer)
        value = m_transformer->reverseTransformedValue(value);
    // A chosen item is stored even if it was shown already, which turns a default into a setting. A field
    // whose edit ends unchanged stores nothing.
    const bool isChoice = m_binding == Binding::SelectedTag || m_binding == Binding::SelectedObject;
    const QPointer<ControlBinding> self(this);
    if (value.isValid() && (isChoice || !BindingTarget::isSameValue(value, m_source.read())))
        m_source.write(value);
    // What cannot be transformed back or was refused is replaced by the stored value.
    if (self)
        showValue();
}

void ControlBinding::end()
{
    m_ended = true;
    deleteLater();
}
} // namespace

void bind(QWidget &control, Binding binding, QObject &source, const QString &property,
          const BindingOptions &options)
{
    const QMetaObject *meta = source.metaObject();
    const QMetaProperty found = meta->property(meta->indexOfProperty(property.toUtf8().constData()));
    if (!found.isValid())
        fatalFault(QStringLiteral("The %1 \"%2\" has no property \"%3\" to bind to")
                       .arg(QString::fromUtf8(meta->className()), source.objectName(), property));
    const BindingSource value{[&source, found] { return found.read(&source); },
                              [&source, found](const QVariant &edited) { found.write(&source, edited); }};
    auto *made = new ControlBinding(control, binding, options, value);
    if (found.hasNotifySignal()) {
        const QMetaObject *receiver = made->metaObject();
        QObject::connect(&source, found.notifySignal(), made,
                         receiver->method(receiver->indexOfSlot("showValue()")));
    }
    QObject::connect(&source, &QObject::destroyed, made, &ControlBinding::end);
    made->showValue();
}

void bindToDefaults(QWidget &control, Binding binding, const QString &key, const BindingOptions &options)
{
    const auto read = [key] {
        const UserDefaults &defaults = UserDefaults::standard();
        // The language has a value even when no default is registered for it.
        return key == QLatin1String("languageCode") ? defaults.languageCode() : defaults.object(key);
    };
    const auto write = [key](const QVariant &edited) { UserDefaults::standard().setObject(key, edited); };
    auto *made = new ControlBinding(control, binding, options, {read, write});
    made->observation =
        UserDefaults::standard().observe(key, [made](const QVariant &) { made->showValue(); });
    made->showValue();
}

#include "Bindings.moc"
