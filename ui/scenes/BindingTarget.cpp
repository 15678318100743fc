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
QString dayText(QDate day)
{
    static const QRegularExpression weekday(u"^dddd[,.]?\\s*|[,.]?\\s*\\(?dddd\\)?"_s);
    const QLocale region;
    return region.toString(day, region.dateFormat(QLocale::LongFormat).remove(weekday).trimmed());
}

/// The value as displayed: dates in the region's form, empty for an invalid value.
QString toText(const QVariant &value)
{
    if (value.typeId() == QMetaType::QDate)
        return dayText(value.toDate());
    if (value.typeId() != QMetaType::QDateTime)
        return value.toString();
    const QDateTime time = value.toDateTime().toLocalTime();
    if (!time.isValid())
        return {};
    const QLocale region;
    // The C locale's short form contains seconds.
    const QString clock = region.language() == QLocale::C
                              ? time.toString(u"HH:mm"_s)
                              : region.toString(time.time(), QLocale::ShortFormat);
    return dayText(time.date()) + u", "_s + clock;
}

/// An ampersand in a value is literal, not a mnemonic.
QString withoutMnemonics(const QVariant &value)
{
    return toText(value).replace(u'&', u"&&"_s);
}
} // namespace

BindingTarget::BindingTarget(QWidget &control, Binding binding)
{
    const auto supports = [&] {
        switch (binding) {
        case Binding::Value:
            return supportValue(control);
        case Binding::SelectedTag:
        case Binding::SelectedObject:
            return supportSelection(control);
        case Binding::Title:
            return supportTitle(control);
        case Binding::Enabled:
            m_show = [&control](const QVariant &value) {
                control.setEnabled(UserDefaults::toBoolean(value));
            };
            return true;
        case Binding::Hidden:
            m_show = [&control](const QVariant &value) { control.setHidden(UserDefaults::toBoolean(value)); };
            return true;
        }
        return false;
    };
    if (!supports())
        fatalFault(u"The %1 \"%2\" has nothing for this kind of binding"_s.arg(
            QString::fromUtf8(control.metaObject()->className()), control.objectName()));
}

bool BindingTarget::supportSelection(QWidget &control)
{
    auto *comboBox = qobject_cast<QComboBox *>(&control);
    if (!comboBox)
        return false;
    m_show = [comboBox](const QVariant &value) {
        int selected = 0;
        while (selected < comboBox->count() && !isSameValue(comboBox->itemData(selected), value))
            ++selected;
        comboBox->setCurrentIndex(selected < comboBox->count() ? selected : -1);
    };
    m_read = [comboBox] { return comboBox->currentData(); };
    connect(comboBox, &QComboBox::activated, this, &BindingTarget::edited);
    const QAbstractItemModel *items = comboBox->model();
    connect(items, &QAbstractItemModel::rowsInserted, this, &BindingTarget::itemsChanged);
    connect(items, &QAbstractItemModel::rowsRemoved, this, &BindingTarget::itemsChanged);
    connect(items, &QAbstractItemModel::dataChanged, this, &BindingTarget::itemsChanged);
    connect(items, &QAbstractItemModel::modelReset, this, &BindingTarget::itemsChanged);
    return true;
}

bool BindingTarget::supportValue(QWidget &control)
{
    if (auto *button = qobject_cast<QAbstractButton *>(&control)) {
        m_show = [button](const QVariant &value) { button->setChecked(UserDefaults::toBoolean(value)); };
        m_read = [button] { return button->isChecked(); };
        // Use toggled, not clicked: assistive tools toggle without a click.
        connect(button, &QAbstractButton::toggled, this, &BindingTarget::edited);
        return true;
    }
    auto *field = qobject_cast<QLineEdit *>(&control);
    if (!field)
        return supportText(control);
    m_show = [field](const QVariant &value) {
        // Only a text that differs is set, because setting moves the caret.
        if (const QString text = toText(value); field->text() != text)
            field->setText(text);
    };
    m_read = [field] { return field->text(); };
    connect(field, &QLineEdit::editingFinished, this, &BindingTarget::edited);
    return true;
}

bool BindingTarget::supportTitle(QWidget &control)
{
    if (auto *button = qobject_cast<QAbstractButton *>(&control))
        m_show = [button](const QVariant &value) { button->setText(withoutMnemonics(value)); };
    else if (auto *groupBox = qobject_cast<QGroupBox *>(&control))
        m_show = [groupBox](const QVariant &value) { groupBox->setTitle(withoutMnemonics(value)); };
    else
        return supportText(control);
    return true;
}

bool BindingTarget::supportText(QWidget &control)
{
    if (auto *label = qobject_cast<ui::Label *>(&control)) {
        m_show = [label](const QVariant &value) { label->setText(toText(value)); };
    } else if (auto *toolkitLabel = qobject_cast<QLabel *>(&control)) {
        toolkitLabel->setTextFormat(Qt::PlainText); // bound values are never markup
        m_show = [toolkitLabel](const QVariant &value) { toolkitLabel->setText(toText(value)); };
    }
    return bool(m_show);
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
