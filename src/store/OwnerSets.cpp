#include "store/OwnerSets.h"

#include <algorithm>

namespace ProductEditor {

OwnerSets::OwnerSets(const QVector<QString> &names, size_t lists)
    : m_names(names)
{
    size_t capacity = 64;
    while (capacity < lists * 2)
        capacity *= 2;
    m_table.assign(capacity, 0);
}

quint64 OwnerSets::HashOf(const quint32 *owners, quint32 count)
{
    quint64 hash = 0x9e3779b97f4a7c15ULL ^ count;
    for (quint32 i = 0; i < count; ++i)
        hash = (hash ^ owners[i]) * 0xff51afd7ed558ccdULL;
    return hash ^ (hash >> 29);
}

QSet<QString> OwnerSets::setOf(const quint32 *owners, quint32 count)
{
    if (count == 0)
        return QSet<QString>();
    if (m_known.size() * 2 >= m_table.size()) {
        // More distinct lists than expected: start a fresh table for the rest.
        m_table.assign(m_table.size() * 2, 0);
        m_known.clear();
        m_owners.clear();
    }
    const size_t mask = m_table.size() - 1;
    for (size_t i = HashOf(owners, count) & mask;; i = (i + 1) & mask) {
        if (m_table[i] == 0) {
            QSet<QString> set;
            if (count > 16)
                set.reserve(int(count));
            for (quint32 k = 0; k < count; ++k)
                set.insert(m_names.at(int(owners[k])));
            m_known.push_back(Known{quint32(m_owners.size()), count, set});
            m_owners.insert(m_owners.end(), owners, owners + count);
            m_table[i] = quint32(m_known.size());
            return set;
        }
        const Known &known = m_known[m_table[i] - 1];
        if (known.count == count && std::equal(owners, owners + count, m_owners.data() + known.first))
            return known.set;
    }
}

} // namespace ProductEditor
