#include "fakes/QWTestMain.h"

#include <QWBase/QWCatalogRecord.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/catalog/CatalogXmlWriter.h>

#include <limits>

/// A record of one entry.
class OneEntry : public QWCatalogRecord
{
public:
    OneEntry(const QByteArray &key, const QVariant &value)
        : m_key(key)
        , m_value(value)
    {
    }

    void writeState(qw::StateWriter &writer) const override
    {
        const QLatin1StringView key(m_key);
        if (m_value.typeId() == QMetaType::QByteArray)
            writer.setData(key, m_value.toByteArray());
        else if (m_value.typeId() == QMetaType::LongLong)
            writer.setInteger(key, m_value.toLongLong());
        else
            writer.setString(key, m_value.toString());
    }

protected:
    void applyValueForKey(std::string_view, const QVariant &) override {}

private:
    QByteArray m_key;
    QVariant m_value;
};

static QByteArray written(const QWCatalogRecord &record)
{
    qw::CatalogXmlWriter writer;
    writer.append(qw::CatalogXmlWriter::head());
    writer.appendRecord(record);
    writer.append(qw::CatalogXmlWriter::tail());
    return QByteArray::fromStdString(std::string(writer.text()));
}

/// What the plain writer of property lists makes of @p record.
static QByteArray expected(const QWCatalogRecord &record)
{
    return platform::PropertyList::toXml(QVariantList{record.state()});
}

/// The texts are written eight characters at a time where they can be, so length and place of what cannot be matter.
class tst_CatalogXmlWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainTextOfEveryLength();
    void specialCharacterAtEveryPlace_data();
    void specialCharacterAtEveryPlace();
    void dataOfEveryLength();
    void keyOfEveryLength();
    void extremeNumbers();
};

void tst_CatalogXmlWriter::plainTextOfEveryLength()
{
    for (int length = 0; length <= 100; ++length) {
        QString text;
        for (int i = 0; i < length; ++i)
            text.append(QChar(' ' + 1 + i % 5));
        text.replace('&', 'a');
        const OneEntry record("name", text);
        QCOMPARE(written(record), expected(record));
    }
}

void tst_CatalogXmlWriter::specialCharacterAtEveryPlace_data()
{
    QTest::addColumn<QString>("special");
    for (const char *const special :
         {"&", "<", ">", "\r", "\n", "\t", "\"", "\x7F", "\u0080", "é", "ÿ", "Ā", "耀", "￾", "😀"})
        QTest::newRow(QByteArray(special).toHex().constData()) << QString::fromUtf8(special);
    for (const char16_t control : {0x01, 0x08, 0x0B, 0x1B, 0x1F, 0xFFFF, 0xE01B})
        QTest::addRow("%x", control) << QString(QChar(control));
    QTest::newRow("two") << "&<";
    QTest::newRow("tab and control character") << "\t\x01";
    QTest::newRow("control character and beyond ASCII") << "\x01"
                                                           "é";
    QTest::newRow("escaped and beyond ASCII") << "&é";
}

void tst_CatalogXmlWriter::specialCharacterAtEveryPlace()
{
    QFETCH(QString, special);
    for (int length = 0; length <= 34; ++length)
        for (int place = 0; place <= length; ++place) {
            QString text(length, 'x');
            text.insert(place, special);
            const OneEntry record("name", text);
            QCOMPARE(written(record), expected(record));
        }
}

void tst_CatalogXmlWriter::dataOfEveryLength()
{
    for (int length = 0; length <= 200; ++length) {
        QByteArray data;
        for (int i = 0; i < length; ++i)
            data.append(static_cast<char>(255 - i * 37));
        const OneEntry record("componentDescription", data);
        QCOMPARE(written(record), expected(record));
    }
}

void tst_CatalogXmlWriter::keyOfEveryLength()
{
    for (int length = 1; length <= 70; ++length) {
        const OneEntry record(QByteArray("abcdefghijklmnopqrstuvwxyz").repeated(3).left(length), 1LL);
        QCOMPARE(written(record), expected(record));
    }
}

void tst_CatalogXmlWriter::extremeNumbers()
{
    for (const qlonglong number :
         {std::numeric_limits<qlonglong>::min(), -1LL, 0LL, std::numeric_limits<qlonglong>::max()}) {
        const OneEntry record("uniqueID", number);
        QCOMPARE(written(record), expected(record));
    }
}

QW_TEST_MAIN(tst_CatalogXmlWriter)
#include "tst_CatalogXmlWriter.moc"
