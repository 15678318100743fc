#include "LanguagePopUp.h"

#include <QAbstractItemView>

#include <algorithm>

namespace
{
constexpr int ArrowAndPadding = 34; // points beside the text
constexpr int LongestName = 180;    // points
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
    clear();
    for (const Language &language : languages) {
        if (language.name() == QLatin1String("-"))
            insertSeparator(count());
        else
            addItem(language.name(), language.iso639_1());
    }
    setCurrentIndex(-1);
}

QSize LanguagePopUp::sizeHint() const
{
    const int text = fontMetrics().horizontalAdvance(currentText());
    return {std::min(text, LongestName) + ArrowAndPadding, PillHeight};
}
