#include "Wording.h"

#include "../audio/Clip.h"

#include <QWPlatform/foundation/Localization.h>

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace demo::Wording
{

QString time(double seconds)
{
    const auto milliseconds = static_cast<qint64>(std::llround(std::max(seconds, 0.0) * 1000));
    const qint64 hours = milliseconds / 3600000;
    const qint64 minutes = milliseconds / 60000 % 60;
    const QString rest = QStringLiteral("%1.%2")
                             .arg(milliseconds / 1000 % 60, 2, 10, QLatin1Char('0'))
                             .arg(milliseconds % 1000, 3, 10, QLatin1Char('0'));
    if (hours == 0)
        return QStringLiteral("%1:%2").arg(minutes).arg(rest);
    return QStringLiteral("%1:%2:%3").arg(hours).arg(minutes, 2, 10, QLatin1Char('0')).arg(rest);
}

QString rulerTime(double seconds, double step)
{
    const QString whole = time(seconds);
    if (step >= 1)
        return whole.chopped(4);
    return whole.chopped(step >= 0.1 ? 2 : step >= 0.01 ? 1 : 0);
}

QString decibels(float value)
{
    if (value < 1.0e-6f)
        return QStringLiteral("\u2212\u221e dB");
    const double level = 20 * std::log10(static_cast<double>(value));
    const QString figure = QString::number(std::abs(level), 'f', 1);
    const bool zero = figure == QLatin1String("0.0");
    return (zero        ? QString()
            : level < 0 ? QStringLiteral("\u2212")
                        : QStringLiteral("+")) +
           figure + QStringLiteral(" dB");
}

QString sampleRate(double hertz)
{
    return QString::number(hertz / 1000, 'g', 6) + QStringLiteral(" kHz");
}

QString channels(int count)
{
    if (count == 1)
        return platform::localized(QStringLiteral("Mono"));
    if (count == 2)
        return platform::localized(QStringLiteral("Stereo"));
    return platform::formatted(platform::localized(QStringLiteral("%d channels")), {QString::number(count)});
}

QString summary(const Clip &clip)
{
    const QStringList parts{time(clip.store.seconds()), sampleRate(clip.store.sampleRate()),
                            channels(clip.store.channelCount())};
    return parts.join(QStringLiteral(" · "));
}

} // namespace demo::Wording
