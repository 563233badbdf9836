#pragma once

#include <QByteArray>
#include <QVariant>

#include <deque>
#include <optional>
#include <vector>

namespace platform
{

/// Reads a binary property list ("bplist00"). Every offset, length and reference is checked before use. Each object is
/// read once however often it is referred to. Cycles and too deep nesting are refused, and so is what would take much
/// more room than its file: objects that lie upon one another, entries without end that refer to a few objects, and
/// lists that sharing would make huge when written.
class BinaryPropertyListReader
{
public:
    /// @p data must outlive the reader.
    explicit BinaryPropertyListReader(const QByteArray &data);

    static bool isBinary(const QByteArray &data) { return data.startsWith("bplist0"); }

    /// The list, or none. Once only.
    std::optional<QVariant> read();

private:
    struct Object
    {
        bool isRead = false; ///< Met again before, somewhere below itself, it is part of a cycle.
        QVariant value;
        int height = 0;     ///< Levels of arrays and dictionaries in it.
        quint64 weight = 0; ///< Bytes of its text in the XML form, about: what it takes when all is written out.
        quint64 lines = 1;  ///< Lines of that text, each of which every level around it indents by one more.
    };

    /// Where the body of an object begins, and its count of bytes, characters or entries.
    struct Body
    {
        quint64 at;
        quint64 count;
    };

    bool _readTrailer();
    Object *_object(quint64 reference, int depth);
    bool _begin(Object &object, quint64 reference, int depth);
    bool _parse(quint64 at, int depth, Object &object);
    bool _counted(quint64 at, int type, int depth, Object &object);
    bool _claim(quint64 bytes, quint64 entries);
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
    quint64 m_unclaimed = 0;   ///< Bytes that no object read so far holds.
    quint64 m_entriesLeft = 0; ///< References that arrays and dictionaries may still hold.
    quint64 m_mostWeight = 0;
    std::vector<quint32> m_places; ///< For each reference its object's place, counted from 1; 0: not met yet.
    std::deque<Object> m_objects;  ///< Those that were met.
};

} // namespace platform
