#include "SceneConnections.h"

#include "Bindings.h"
#include <ui/window/ListEscape.h>
#include "TableView.h"

#include <base/FatalFault.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMetaMethod>

#include <array>

namespace
{
struct NamedBinding
{
    const char *property;
    Binding binding;
};
constexpr std::array NamedBindings{
    NamedBinding{"bindValue", Binding::Value},
    NamedBinding{"bindSelectedTag", Binding::SelectedTag},
    NamedBinding{"bindSelectedObject", Binding::SelectedObject},
    NamedBinding{"bindEnabled", Binding::Enabled},
    NamedBinding{"bindHidden", Binding::Hidden},
    NamedBinding{"bindTitle", Binding::Title},
};

QString describe(const QObject &object)
{
    return QStringLiteral("%1 \"%2\"")
        .arg(QString::fromUtf8(object.metaObject()->className()), object.objectName());
}

/// The method for a selector: "download:" is download(QObject*), "download" is download().
QMetaMethod methodFor(const QString &selector, const QObject &controller, const QObject &sender)
{
    QString signature = selector;
    if (signature.endsWith(u':'))
        signature.replace(signature.size() - 1, 1, QStringLiteral("(QObject*)"));
    else
        signature += QStringLiteral("()");
    const int index = controller.metaObject()->indexOfMethod(signature.toUtf8().constData());
    if (index < 0)
        fatalFault(QStringLiteral("The controller %1 does not answer \"%2\", the action of the %3")
                       .arg(describe(controller), selector, describe(sender)));
    return controller.metaObject()->method(index);
}

auto invoker(const QMetaMethod &method, QObject &controller, QObject &sender)
{
    return [method, &controller, &sender] {
        if (method.parameterCount() == 0)
            method.invoke(&controller, Qt::DirectConnection);
        else
            method.invoke(&controller, Qt::DirectConnection, Q_ARG(QObject *, &sender));
    };
}

/// Whether Escape closed an open pop-up, which comes before closing its window.
bool hasClosedPopUp(const QAction &action)
{
    QWidget *popUp = QApplication::activePopupWidget();
    if (!popUp || action.shortcut() != QKeySequence(Qt::Key_Escape))
        return false;
    popUp->hide();
    return true;
}

void connectAction(QObject &sender, const QString &selector, QObject &controller)
{
    const auto invoke = invoker(methodFor(selector, controller, sender), controller, sender);
    if (auto *button = qobject_cast<QAbstractButton *>(&sender))
        QObject::connect(button, &QAbstractButton::clicked, &controller, invoke);
    else if (auto *field = qobject_cast<QLineEdit *>(&sender))
        QObject::connect(field, &QLineEdit::returnPressed, &controller, invoke);
    else if (auto *comboBox = qobject_cast<QComboBox *>(&sender))
        QObject::connect(comboBox, &QComboBox::activated, &controller, invoke);
    else if (auto *action = qobject_cast<QAction *>(&sender))
        QObject::connect(action, &QAction::triggered, &controller, [invoke, action] {
            if (!hasClosedPopUp(*action))
                invoke();
        });
    else
        fatalFault(QStringLiteral("The %1 has no action for \"%2\"").arg(describe(sender), selector));
}

void connectDoubleAction(QObject &sender, const QString &selector, QObject &controller)
{
    const auto invoke = invoker(methodFor(selector, controller, sender), controller, sender);
    auto *table = qobject_cast<TableView *>(&sender);
    if (!table)
        fatalFault(QStringLiteral("The %1 has no double action for \"%2\"").arg(describe(sender), selector));
    QObject::connect(table, &TableView::doubleActionTriggered, &controller, invoke);
}

void connectEndEditing(QObject &sender, const QString &selector, QObject &controller)
{
    const auto invoke = invoker(methodFor(selector, controller, sender), controller, sender);
    auto *field = qobject_cast<QLineEdit *>(&sender);
    if (!field)
        fatalFault(QStringLiteral("The %1 ends no edit for \"%2\"").arg(describe(sender), selector));
    QObject::connect(field, &QLineEdit::editingFinished, &controller, invoke);
}

void connectBinding(QWidget &control, Binding binding, const QString &text, QObject &controller)
{
    static const QString DefaultsPrefix = QStringLiteral("defaults.");
    BindingOptions options;
    QString source = text.section(u'|', 0, 0).trimmed();
    options.transformerName = text.section(u'|', 1).trimmed();
    options.negate = source.startsWith(u'!');
    if (options.negate)
        source = source.mid(1).trimmed();
    if (source.startsWith(DefaultsPrefix))
        bindToDefaults(control, binding, source.mid(DefaultsPrefix.size()), options);
    else
        bind(control, binding, controller, source, options);
}

qlonglong tagFrom(const QString &text, const QComboBox &comboBox)
{
    bool isInteger = false;
    const qlonglong tag = text.toLongLong(&isInteger);
    if (!isInteger)
        fatalFault(QStringLiteral("The tag \"%1\" of the %2 is no integer").arg(text, describe(comboBox)));
    return tag;
}

/// Sets the item data of a pop-up, because a scene can hold only the item texts.
void representByItems(QComboBox &comboBox)
{
    const QStringList tags = comboBox.property("itemTags").toStringList();
    for (int index = 0; index < tags.size() && index < comboBox.count(); ++index)
        comboBox.setItemData(index, tagFrom(tags[index], comboBox));
    const QStringList objects = comboBox.property("itemObjects").toStringList();
    for (int index = 0; index < objects.size() && index < comboBox.count(); ++index)
        comboBox.setItemData(index, objects[index]);
}

void connectObject(QObject &object, QObject &controller)
{
    const auto named = [&object](const char *property) { return object.property(property).toString(); };
    if (auto *comboBox = qobject_cast<QComboBox *>(&object)) {
        representByItems(*comboBox);
        new ListEscape(*comboBox); // a child of it
    }
    if (const QString selector = named("action"); !selector.isEmpty())
        connectAction(object, selector, controller);
    if (const QString selector = named("doubleAction"); !selector.isEmpty())
        connectDoubleAction(object, selector, controller);
    if (const QString selector = named("endEditingAction"); !selector.isEmpty())
        connectEndEditing(object, selector, controller);
    auto *control = qobject_cast<QWidget *>(&object);
    if (!control)
        return;
    for (const auto &[property, binding] : NamedBindings) {
        if (const QString text = named(property); !text.isEmpty())
            connectBinding(*control, binding, text, controller);
    }
}
} // namespace

void connectScene(QWidget &root, QObject &controller)
{
    connectObject(root, controller);
    const auto parts = root.findChildren<QObject *>();
    for (QObject *part : parts)
        connectObject(*part, controller);
}
