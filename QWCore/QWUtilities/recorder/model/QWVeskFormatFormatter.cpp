#include "QWVeskFormatFormatter.h"

#include "RecordingFormats.h"

#include <QVariant>

QWVeskFormatFormatter::~QWVeskFormatFormatter() = default;

QString QWVeskFormatFormatter::stringForObjectValue(const QVariant &value) const
{
    const int type = value.typeId();
    if (type != QMetaType::QStringList && type != QMetaType::QVariantList)
        return {};
    return qw::RecordingFormats::textOf(qw::RecordingFormats::maskOf(value.toStringList()));
}
