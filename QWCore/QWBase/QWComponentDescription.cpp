#include "QWComponentDescription.h"

#include <QWPlatform/devices/components/ComponentRegistry.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QtEndian>

#include <algorithm>
#include <array>

using platform::AudioComponent;
using platform::fourCharCode;

namespace
{
constexpr quint32 effectTypes[] = {fourCharCode("aufx"), fourCharCode("aumf")};
constexpr quint32 playerSubtypes[] = {fourCharCode("afpl"), fourCharCode("sspl")};

template <std::size_t Size>
bool contains(const quint32 (&codes)[Size], quint32 code)
{
    return std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}
} // namespace

QWComponentDescription::QWComponentDescription(const AudioComponent &component)
    : m_component(component)
{
}

QWComponentDescription::QWComponentDescription(quint32 type, quint32 subtype, quint32 manufacturer, quint32 flags,
                                               quint32 flagsMask)
    : m_component{type, subtype, manufacturer, flags, flagsMask}
{
}

std::vector<QWComponentDescription> QWComponentDescription::componentDescriptionsOfType(quint32 type)
{
    const auto components = platform::SystemServices::current().componentRegistry->componentsOfType(type);
    return {components.begin(), components.end()};
}

std::optional<QWComponentDescription> QWComponentDescription::descriptionWithState(const QByteArray &state)
{
    if (state.size() != StateSize)
        return std::nullopt;
    std::array<quint32, 5> words;
    qFromBigEndian<quint32>(state.constData(), words.size(), words.data());
    return QWComponentDescription(words[0], words[1], words[2], words[3], words[4]);
}

std::array<char, QWComponentDescription::StateSize> QWComponentDescription::stateBytes() const
{
    std::array<char, StateSize> bytes;
    char *at = bytes.data();
    for (const quint32 word : {type(), subtype(), manufacturer(), flags(), flagsMask()}) {
        qToBigEndian(word, at);
        at += sizeof word;
    }
    return bytes;
}

bool QWComponentDescription::isInstrument() const
{
    return type() == fourCharCode("aumu");
}

bool QWComponentDescription::isEffect() const
{
    return contains(effectTypes, type());
}

bool QWComponentDescription::isPlayer() const
{
    return type() == fourCharCode("augn") && contains(playerSubtypes, subtype()) &&
           manufacturer() == fourCharCode("appl");
}

size_t qHash(const QWComponentDescription &description, size_t seed) noexcept
{
    return qHashMulti(seed, description.type(), description.subtype(), description.manufacturer(), description.flags(),
                      description.flagsMask());
}
