#pragma once

#include "ProductEditorExport.h"

#include <QMap>
#include <QVector>

namespace ProductEditor {

// A counter bumped whenever one of the models changes the keys of a store map
// or the store announces a rebuild; cursors taken before the bump are dropped.
PRODUCT_EDITOR_EXPORT quint64 RowEpoch();
PRODUCT_EDITOR_EXPORT void BumpRowEpoch();

// Finds the entry of a map by row. A QMap has no access by position, so the
// entries reached so far are remembered in row order and extended on demand:
// a pass over all rows is linear and a jump back costs one lookup. A remembered
// entry is used only while the map has the same size, no key change has been
// announced since, and its key still leads to the very same node; otherwise
// everything is dropped and counted again from the first entry. So a detached,
// replaced or rebuilt map is noticed and no remembered iterator is ever
// dereferenced after its node is gone.
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
        if (size != m_size || m_epoch != RowEpoch())
            _Restart(size);
        if (row < m_entries.size()) {
            if (_Holds(map, row))
                return m_entries.at(row);
            _Restart(size);
        } else if (!m_entries.isEmpty() && !_Holds(map, m_entries.size() - 1)) {
            _Restart(size);
        }
        ConstIterator it = m_entries.isEmpty() ? map.constBegin() : m_entries.last();
        if (!m_entries.isEmpty())
            ++it;
        while (m_entries.size() <= row) {
            m_entries.append(it);
            m_keys.append(it.key());
            ++it;
        }
        return m_entries.at(row);
    }

    // The record at `row` for writing, or null when there is no such row.
    T *Edit(Map &map, int row)
    {
        const ConstIterator found = At(map, row);
        if (found == map.constEnd())
            return nullptr;
        return &*map.find(found.key());
    }

    void Drop() { _Restart(-1); }

private:
    bool _Holds(const Map &map, int row) const
    {
        return map.constFind(m_keys.at(row)) == m_entries.at(row);
    }

    void _Restart(int size)
    {
        m_entries.clear();
        m_keys.clear();
        if (size > 0) {
            m_entries.reserve(size);
            m_keys.reserve(size);
        }
        m_size = size;
        m_epoch = RowEpoch();
    }

    QVector<ConstIterator> m_entries;
    QVector<Key> m_keys;
    int m_size = -1;
    quint64 m_epoch = 0;
};

} // namespace ProductEditor
