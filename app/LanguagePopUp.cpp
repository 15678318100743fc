#include "LanguagePopUp.h"

#include <features/preferences/MenuForBindings.h>

#include <QAbstractItemView>
#include <QScrollBar>

#include <algorithm>

namespace
{
constexpr int ArrowAndPadding = 34; // points beside the text
constexpr int LongestName = 180;    // points
constexpr int WidestList = 300;
constexpr int PillHeight = 22;
} // namespace

LanguagePopUp::LanguagePopUp(QWidget *parent) : QComboBox(parent)
{
    setMaxVisibleItems(24);
    view()->setTextElideMode(Qt::ElideRight);
    connect(this, &QComboBox::currentIndexChanged, this, [this] { updateGeometry(); });
}

void LanguagePopUp::setLanguages(const QList<Language> &languages)
{
    auto *menu = new MenuForBindings(this);
    menu->addLanguages(languages);
    setModel(menu); // which deletes the one before
    setCurrentIndex(-1);
}

QSize LanguagePopUp::sizeHint() const
{
    const int text = fontMetrics().horizontalAdvance(currentText());
    return {std::min(text, LongestName) + ArrowAndPadding, PillHeight};
}

void LanguagePopUp::showPopup()
{
    const int names = view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width();
    view()->setMinimumWidth(std::min(names, WidestList));
    QComboBox::showPopup();
}
