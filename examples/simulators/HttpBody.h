#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// The body of an answer, read piece by piece while the socket takes it. A value; copies share what they read from, and
/// any number of connections may read at once.
class HttpBody
{
public:
    /// Up to @p most bytes from @p offset on, at least one; none where the body ends.
    using Reader = std::function<QByteArray(qint64 offset, qint64 most)>;

    static constexpr qint64 unknownSize = -1;

    HttpBody() = default;
    HttpBody(const QByteArray &bytes);
    HttpBody(const char *text);

    /// The file's bytes as it is now; what is removed or replaced meanwhile is still read. None when it cannot be
    /// opened.
    static HttpBody file(const QString &path);

    /// Made while it is sent. With an unknown size it ends where @p reader gives nothing, which may be never.
    static HttpBody generated(qint64 size, Reader reader);

    bool isNull() const { return !m_reader; }
    qint64 size() const { return m_size; }
    QByteArray read(qint64 offset, qint64 most) const;

private:
    HttpBody(qint64 size, Reader reader);

    qint64 m_size = 0;
    Reader m_reader;
};
