#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QPointer>
#include <QStringList>
#include <QToolBar>

#include <memory>
#include <vector>

class QActionGroup;

namespace platform
{

class ToolbarCustomizationPanel;
class ToolbarDelegate;
class ToolbarItem;

/// A toolbar that the user can customize and that remembers it, in user defaults under
/// "NSToolbar Configuration <identifier>". Set it up, the delegate last:
///
///     auto *toolbar = new Toolbar("QWManualToolbar2", window);
///     toolbar->setAllowsUserCustomization(true);
///     toolbar->setAutosavesConfiguration(true);
///     toolbar->setDisplayMode(Toolbar::IconOnly);
///     toolbar->setToolbarDelegate(this);
class QWPLATFORM_SHARED_EXPORT Toolbar : public QToolBar
{
    Q_OBJECT

public:
    /// Values as stored.
    enum DisplayMode
    {
        Default = 0,
        IconAndLabel = 1,
        IconOnly = 2,
        LabelOnly = 3
    };

    static const QString SeparatorItem;     ///< "NSToolbarSeparatorItem"
    static const QString SpaceItem;         ///< "NSToolbarSpaceItem"
    static const QString FlexibleSpaceItem; ///< "NSToolbarFlexibleSpaceItem"

    /// True for the three above.
    static bool isStandardItem(const QString &identifier);

    explicit Toolbar(const QString &identifier, QWidget *parent = nullptr);
    ~Toolbar() override;

    const QString &identifier() const { return m_identifier; }

    /// Not owned; outlives the toolbar or is set to null. Makes the items: the stored ones when they are kept and make
    /// sense, else the default ones.
    void setToolbarDelegate(ToolbarDelegate *delegate);

    bool allowsUserCustomization() const { return m_allowsUserCustomization; }
    void setAllowsUserCustomization(bool allows) { m_allowsUserCustomization = allows; }
    bool autosavesConfiguration() const { return m_autosavesConfiguration; }
    void setAutosavesConfiguration(bool autosaves) { m_autosavesConfiguration = autosaves; }

    /// What shows; the owner's choice counts until the user makes one.
    DisplayMode displayMode() const;
    void setDisplayMode(DisplayMode mode);

    /// The items shown, in order; standard ones are not ToolbarItems.
    QStringList itemIdentifiers() const;
    QList<ToolbarItem *> items() const;
    ToolbarItem *itemWithIdentifier(const QString &identifier) const; ///< Or null.

    /// The selected one of the selectable items; "" when none is. An item not shown can be selected all the same.
    const QString &selectedItemIdentifier() const { return m_selected; }
    void setSelectedItemIdentifier(const QString &identifier);

    /// Asks the delegate which items are enabled; also done when the toolbar shows and after a choice.
    void validateVisibleItems();

    /// Changes by the user, kept. An index outside the list, an unknown identifier and a second item of a kind that may
    /// stand there once change nothing.
    void insertItemWithItemIdentifierAtIndex(const QString &identifier, int index);
    void removeItemAtIndex(int index);
    void moveItem(int from, int to);
    void restoreDefaults();
    void chooseDisplayMode(DisplayMode mode);

    /// Identifiers offered by the customization panel that may be inserted now.
    bool canInsert(const QString &identifier) const;
    QStringList allowedItemIdentifiers();

    /// Picture and name for the customization panel; null for standard and unknown items.
    std::unique_ptr<ToolbarItem> paletteItem(const QString &identifier);

    /// Opens the customization panel as a sheet on the toolbar's window, or brings the open one to the front.
    Q_INVOKABLE void runCustomizationPalette(QObject *sender = nullptr);

Q_SIGNALS:
    void itemsChanged();

protected:
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    struct Entry
    {
        QString identifier;
        QAction *action; ///< Owned by the toolbar.
    };

    void _load();
    void _save() const;
    void _setItemIdentifiers(const QStringList &identifiers);
    QAction *_makeAction(const QString &identifier);
    QAction *_makeItemAction(const QString &identifier);
    void _describeButtons();
    void _comeLastInTabOrder();
    void _itemTriggered(QAction *action);
    void _applyDisplayMode();

    QString m_identifier;
    ToolbarDelegate *m_delegate = nullptr;
    std::vector<Entry> m_entries;
    QActionGroup *m_selectable;
    QString m_selected;
    QPointer<ToolbarCustomizationPanel> m_panel;
    DisplayMode m_displayMode = Default;     ///< The owner's.
    DisplayMode m_userDisplayMode = Default; ///< The user's; Default: none was made.
    bool m_allowsUserCustomization = false;
    bool m_autosavesConfiguration = false;
};

} // namespace platform
