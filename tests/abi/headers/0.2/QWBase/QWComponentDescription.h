#pragma once

#include <QWBase/qwbase_export.h>
#include <QWPlatform/plugins/AudioComponent.h>

#include <QByteArray>
#include <QHashFunctions>
#include <QMetaType>

#include <array>
#include <optional>
#include <vector>

/// The identity of an Audio Unit: three four-character codes, flags and flags mask. A value; all five count for
/// equality. Menu items carry it as QVariant::fromValue(description). It stays open, since hosts copy it.
class QWBASE_EXPORT QWComponentDescription
{
public:
    /// Size of the state in bytes: five words of 32 bits.
    static constexpr qsizetype StateSize = 20;

    /// Names no unit: all words are zero.
    QWComponentDescription() = default;

    /// Names the unit that the component registry or loader knows as @p component.
    explicit QWComponentDescription(const platform::AudioComponent &component);

    /// Names the unit with these codes; the first character of a code is its most significant byte.
    QWComponentDescription(quint32 type, quint32 subtype, quint32 manufacturer, quint32 flags = 0,
                           quint32 flagsMask = 0);

    /// The installed units of @p type, in the order of the component registry. Main thread.
    static std::vector<QWComponentDescription> componentDescriptionsOfType(quint32 type);

    /// The description that state() wrote; none when @p state has another size.
    static std::optional<QWComponentDescription> descriptionWithState(const QByteArray &state);

    /// Type, subtype, manufacturer, flags and flags mask, most significant byte first.
    QByteArray state() const { return QByteArrayView(stateBytes()).toByteArray(); }

    /// The same without a byte array.
    std::array<char, StateSize> stateBytes() const;

    /// @{
    /// One of the five words.
    quint32 type() const { return m_component.type; }
    quint32 subtype() const { return m_component.subtype; }
    quint32 manufacturer() const { return m_component.manufacturer; }
    quint32 flags() const { return m_component.flags; }
    quint32 flagsMask() const { return m_component.flagsMask; }
    /// @}

    /// What platform::PluginLoader takes for this unit.
    const platform::AudioComponent &component() const { return m_component; }

    /// A music device.
    bool isInstrument() const;

    /// An effect or a music effect.
    bool isEffect() const;

    /// One of the system's generators that play files or scheduled buffers: the host's business, not the user's.
    bool isPlayer() const;

    /// @{
    /// True when all five words are equal.
    bool operator==(const QWComponentDescription &) const = default;
    bool isEqualToComponentDescription(const QWComponentDescription &other) const { return *this == other; }
    /// @}

private:
    platform::AudioComponent m_component;
};

/// So that descriptions can be keys of a QHash.
QWBASE_EXPORT size_t qHash(const QWComponentDescription &description, size_t seed = 0) noexcept;

Q_DECLARE_METATYPE(QWComponentDescription)
