#pragma once
#include <base/FatalFault.h>
#include <ui/window/ViewController.h>
#include <functional>
#include <memory>

class TableCellView;

/// A set of scenes: identifiers and the factories that make a controller or a table cell with its scene.
/// Rooms register their scenes when the program starts; an unknown identifier and a controller of the wrong
/// class are fatal faults. Main thread only.
class Storyboard final
{
public:
    using ControllerFactory = std::function<std::shared_ptr<ViewController>()>;
    using CellFactory = std::function<std::unique_ptr<TableCellView>()>;

    /// The storyboard of that name; a fatal fault when no scene is registered for it.
    static Storyboard named(const QString &name);
    static void registerController(const QString &storyboard, const QString &identifier,
                                   const ControllerFactory &factory);
    static void registerCell(const QString &storyboard, const QString &identifier,
                             const CellFactory &factory);
    /// Every registered controller identifier of this storyboard, sorted.
    QStringList controllerIdentifiers() const;

    std::shared_ptr<ViewController> instantiateController(const QString &identifier) const;
    template <class Controller>
    std::shared_ptr<Controller> instantiate(const QString &identifier) const
    {
        auto controller = std::dynamic_pointer_cast<Controller>(instantiateController(identifier));
        if (!controller)
            fatalFault(QStringLiteral("The controller \"%1\" is of the wrong class").arg(identifier));
        return controller;
    }
    /// A new cell for a table, or null when the storyboard has none of that name.
    std::unique_ptr<TableCellView> makeCell(const QString &identifier) const;

private:
    explicit Storyboard(const QString &name) : m_name(name) {}
    QString m_name;
};
