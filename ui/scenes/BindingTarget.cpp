#include "BindingTarget.h"

#include <ui/controls/Label.h>

#include <base/FatalFault.h>
#include <base/UserDefaults.h>

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QComboBox>
#include <QDateTime>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString;
}

/// The day with its month's name in the region's order. The region's long form contains the weekday, which
/// says little about a day weeks ago.
QString toText(QDate day)
{
    static const QRegularExpression weekday(u"^dddd[,.]?\\s*|[,.]?\\s*\\(?dddd\\)?"_s);
    const QLocale region;
    return region.toString(day, region.dateFormat(QLocale::LongFormat).remove(weekday).trimmed());
}

/// The value as displayed: dates in the region's form, empty for an invalid value.
QString toText(const QVariant &value)
{
    if (value.typeId() == QMetaType::QDateTime) {
        const QDateTime time = value.toDateTime().toLocalTime();
        if (!time.isValid())
            return {};
        const QLocale region;
        // The C locale's short form contains seconds.
        const QString clock = region.language() == QLocale::C
                                  ? time.toString(u"HH:mm"_s)
                                  : region.toString(time.time(), QLocale::ShortFormat);
        return toText(time.date()) + u", "_s + clock;
    }
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().isValid() ? toText(value.toDate()) : QString();
    return value.toString();
}

bool hasAspect(QWidget &control, Binding binding)
{
    const bool isButton = qobject_cast<QAbstractButton *>(&control);
    const bool isLabel = qobject_cast<QLabel *>(&control) || qobject_cast<ui::Label *>(&control);
    switch (binding) {
    case Binding::Value:
        return isButton || isLabel || qobject_cast<QLineEdit *>(&control);
    case Binding::SelectedTag:
    case Binding::SelectedObject:
        return qobject_cast<QComboBox *>(&control);
    case Binding::Title:
        return isButton || isLabel || qobject_cast<QGroupBox *>(&control);
    case Binding::Enabled:
    case Binding::Hidden:
        return true;
    }
    return false;
}
} // namespace

BindingTarget::BindingTarget(QWidget &control, Binding binding) : m_control(control), m_binding(binding)
{
    if (!hasAspect(control, binding))
        fatalFault(QStringLiteral("The %1 \"%2\" has nothing for this kind of binding")
                       .arg(QString::fromUtf8(control.metaObject()->className()), control.objectName()));
    // Bound values are never markup.
    if (auto *label = qobject_cast<QLabel *>(&control); label && binding != Binding::Enabled)
        label->setTextFormat(Qt::PlainText);
    connectEdits();
}

bool BindingTarget::isSameValue(const QVariant &a, const QVariant &b)
{
    if (!a.isValid() || !b.isValid())
        return false;
    bool aIsNumber = false;
    bool bIsNumber = false;
    const double aNumber = a.toDouble(&aIsNumber);
    const double bNumber = b.toDouble(&bIsNumber);
    if (aIsNumber && bIsNumber && !(isText(a) && isText(b)))
        return aNumber == bNumber;
    return a.toString() == b.toString();
}

void BindingTarget::connectEdits()
{
    if (auto *comboBox = qobject_cast<QComboBox *>(&m_control)) {
        if (m_binding == Binding::SelectedTag || m_binding == Binding::SelectedObject)
            connect(comboBox, &QComboBox::activated, this, &BindingTarget::edited);
        return;
    }
    if (m_binding != Binding::Value)
        return;
    // Use toggled, not clicked: assistive tools toggle without a click.
    if (auto *button = qobject_cast<QAbstractButton *>(&m_control))
        connect(button, &QAbstractButton::toggled, this, &BindingTarget::edited);
    if (auto *field = qobject_cast<QLineEdit *>(&m_control))
        connect(field, &QLineEdit::editingFinished, this, &BindingTarget::edited);
}

void BindingTarget::show(const QVariant &value)
{
    switch (m_binding) {
    case Binding::Value:
        if (auto *button = qobject_cast<QAbstractButton *>(&m_control))
            button->setChecked(UserDefaults::toBoolean(value));
        else
            showText(toText(value));
        break;
    case Binding::SelectedTag:
    case Binding::SelectedObject:
        selectItem(value);
        break;
    case Binding::Enabled:
        m_control.setEnabled(UserDefaults::toBoolean(value));
        break;
    case Binding::Hidden:
        m_control.setHidden(UserDefaults::toBoolean(value));
        break;
    case Binding::Title:
        showText(toText(value));
        break;
    }
}

void BindingTarget::showText(const QString &text)
{
    if (auto *button = qobject_cast<QAbstractButton *>(&m_control))
        // An ampersand in a value is literal, not a mnemonic.
        button->setText(QString(text).replace(u'&', QStringLiteral("&&")));
    else if (auto *groupBox = qobject_cast<QGroupBox *>(&m_control))
        groupBox->setTitle(QString(text).replace(u'&', QStringLiteral("&&")));
    else if (auto *field = qobject_cast<QLineEdit *>(&m_control); field && field->text() != text)
        field->setText(text); // only when it differs, because it moves the caret
    else if (auto *label = qobject_cast<QLabel *>(&m_control))
        label->setText(text);
    else if (auto *plainLabel = qobject_cast<ui::Label *>(&m_control))
        plainLabel->setText(text);
}

void BindingTarget::selectItem(const QVariant &value)
{
    auto *comboBox = qobject_cast<QComboBox *>(&m_control);
    int selected = -1;
    for (int index = 0; index < comboBox->count() && selected < 0; ++index) {
        if (isSameValue(comboBox->itemData(index), value))
            selected = index;
    }
    comboBox->setCurrentIndex(selected);
}

QVariant BindingTarget::shownValue() const
{
    if (auto *comboBox = qobject_cast<QComboBox *>(&m_control))
        return comboBox->currentData();
    if (auto *button = qobject_cast<QAbstractButton *>(&m_control))
        return button->isChecked();
    if (auto *field = qobject_cast<QLineEdit *>(&m_control))
        return field->text();
    return {};
}
