#pragma once

#include <QWUtilities/shell/QWPreferencesPane.h>

namespace demo
{

/// A pane whose controls say in the interface file which setting they show: their property "defaultsKey" names the key
/// in the user defaults. What the user chooses is kept at once.
class SettingsPane : public QWPreferencesPane
{
    Q_OBJECT

public:
    using QWPreferencesPane::QWPreferencesPane;

    /// The pane's object name.
    QString identifier() const override { return objectName(); }

    /// The pane's window title, which the interface file gives.
    QString title() const override { return windowTitle(); }

    /// The line icon "preferences-<identifier>".
    QIcon image() const override;

    void updateControls() override;
    void itemChanged(QObject *sender) override;

protected:
    /// A setting was changed by the user and is kept already.
    virtual void settingChanged(const QString &key, const QVariant &value);
};

} // namespace demo
