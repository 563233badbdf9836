#include "SettingsPane.h"

#include "../views/Icons.h"

#include <QWPlatform/foundation/UserDefaults.h>

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QSignalBlocker>

#include <algorithm>

namespace demo
{

namespace
{
/// The number that stands for an item: its place, unless the file lists "values".
int valueOfItem(const QComboBox &choice, int item)
{
    const QStringList values = choice.property("values").toString().split(' ', Qt::SkipEmptyParts);
    return values.isEmpty() ? item : values.value(item).toInt();
}

int itemOfValue(const QComboBox &choice, int value)
{
    for (int item = 0; item < choice.count(); ++item) {
        if (valueOfItem(choice, item) == value)
            return item;
    }
    return 0;
}

QVariant valueOf(const QObject &control)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control))
        return button->isChecked();
    if (const auto *choice = qobject_cast<const QComboBox *>(&control))
        return valueOfItem(*choice, choice->currentIndex());
    const auto *slider = qobject_cast<const QAbstractSlider *>(&control);
    return slider ? slider->value() : QVariant();
}

void showSetting(QObject &control, const platform::UserDefaults &defaults, const QString &key)
{
    const QSignalBlocker quiet(&control); // this is no change by the user
    const auto number = static_cast<int>(std::clamp<qlonglong>(defaults.integer(key), 0, 1000));
    if (auto *button = qobject_cast<QAbstractButton *>(&control))
        button->setChecked(defaults.boolean(key));
    else if (auto *choice = qobject_cast<QComboBox *>(&control))
        choice->setCurrentIndex(itemOfValue(*choice, number));
    else if (auto *slider = qobject_cast<QAbstractSlider *>(&control))
        slider->setValue(number);
}
} // namespace

QIcon SettingsPane::image() const
{
    return lineIcon("preferences-" + identifier());
}

void SettingsPane::updateControls()
{
    const QList<QWidget *> all = findChildren<QWidget *>();
    for (QWidget *control : all) {
        const QString key = control->property("defaultsKey").toString();
        if (!key.isEmpty())
            showSetting(*control, defaults(), key);
    }
}

void SettingsPane::itemChanged(QObject *sender)
{
    const QString key = sender->property("defaultsKey").toString();
    const QVariant value = valueOf(*sender);
    if (key.isEmpty() || !value.isValid())
        return;
    defaults().setObject(key, value);
    settingChanged(key, value);
}

void SettingsPane::settingChanged(const QString &, const QVariant &) {}

} // namespace demo
