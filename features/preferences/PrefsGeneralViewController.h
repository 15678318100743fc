#pragma once
#include <model/LocaleUtilities.h>
#include <ui/window/PlatformSpecificController.h>
#include <QList>

namespace Ui
{
class PrefsGeneralViewController;
}

/// The General pane of the preferences: the subtitle language. The pop-up is bound to the setting; the pane
/// writes nothing itself. Main thread only.
class PrefsGeneralViewController final : public PlatformController<ViewController>
{
    Q_OBJECT
    Q_PROPERTY(QList<Language> languagesArray READ languagesArray CONSTANT)

public:
    PrefsGeneralViewController();
    ~PrefsGeneralViewController() override;

    /// The language catalogue at construction time.
    const QList<Language> &languagesArray() const { return m_languagesArray; }

    /// Always "General".
    QString title() const override;
    void loadView() override;

private:
    const QList<Language> m_languagesArray;
    std::unique_ptr<Ui::PrefsGeneralViewController> m_scene;
};
