#include "ControlActions.h"

#include "ResponderChain.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSpinBox>

#include <array>

namespace platform
{

namespace
{
using Connector = bool (*)(QObject &control, const Selector &action, QObject &receiver);

template <class Control, auto Signal>
bool connectAs(QObject &control, const Selector &action, QObject &receiver)
{
    auto *const typed = qobject_cast<Control *>(&control);
    if (typed)
        QObject::connect(typed, Signal, &receiver, [=, &receiver] { sendAction(action, &receiver, typed); });
    return typed;
}

constexpr std::array connectors{
    Connector(connectAs<QAbstractButton, &QAbstractButton::clicked>),
    Connector(connectAs<QAction, &QAction::triggered>),
    Connector(connectAs<QLineEdit, &QLineEdit::returnPressed>),
    Connector(connectAs<QComboBox, &QComboBox::activated>),
    Connector(connectAs<QAbstractSlider, &QAbstractSlider::valueChanged>),
    Connector(connectAs<QSpinBox, &QSpinBox::valueChanged>),
    Connector(connectAs<QDoubleSpinBox, &QDoubleSpinBox::valueChanged>),
    Connector(connectAs<QDateTimeEdit, &QDateTimeEdit::dateTimeChanged>),
    Connector(connectAs<QAbstractItemView, &QAbstractItemView::clicked>),
};
} // namespace

bool connectControl(QObject &control, const Selector &action, QObject &receiver)
{
    return std::any_of(connectors.begin(), connectors.end(),
                       [&](Connector connect) { return connect(control, action, receiver); });
}

} // namespace platform
