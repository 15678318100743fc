#include "SceneConnections.h"

#include "Bindings.h"
#include "TableView.h"

#include <base/FatalFault.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaMethod>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::pair<const char *, Binding> NamedBindings[] = {
    {"bindValue", Binding::Value},
    {"bindSelectedTag", Binding::SelectedTag},
    {"bindSelectedObject", Binding::SelectedObject},
    {"bindEnabled", Binding::Enabled},
    {"bindHidden", Binding::Hidden},
    {"bindTitle", Binding::Title},
};

/// Makes Escape close only the open list of a combo box: the toolkit would then also run the window's
/// shortcut for the key. A child of the combo box.
class ListEscape final : public QObject
{
public:
    explicit ListEscape(QComboBox &comboBox) : QObject(&comboBox)
    {
        comboBox.view()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        // Accepting the override makes Qt deliver a key press, which the list handles.
        const bool isEscape = event->type() == QEvent::ShortcutOverride &&
                              static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
        if (isEscape)
            event->accept();
        return isEscape;
    }
};

QString describe(const QObject &object)
{
    return u"%1 \"%2\""_s.arg(QString::fromUtf8(object.metaObject()->className()), object.objectName());
}

/// The method for a selector: "download:" is download(QObject*), "download" is download().
QMetaMethod methodFor(const QString &selector, const QObject &controller, const QObject &sender)
{
    const QString signature =
        selector.endsWith(u':') ? selector.chopped(1) + u"(QObject*)"_s : selector + u"()"_s;
    const int index = controller.metaObject()->indexOfMethod(signature.toUtf8().constData());
    if (index < 0)
        fatalFault(u"The controller %1 does not answer \"%2\", the action of the %3"_s.arg(
            describe(controller), selector, describe(sender)));
    return controller.metaObject()->method(index);
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

/// Connects the sender's event of that property's name; false when it has none.
bool connectEvent(QObject &sender, QByteArrayView property, QObject &controller,
                  const std::function<void()> &invoke)
{
    auto *field = qobject_cast<QLineEdit *>(&sender);
    if (property == "endEditingAction")
        return field && QObject::connect(field, &QLineEdit::editingFinished, &controller, invoke);
    if (property == "doubleAction") {
        auto *table = qobject_cast<TableView *>(&sender);
        return table && QObject::connect(table, &TableView::doubleActionTriggered, &controller, invoke);
    }
    if (field)
        return bool(QObject::connect(field, &QLineEdit::returnPressed, &controller, invoke));
    if (auto *button = qobject_cast<QAbstractButton *>(&sender))
        return bool(QObject::connect(button, &QAbstractButton::clicked, &controller, invoke));
    if (auto *comboBox = qobject_cast<QComboBox *>(&sender))
        return bool(QObject::connect(comboBox, &QComboBox::activated, &controller, invoke));
    auto *action = qobject_cast<QAction *>(&sender);
    return action && QObject::connect(action, &QAction::triggered, &controller, [invoke, action] {
               if (!hasClosedPopUp(*action))
                   invoke();
           });
}

void connectAction(QObject &sender, const char *property, QObject &controller)
{
    const QString selector = sender.property(property).toString();
    if (selector.isEmpty())
        return;
    const auto invoke = [method = methodFor(selector, controller, sender), &controller, &sender] {
        if (method.parameterCount() == 0)
            method.invoke(&controller, Qt::DirectConnection);
        else
            method.invoke(&controller, Qt::DirectConnection, Q_ARG(QObject *, &sender));
    };
    if (!connectEvent(sender, property, controller, invoke))
        fatalFault(u"The %1 has no %2 for \"%3\""_s.arg(describe(sender), QLatin1String(property), selector));
}

void connectBinding(QWidget &control, Binding binding, const QString &text, QObject &controller)
{
    static const QString DefaultsPrefix = u"defaults."_s;
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
        fatalFault(u"The tag \"%1\" of the %2 is no integer"_s.arg(text, describe(comboBox)));
    return tag;
}

/// Sets the item data of a pop-up, because a scene can hold only the item texts.
void representByItems(QComboBox &comboBox)
{
    const QStringList tags = comboBox.property("itemTags").toStringList();
    const QStringList objects = comboBox.property("itemObjects").toStringList();
    for (int index = 0; index < comboBox.count(); ++index) {
        if (index < tags.size())
            comboBox.setItemData(index, tagFrom(tags[index], comboBox));
        else if (index < objects.size())
            comboBox.setItemData(index, objects[index]);
    }
}

void connectObject(QObject &object, QObject &controller)
{
    if (auto *comboBox = qobject_cast<QComboBox *>(&object)) {
        representByItems(*comboBox);
        new ListEscape(*comboBox); // a child of it
    }
    for (const char *property : {"action", "doubleAction", "endEditingAction"})
        connectAction(object, property, controller);
    auto *control = qobject_cast<QWidget *>(&object);
    for (const auto &[property, binding] : NamedBindings) {
        const QString text = object.property(property).toString();
        if (control && !text.isEmpty())
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
