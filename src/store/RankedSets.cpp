#include "store/RankedSets.h"

#include "store/OwnerSets.h"

namespace ProductEditor {

namespace {

const size_t kChunk = 1024;

} // namespace

RankedSets::RankedSets(const Groups &products, const Groups &layouts, const QVector<QString> &productNames,
                       const QVector<QString> &layoutNames)
    : products(products.start.size() - 1)
    , layouts(products.start.size() - 1)
    , m_products(products)
    , m_layouts(layouts)
    , m_productNames(productNames)
    , m_layoutNames(layoutNames)
{
}

void RankedSets::Deduplicate(Groups &groups)
{
    quint32 kept = 0;
    for (size_t r = 0; r + 1 < groups.start.size(); ++r) {
        const auto first = groups.owners.begin() + groups.start[r];
        const auto last = groups.owners.begin() + groups.start[r + 1];
        std::sort(first, last);
        groups.start[r] = kept;
        kept = quint32(std::unique_copy(first, last, groups.owners.begin() + kept) - groups.owners.begin());
    }
    groups.start.back() = kept;
    groups.owners.resize(kept);
}

QVector<QString> RankedSets::DeepCopy(const QVector<QString> &names)
{
    QVector<QString> copies;
    copies.reserve(names.size());
    for (const QString &name : names)
        copies.append(QString(name.constData(), name.size()));
    return copies;
}

void RankedSets::fill()
{
    const QVector<QString> productNames = DeepCopy(m_productNames);
    const QVector<QString> layoutNames = DeepCopy(m_layoutNames);
    OwnerSets productShared(productNames, products.size());
    OwnerSets layoutShared(layoutNames, products.size());
    for (size_t first; (first = m_next.fetch_add(kChunk)) < products.size();) {
        for (size_t r = first; r < std::min(first + kChunk, products.size()); ++r) {
            products[r] = productShared.setOf(m_products.owners.data() + m_products.start[r],
                                              m_products.start[r + 1] - m_products.start[r]);
            layouts[r] = layoutShared.setOf(m_layouts.owners.data() + m_layouts.start[r],
                                            m_layouts.start[r + 1] - m_layouts.start[r]);
        }
    }
}

} // namespace ProductEditor
