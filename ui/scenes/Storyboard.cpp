#include "Storyboard.h"

#include <ui/controls/TableCellView.h>

#include <QHash>
#include <QMap>

namespace
{
struct Scenes
{
    QMap<QString, Storyboard::ControllerFactory> controllers; // sorted by identifier
    QMap<QString, Storyboard::CellFactory> cells;
};

QHash<QString, Scenes> &storyboards()
{
    static QHash<QString, Scenes> registered;
    return registered;
}
} // namespace

Storyboard Storyboard::named(const QString &name)
{
    if (!storyboards().contains(name))
        fatalFault(QStringLiteral("There is no storyboard named \"%1\"").arg(name));
    return Storyboard(name);
}

void Storyboard::registerController(const QString &storyboard, const QString &identifier,
                                    const ControllerFactory &factory)
{
    storyboards()[storyboard].controllers.insert(identifier, factory);
}

void Storyboard::registerCell(const QString &storyboard, const QString &identifier,
                              const CellFactory &factory)
{
    storyboards()[storyboard].cells.insert(identifier, factory);
}

QStringList Storyboard::controllerIdentifiers() const
{
    return storyboards().value(m_name).controllers.keys();
}

std::shared_ptr<ViewController> Storyboard::instantiateController(const QString &identifier) const
{
    const ControllerFactory factory = storyboards().value(m_name).controllers.value(identifier);
    auto controller = factory ? factory() : nullptr;
    if (!controller)
        fatalFault(QStringLiteral("The storyboard \"%1\" has no controller \"%2\"").arg(m_name, identifier));
    return controller;
}

std::unique_ptr<TableCellView> Storyboard::makeCell(const QString &identifier) const
{
    const CellFactory factory = storyboards().value(m_name).cells.value(identifier);
    return factory ? factory() : nullptr;
}
