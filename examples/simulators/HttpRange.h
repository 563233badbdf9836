#pragma once

#include <QByteArray>

#include <optional>

/// A part of a body: bytes from first up to, and without, end.
struct HttpRange
{
    qint64 first = 0;
    qint64 end = 0;

    qint64 size() const { return end - first; }
    bool isEmpty() const { return end <= first; }

    /// What the header "Range" asks of a body of @p size bytes. None where it asks for nothing that is understood, or
    /// for several parts: the whole body is the answer then. An empty one where there is no such part (status 416).
    static std::optional<HttpRange> requested(const QByteArray &header, qint64 size);
};
