#pragma once

#include "ProductEditorExport.h"

#include <QAbstractItemModel>
#include <QJsonValue>
#include <QStringList>

namespace ProductEditor {

class QJsonTreeItem;

// A two-column (key, value) tree over a JSON document.
class PRODUCT_EDITOR_EXPORT QJsonModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit QJsonModel(QObject *parent = nullptr);
    ~QJsonModel() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

protected:
    QJsonTreeItem *_Node(const QModelIndex &index) const;
    // Scalars come back as strings: the tree keeps only their text.
    static QJsonValue _ToJson(const QJsonTreeItem *node);

    QJsonTreeItem *m_root = nullptr; // owned
    QStringList m_headers;
    bool m_editableMode = true;
};

} // namespace ProductEditor
