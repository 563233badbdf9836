#include "QWAUDescription.h"

#include <QWBase/records/StateWriter.h>
#include <QWPlatform/devices/components/ComponentRegistry.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/machine/SystemServices.h>

namespace
{
/// "Manufacturer: Name" in its two pieces; anything else stays one.
QStringList piecesOf(const QString &text)
{
    const QStringList pieces = text.split(QStringLiteral(": "));
    return pieces.size() == 2 ? pieces : text.split(QLatin1Char(':'));
}

void writeIfSet(qw::StateWriter &writer, QLatin1StringView key, const std::optional<QString> &text)
{
    if (text)
        writer.setString(key, *text);
}
} // namespace

QWAUDescription::QWAUDescription() = default;
QWAUDescription::~QWAUDescription() = default;

std::shared_ptr<QWAUDescription> QWAUDescription::description()
{
    return std::make_shared<QWAUDescription>();
}

std::shared_ptr<QWAUDescription> QWAUDescription::descriptionWithState(const QVariantMap &state)
{
    auto made = description();
    made->setState(state);
    return made;
}

void QWAUDescription::setComponentDescription(const QWComponentDescription &description)
{
    set(m_componentDescription, description);
}

QString QWAUDescription::name()
{
    if (!m_name)
        loadInfo();
    return m_name.value_or(QString());
}

void QWAUDescription::setName(const QString &name)
{
    set(m_name, std::optional(name));
}

QString QWAUDescription::manufacturer()
{
    if (!m_manufacturer)
        loadInfo();
    return m_manufacturer.value_or(QString());
}

void QWAUDescription::setManufacturer(const QString &manufacturer)
{
    set(m_manufacturer, std::optional(manufacturer));
}

void QWAUDescription::setIdentifier(const QString &identifier)
{
    set(m_identifier, std::optional(identifier));
}

bool QWAUDescription::loadInfo()
{
    auto &registry = *platform::SystemServices::current().componentRegistry;
    const QByteArray pascalString = registry.nameOfComponent(m_componentDescription.component());
    if (!pascalString.isEmpty()) {
        const QString text = QString::fromUtf8(pascalString.mid(1)); // all of it: the length byte ends at 255
        const QStringList pieces = piecesOf(text);
        const bool isPair = pieces.size() == 2;
        setManufacturer(isPair ? pieces[0] : platform::localized(QStringLiteral("Unknown")));
        setName(isPair ? pieces[1] : text);
    }
    return m_manufacturer && !m_manufacturer->isEmpty();
}

void QWAUDescription::writeState(qw::StateWriter &writer) const
{
    writer.setData(QLatin1StringView("componentDescription"), m_componentDescription.stateBytes());
    writeIfSet(writer, QLatin1StringView("identifier"), m_identifier);
    writer.setBoolean(QLatin1StringView("ignore"), ignore());
    writeIfSet(writer, QLatin1StringView("manufacturer"), m_manufacturer);
    writeIfSet(writer, QLatin1StringView("name"), m_name);
}

void QWAUDescription::applyValueForKey(std::string_view key, const QVariant &value)
{
    if (key == "name")
        setIfString(m_name, value);
    else if (key == "manufacturer")
        setIfString(m_manufacturer, value);
    else if (key == "identifier")
        setIfString(m_identifier, value);
    else if (key == "componentDescription" && value.typeId() == QMetaType::QByteArray)
        if (const auto description = QWComponentDescription::descriptionWithState(value.toByteArray()))
            setComponentDescription(*description);
}
