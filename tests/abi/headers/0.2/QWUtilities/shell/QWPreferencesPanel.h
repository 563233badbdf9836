#pragma once

#include "QWPreferencesPane.h"

#include <QWUtilities/qwutilities_export.h>

#include <QList>
#include <QObject>
#include <QStringList>

#include <memory>

namespace platform
{
class InterfaceFile;
class Panel;
} // namespace platform

/// The host's preferences: one panel whose toolbar switches between panes, and which takes the size of each. The host
/// subclasses it, names the interface file that holds the panel and the panes, and installs it:
///
///     class Preferences : public QWPreferencesPanel { … };
///     QWPreferencesPanel::install<Preferences>();   // in the launch
///     QWPreferencesPanel::open();                   // on "Preferences…"
///
/// One per System. Main thread.
class QWUTILITIES_EXPORT QWPreferencesPanel : public QObject
{
    Q_OBJECT

public:
    /// Makes the host's class @p Host the shared controller, which the System owns; when there is one already, it
    /// stays, and no other is made.
    template <class Host>
    static QWPreferencesPanel &install()
    {
        return _install([]() -> QWPreferencesPanel * { return new Host; });
    }

    /// The installed one; without any, one that has no panel and opens nothing.
    static QWPreferencesPanel &sharedInstance();

    /// Opens with the pane shown last, first with the first pane.
    static void open();

    /// Opens with a pane, in the middle of the screen; an unknown @p identifier is none.
    static void openPane(const QString &identifier);

    /// Brings the controls of every pane up to date with the defaults.
    static void update();

    /// Closes the panel; the System does so.
    ~QWPreferencesPanel() override;

    /// Name of the host's interface file. Its outermost widget is a plain one that holds the panel, named "panel", and
    /// the panes beside it. Once loaded, nibDidLoad() is called. "" in the base: there is none.
    virtual QString panelNibName() const;

    /// In the order of the toolbar; asked for when the interface file is loaded, and at each change. Not owned, not
    /// null. None in the base.
    virtual QList<QWPreferencesPane *> panes() const;

    /// The first of the panes with that identifier, or null.
    QWPreferencesPane *paneForIdentifier(const QString &identifier) const;

    /// The action of the toolbar's items: shows the pane of @p toolbarItem, one of theirs; other senders change
    /// nothing. The panel grows or shrinks to the new pane: from its top edge while it shows, else from its bottom left
    /// corner.
    Q_INVOKABLE void changePane(QObject *toolbarItem);

    /// Not to be deleted; null before the first opening.
    platform::Panel *panel() const;

    /// The pane that shows, or would if the panel did; null before the first opening and without panes.
    QWPreferencesPane *currentPane() const;

    /// Those of the panes, in their order, as they were when the interface file was loaded; none before.
    const QStringList &toolbarItemIdentifiers() const;

protected:
    /// Only for install().
    QWPreferencesPanel();

    /// The place to connect the outlets of the panes to those in @p nib, which lives as long as the call. One that is
    /// missing keeps the panel from opening. Does nothing in the base.
    virtual void nibDidLoad(platform::InterfaceFile &nib);

private:
    static QWPreferencesPanel &_install(QWPreferencesPanel *(*make)());

    class Private;
    std::unique_ptr<Private> d;
};
