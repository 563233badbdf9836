#pragma once

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/appkit/events/ModifierFlags.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>

#include <QAbstractButton>
#include <QTableView>
#include <QTest>

/// The host's object that acts; remembers what it was sent.
class ScrollTarget : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void zoom(double lines) { sent.append({"zoom:", lines}); }
    Q_INVOKABLE void scroll(double lines) { sent.append({"scroll:", lines}); }
    Q_INVOKABLE void wantsText(const QString &) { sent.append({"wantsText:", 0}); }
    Q_INVOKABLE void wantsNothing() { sent.append({"wantsNothing", 0}); }

    QList<std::pair<QString, double>> sent;
};

/// A fake machine whose host offers the actions "zoom:" and "scroll:".
struct ScrollWheelFixture
{
    static constexpr auto actionsKey = "Scroll Wheel Actions";
    static constexpr auto frameKey = "Scroll Wheel Manager Frame";
    static constexpr auto openKey = "Scroll Wheel Manager Open";

    FakeSystem system;
    platform::SystemScope scope{system};
    ScrollTarget target;

    ScrollWheelFixture()
    {
        offer({QVariantMap{{"title", "Zoom"}, {"action", "zoom:"}},
               QVariantMap{{"title", "Scroll"}, {"action", "scroll:"}}});
    }

    static QVariantMap record(bool vertical, qlonglong modifiers, const QString &action, bool reverse = false)
    {
        return {{"vertical", vertical}, {"modifiers", modifiers}, {"action", action}, {"reverse", reverse}};
    }

    static platform::ScrollEvent event(double x, double y, quint32 modifiers = 0)
    {
        platform::ScrollEvent event;
        event.deltaX = x;
        event.deltaY = y;
        event.modifierFlags = modifiers;
        return event;
    }

    void offer(const QVariantList &actions) const
    {
        system.addHostResource("scrollWheelActions.xml", platform::PropertyList::toXml(actions));
    }

    void ship(const QVariantList &bindings) const
    {
        system.addHostResource("scrollWheelActionDefaults.xml", platform::PropertyList::toXml(bindings));
    }

    void store(const QVariant &bindings) const { system.userDefaults().setObject(actionsKey, bindings); }

    QWScrollWheelManager &load() const
    {
        QWScrollWheelManager::loadActions();
        return QWScrollWheelManager::defaultManager();
    }

    /// Of a host that ships @p bindings.
    QWScrollWheelManager &load(const QVariantList &bindings) const
    {
        ship(bindings);
        return load();
    }

    /// The same, with its panel on the screen.
    void open(const QVariantList &bindings) const
    {
        load(bindings);
        QWScrollWheelManager::openPanel();
    }

    static QTableView &table()
    {
        return *QWScrollWheelManager::defaultManager().panel()->findChild<QTableView *>("table");
    }

    static QAbstractButton *removeActionButton()
    {
        return QWScrollWheelManager::defaultManager().panel()->findChild<QAbstractButton *>("removeActionButton");
    }

    bool send(const platform::ScrollEvent &event)
    {
        return QWScrollWheelManager::scrollWheelEventTarget(event, &target);
    }

    QVariant cell(const QString &column, int row = 0) const
    {
        return QWScrollWheelManager::defaultManager().tableViewObjectValueForTableColumnRow(column, row);
    }

    void edit(const QString &column, const QVariant &value, int row = 0) const
    {
        QWScrollWheelManager::defaultManager().tableViewSetObjectValueForTableColumnRow(value, column, row);
    }
};
