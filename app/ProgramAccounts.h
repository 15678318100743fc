#pragma once
#include <features/preferences/ServiceAccounts.h>
#include <sources/combined/Services.h>

/// The accounts of the program's services for the Services pane. Main thread only; destroyed before the
/// services.
class ProgramAccounts final : public ServiceAccounts
{
public:
    /// `starterCatalogue` is the catalogue shipped with the program.
    ProgramAccounts(Services &services, const QString &starterCatalogue);

    QString text(Item item) const override;
    bool isFixed(Item item) const override;
    void setText(Item item, const QString &text, std::function<void(Result<void>)> completion) override;
    QString whyUnread() const override;
    void testSubtitles(std::function<void(Result<Connection>)> completion) override;
    void testFilms(std::function<void(Result<void>)> completion) override;
    Catalogue catalogue() const override;

private:
    Services &m_services; // must outlive this object
    const QString m_starterCatalogue;
};
