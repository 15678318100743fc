#pragma once
#include <model/LocaleUtilities.h>
#include <QComboBox>
#include <QList>

/// A pop-up of languages that is as wide as its current choice. Its menu is a `MenuForBindings`: the value of
/// an item is its language's code, and a language named "-" is a separator line. Typing selects.
class LanguagePopUp final : public QComboBox
{
    Q_OBJECT

public:
    explicit LanguagePopUp(QWidget *parent = nullptr);

    void setLanguages(const QList<Language> &languages);
    QSize sizeHint() const override;
    /// The list is as wide as its longest name, not as the pop-up.
    void showPopup() override;
    QSize minimumSizeHint() const override { return sizeHint(); }
};
