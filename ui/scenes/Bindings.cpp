#include "Bindings.h"

#include "ControlBinding.h"

void bind(QWidget &control, Binding binding, QObject &source, const QString &property,
          const BindingOptions &options)
{
    ControlBinding::make(control, binding, std::make_unique<PropertySource>(source, property), options);
}

void bindToDefaults(QWidget &control, Binding binding, const QString &key, const BindingOptions &options)
{
    ControlBinding::make(control, binding, std::make_unique<DefaultsSource>(key), options);
}
