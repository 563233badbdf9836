#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantList>

#include <optional>

namespace qw
{

/// Reads the factory definition whenever it is asked, but takes it apart only when the file's bytes are others than
/// last time: every edit compares all shortcuts with it. What is wrong with it is told then, on standard error.
class FactoryDefinition
{
public:
    /// Empty when the file cannot be read or holds no array.
    const QVariantList &array(const QString &path);

private:
    std::optional<QByteArray> m_data;
    QVariantList m_array;
};

} // namespace qw
