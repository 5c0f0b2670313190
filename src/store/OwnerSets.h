#pragma once

#include <QSet>
#include <QString>
#include <QVector>

#include <vector>

namespace ProductEditor {

// The membership sets of the features, one per distinct list of owners: features
// that the same products (or layouts) name share one implicitly shared set, the way
// a product line's tiers name most features together. Each name is one shared
// string in every set that holds it.
class OwnerSets
{
public:
    // `names` is indexed by owner; `lists` is about how many lists will be asked for.
    OwnerSets(const QVector<QString> &names, size_t lists);

    // The set of the names of `owners`, which are ascending and without repeats.
    QSet<QString> setOf(const quint32 *owners, quint32 count);

private:
    struct Known
    {
        quint32 first; // where its owners start in m_owners
        quint32 count;
        QSet<QString> set;
    };

    static quint64 HashOf(const quint32 *owners, quint32 count);

    const QVector<QString> &m_names;
    std::vector<quint32> m_table; // index into m_known + 1; 0 marks a free slot
    std::vector<Known> m_known;
    std::vector<quint32> m_owners;
};

} // namespace ProductEditor
