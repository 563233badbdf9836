#pragma once

#include <QByteArray>

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
