#include "FactoryDefinition.h"

#include "DefinitionErrors.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace qw
{

namespace
{
QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

const QVariantList &FactoryDefinition::array(const QString &path)
{
    const QByteArray data = contentsOf(path);
    if (data == m_data)
        return m_array;
    m_data = data;
    const QVariant list = platform::PropertyList::fromData(data).value_or(QVariant());
    m_array = list.toList();
    DefinitionErrors::tell(path.isEmpty() ? QStringList{"there is no such file in the host's resources"}
                                          : DefinitionErrors::inList(list));
    return m_array;
}

} // namespace qw
