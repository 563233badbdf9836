#pragma once

#include <QWPlatform/foundation/PropertyList.h>

#include <QTest>

#include <random>

/// Calls @p visit with @p count damaged copies of @p original, the same ones in every run.
template <class Visit>
void forEachMutant(const QByteArray &original, int count, Visit visit)
{
    std::mt19937 random(20090305);
    const auto below = [&](qsizetype limit) { return static_cast<qsizetype>(random() % static_cast<quint32>(limit)); };
    for (int i = 0; i < count; ++i) {
        QByteArray mutant = original;
        for (qsizetype change = 1 + below(3); change > 0 && !mutant.isEmpty(); --change) {
            const qsizetype at = below(mutant.size());
            switch (below(4)) {
            case 0:
                mutant[at] = static_cast<char>(random());
                break;
            case 1:
                mutant.remove(at, 1 + below(8));
                break;
            case 2:
                mutant.insert(at, original.mid(below(original.size()), below(24)));
                break;
            default:
                mutant[at] = static_cast<char>(mutant[at] ^ (1 << below(8)));
            }
        }
        visit(mutant);
    }
}

/// Reads @p count damaged copies of the property list @p original with @p read: each gives no list, or one that can be
/// written and reads back as the same.
template <class Read>
void damagedCopiesAreListsOrNothing(const QByteArray &original, int count, Read read)
{
    using namespace platform;
    int lists = 0;
    forEachMutant(original, count, [&](const QByteArray &mutant) {
        const std::optional<QVariant> list = read(mutant);
        if (!list)
            return;
        ++lists;
        const QByteArray xml = PropertyList::toXml(*list);
        QVERIFY(!xml.isEmpty());
        QCOMPARE(PropertyList::toXml(PropertyList::fromData(xml).value_or(QVariant())), xml);
    });
    QVERIFY(lists > 100);
}
