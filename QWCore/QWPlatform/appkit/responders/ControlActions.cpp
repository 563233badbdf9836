#include "ControlActions.h"

#include "EditEnd.h"
#include "QWPlatform/appkit/ResponderChain.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPointer>
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

/// Sends @p action for as long as its receiver lives.
auto sending(const Selector &action, QObject &receiver, QObject &control)
{
    return [action, &control, receiver = QPointer(&receiver)] {
        if (receiver)
            sendAction(action, receiver, &control);
    };
}

/// Return sends also what has not changed: it asks for the action. The signal comes before that of the edit's end.
bool connectField(QObject &control, const Selector &action, QObject &receiver)
{
    auto *const field = qobject_cast<QLineEdit *>(&control);
    if (!field)
        return false;
    const auto send = sending(action, receiver, *field);
    auto *const end = new EditEnd(*field, send);
    QObject::connect(field, &QLineEdit::returnPressed, end, [=] {
        end->forget();
        send();
    });
    return true;
}

/// A choice is sent as it is made. What was typed into one that can be edited is sent when the edit ends.
bool connectChoice(QObject &control, const Selector &action, QObject &receiver)
{
    auto *const choice = qobject_cast<QComboBox *>(&control);
    if (!choice)
        return false;
    const auto send = sending(action, receiver, *choice);
    auto *const end = choice->lineEdit() ? new EditEnd(*choice->lineEdit(), send) : nullptr;
    QObject::connect(choice, &QComboBox::activated, &receiver, [=] {
        if (end)
            end->forget();
        send();
    });
    return true;
}

constexpr std::array connectors{
    Connector(connectAs<QAbstractButton, &QAbstractButton::clicked>),
    Connector(connectAs<QAction, &QAction::triggered>),
    Connector(connectField),
    Connector(connectChoice),
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
