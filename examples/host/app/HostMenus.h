#pragma once

#include <QPointer>

#include <memory>
#include <vector>

class QMainWindow;
class QMenu;
class QObject;
class QWAUManager;
class QWVSTManager;

namespace demo
{

/// The menu bar of the host. It knows the titles and their order; keys, actions and tags of the menus File, Edit,
/// View and Transport are those of the shortcuts of the same names. The plug-in menus are filled from the two catalogs.
class HostMenus
{
public:
    /// @p actions receives what the plug-in menus send; not owned. Everything else finds its receiver itself.
    HostMenus(QMainWindow &window, QObject &actions);
    ~HostMenus();

    /// Menus that are open learn what can be done now; those that open ask themselves.
    static void validateOpenMenus();

    /// Fills the Effects and Instruments menus anew.
    void fill(const QWAUManager &units, const QWVSTManager &vst);

    QMenu *effects() const { return m_effects; }
    QMenu *instruments() const { return m_instruments; }

private:
    void _fill(QMenu &menu, std::unique_ptr<QMenu> units, std::unique_ptr<QMenu> vst);
    void _addCatalog(QMenu &menu, const QString &title, std::unique_ptr<QMenu> catalog);

    QObject &m_actions;
    QMenu *m_effects;
    QMenu *m_instruments;
    std::vector<std::unique_ptr<QMenu>> m_catalogs; ///< Own the items that the two menus show.
};

} // namespace demo
