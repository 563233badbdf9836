#include "SortDescriptor.h"

#include <QWPlatform/foundation/PropertyList.h>

namespace qw
{

QByteArray SortDescriptor::archived() const
{
    return platform::PropertyList::toXml(QVariantMap{{"key", key}, {"ascending", ascending}});
}

std::optional<SortDescriptor> SortDescriptor::unarchived(const QByteArray &data)
{
    const QVariant list = platform::PropertyList::fromData(data).value_or(QVariant());
    if (list.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariantMap map = list.toMap();
    const QVariant key = map.value("key");
    const QVariant ascending = map.value("ascending");
    if (key.typeId() != QMetaType::QString || ascending.typeId() != QMetaType::Bool)
        return std::nullopt;
    return SortDescriptor{key.toString(), ascending.toBool()};
}

} // namespace qw
