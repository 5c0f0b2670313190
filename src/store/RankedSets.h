#pragma once

#include <QSet>
#include <QString>
#include <QVector>

#include <algorithm>
#include <atomic>
#include <vector>

namespace ProductEditor {

// The membership sets of the features by rank (their place in id order), made in
// chunks by whichever threads call fill(); each thread shares sets among the features
// it makes them for, and keeps its own copies of the names, so that the threads
// count no references in common.
class RankedSets
{
public:
    // Owners grouped by the rank of their feature: the owners of rank r are
    // owners[start[r]] up to owners[start[r + 1]], ascending and once each.
    struct Groups
    {
        std::vector<quint32> start;
        std::vector<quint32> owners;
    };

    // `members` are (feature, owner) pairs; `rankOf` gives each feature's rank.
    template<typename Member>
    static Groups Group(const std::vector<Member> &members, const std::vector<quint32> &rankOf)
    {
        Groups groups;
        groups.start.assign(rankOf.size() + 1, 0);
        for (const Member &member : members)
            ++groups.start[rankOf[member.feature] + 1];
        for (size_t r = 1; r < groups.start.size(); ++r)
            groups.start[r] += groups.start[r - 1];
        std::vector<quint32> next(groups.start.begin(), groups.start.end() - 1);
        groups.owners.resize(members.size());
        for (const Member &member : members)
            groups.owners[next[rankOf[member.feature]]++] = member.owner;
        Deduplicate(groups);
        return groups;
    }

    RankedSets(const Groups &products, const Groups &layouts, const QVector<QString> &productNames,
               const QVector<QString> &layoutNames);

    // Makes the sets of chunks no thread has taken yet, until none is left.
    void fill();

    std::vector<QSet<QString>> products;
    std::vector<QSet<QString>> layouts;

private:
    // A list may name a feature twice, and two products may share an id.
    static void Deduplicate(Groups &groups);
    static QVector<QString> DeepCopy(const QVector<QString> &names);

    const Groups &m_products;
    const Groups &m_layouts;
    const QVector<QString> &m_productNames;
    const QVector<QString> &m_layoutNames;
    std::atomic<size_t> m_next{0};
};

} // namespace ProductEditor
