#pragma once

#include "ProductEditorExport.h"

#include <QMap>

namespace ProductEditor {

// A counter bumped whenever one of the models changes the keys of a store map
// or the store announces a rebuild; cursors taken before the bump are dropped.
PRODUCT_EDITOR_EXPORT quint64 RowEpoch();
PRODUCT_EDITOR_EXPORT void BumpRowEpoch();

// Finds the entry of a map by row. A QMap has no access by position, so it
// remembers the last entry reached and walks from there (or from whichever end
// is nearer), which makes a pass over all rows linear. It never trusts a stale
// position: the remembered entry is reused only when the map has the same size,
// no key change was announced since, and its key still leads to the very same
// node (so a detached, replaced or rebuilt map is noticed and the cursor cannot
// dangle).
template <typename Key, typename T>
class MapRowCursor
{
public:
    using Map = QMap<Key, T>;
    using ConstIterator = typename Map::const_iterator;

    // The entry at `row`, or map.constEnd() when the map has no such row.
    ConstIterator At(const Map &map, int row)
    {
        const int size = map.size();
        if (row < 0 || row >= size)
            return map.constEnd();

        ConstIterator it = map.constBegin();
        int at = 0;
        int steps = row;
        if (size - row < steps) {
            it = map.constEnd();
            at = size;
            steps = size - row;
        }
        if (_IsValid(map)) {
            const int distance = row >= m_row ? row - m_row : m_row - row;
            if (distance <= steps) {
                it = m_it;
                at = m_row;
            }
        }
        while (at < row) {
            ++it;
            ++at;
        }
        while (at > row) {
            --it;
            --at;
        }
        m_it = it;
        m_row = row;
        m_key = it.key();
        m_size = size;
        m_epoch = RowEpoch();
        return it;
    }

    // The record at `row` for writing, or null when there is no such row.
    T *Edit(Map &map, int row)
    {
        const ConstIterator found = At(map, row);
        if (found == map.constEnd())
            return nullptr;
        return &*map.find(found.key());
    }

    void Drop() { m_row = -1; }

private:
    bool _IsValid(const Map &map) const
    {
        return m_row >= 0 && m_size == map.size() && m_epoch == RowEpoch()
               && map.constFind(m_key) == m_it;
    }

    ConstIterator m_it;
    int m_row = -1;
    int m_size = -1;
    quint64 m_epoch = 0;
    Key m_key;
};

} // namespace ProductEditor
