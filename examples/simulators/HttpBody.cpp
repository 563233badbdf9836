#include "HttpBody.h"

#include <QFile>

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace
{
QByteArray readFrom(const QFile &file, qint64 offset, qint64 most)
{
    QByteArray piece(most, Qt::Uninitialized);
    const ssize_t count = ::pread(file.handle(), piece.data(), static_cast<size_t>(most), offset);
    piece.resize(std::max<ssize_t>(0, count));
    return piece;
}
} // namespace

HttpBody::HttpBody(const QByteArray &bytes)
    : HttpBody(bytes.size(), [bytes](qint64 offset, qint64 most) { return bytes.mid(offset, most); })
{
}

HttpBody::HttpBody(const char *text)
    : HttpBody(QByteArray(text))
{
}

HttpBody::HttpBody(qint64 size, Reader reader)
    : m_size(size)
    , m_reader(std::move(reader))
{
}

HttpBody HttpBody::file(const QString &path)
{
    const auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    return {file->size(), [file](qint64 offset, qint64 most) { return readFrom(*file, offset, most); }};
}

HttpBody HttpBody::generated(qint64 size, Reader reader)
{
    return {size, std::move(reader)};
}

QByteArray HttpBody::read(qint64 offset, qint64 most) const
{
    const qint64 wanted = m_size == unknownSize ? most : std::min(most, m_size - offset);
    return m_reader && wanted > 0 ? m_reader(offset, wanted) : QByteArray();
}
