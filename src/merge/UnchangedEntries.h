#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QStringList>
#include <QVector>

namespace ProductEditor {

// The records a three-way merge of products documents cannot touch: the entries of the
// keyed arrays that all three versions hold alike, under an id each version uses once.
// Large documents that differ in a few records are merged as those few, and the
// untouched entries are put back into the result.
class UnchangedEntries
{
public:
    enum Side { Base, Ours, Theirs };

    // False when a version is not in a shape that allows this (an id-ordered array out
    // of order, say); the merge then runs on the whole documents.
    bool Find(const QJsonObject &base, const QJsonObject &ours, const QJsonObject &theirs);

    // One version without the unchanged entries.
    QJsonObject Without(Side side, const QJsonObject &document) const;

    // The canonical merge of the reduced versions with the unchanged entries put back: in
    // id order, or at their places among the products. Empty when they do not fit back.
    QJsonObject With(const QJsonObject &merged) const;

private:
    struct Array
    {
        QStringList path;
        QVector<bool> unchanged[3]; // per entry of each side
        QVector<QString> ids;       // of the unchanged entries, in ours' order
        QJsonArray entries;         // the unchanged entries, in ours' order
    };

    bool _FindOrdered(Array &array, const QJsonArray *entries);
    bool _FindUnordered(Array &array, const QJsonArray *entries);
    void _FindProducts(Array &array, const QJsonArray *entries);
    void _FindProductsLead(const QJsonArray *entries);
    void _NoteHolders(const Array &array, const QString &id, int holders);
    bool _Usable(const Array &array, const QJsonValue &entry) const;
    static void _Keep(Array &array, const QJsonArray *entries, const int *at);
    QJsonArray _WithOrdered(const Array &array, const QJsonArray &merged) const;
    bool _WithProducts(const Array &array, const QJsonArray &merged, QJsonArray &whole) const;

    QVector<Array> m_arrays;
    Side m_productsLead = Ours; // whose order the merged products follow
    QJsonArray m_leadProducts;
    // Extension ids that all three versions define.
    QSet<QString> m_sharedExtensions;
    // Feature ids of the base that ours or theirs removed.
    QSet<QString> m_removedFeatures;
};

} // namespace ProductEditor
