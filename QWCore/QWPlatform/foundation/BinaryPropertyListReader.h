#pragma once

#include <QByteArray>
#include <QVariant>

#include <optional>
#include <vector>

namespace platform
{

/// Reads a binary property list ("bplist00"). Every offset, length and reference is checked before use. Each object is
/// read once however often it is referred to; cycles, too deep nesting and lists that sharing would make huge when
/// walked are refused.
class BinaryPropertyListReader
{
public:
    /// @p data must outlive the reader.
    explicit BinaryPropertyListReader(const QByteArray &data);

    static bool isBinary(const QByteArray &data) { return data.startsWith("bplist0"); }

    /// The list, or none. Once only.
    std::optional<QVariant> read();

private:
    enum class State
    {
        Unread,
        Reading, ///< Somewhere above on the way down: meeting it again is a cycle.
        Read
    };

    struct Object
    {
        State state = State::Unread;
        QVariant value;
        int height = 0;     ///< Levels of arrays and dictionaries in it.
        quint64 weight = 0; ///< Bytes that a walk through it passes, shared ones each time.
    };

    /// Where the body of an object begins, and its count of bytes, characters or entries.
    struct Body
    {
        quint64 at;
        quint64 count;
    };

    bool _readTrailer();
    Object *_object(quint64 reference, int depth);
    bool _parse(quint64 at, int depth, Object &object);
    bool _counted(quint64 at, int type, int depth, Object &object);
    int _bytesPerCount(int type) const;
    bool _simple(int marker, QVariant &value) const;
    bool _integer(quint64 at, int sizeExponent, QVariant &value) const;
    bool _real(quint64 at, int sizeExponent, QVariant &value) const;
    bool _date(quint64 at, QVariant &value) const;
    bool _text(const Body &body, int type, QVariant &value) const;
    QString _utf16(const Body &body) const;
    bool _array(const Body &body, int depth, Object &object);
    bool _dictionary(const Body &body, int depth, Object &object);
    Object *_entry(quint64 at, int depth, Object &container);

    std::optional<Body> _body(quint64 at, int bytesPerCount) const;
    bool _fits(quint64 at, quint64 count, quint64 size) const;
    quint64 _number(quint64 at, int size) const;
    int _byte(quint64 at) const;

    const QByteArray &m_data;
    quint64 m_end = 0; ///< Where the objects end and the offset table begins.
    quint64 m_top = 0;
    int m_offsetSize = 0;
    int m_referenceSize = 0;
    std::vector<Object> m_objects;
};

} // namespace platform
