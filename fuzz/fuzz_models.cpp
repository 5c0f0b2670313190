// Drives every item model of the facade over a store loaded from the input:
// the first part is a list of actions (selections, edits, added and removed
// rows, duplications), the rest is the definition folder. Every cell is read
// after each action, and the edited store must still save to a fixed point.
#include "FuzzFolder.h"

#include "diff/VantixFeaturesDiffModel.h"
#include "json/VantixResultModel.h"
#include "models/Model.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QVector>

using namespace ProductEditor;

namespace {

// Reads actions from the input bytes; zeros once they run out.
class Actions
{
public:
    explicit Actions(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }
    bool atEnd() const { return m_next >= m_bytes.size(); }
    int byte() { return m_next < m_bytes.size() ? quint8(m_bytes.at(m_next++)) : 0; }
    int pick(int count) { return count > 0 ? byte() % count : 0; }
    // A short name over an alphabet with the characters that matter to sorting and encoding.
    QString text()
    {
        static const QStringList pieces{QStringLiteral("a"), QStringLiteral("B"), QStringLiteral(" "),
                                        QStringLiteral("_"), QStringLiteral("1"), QString::fromUtf8("\xC3\xA9"),
                                        QString::fromUtf8("\xF0\x9F\x98\x80"), QString(QChar(0xFFFD))};
        QString name;
        for (int length = pick(5); length > 0; --length)
            name += pieces.at(pick(pieces.size()));
        return name;
    }

private:
    QByteArray m_bytes;
    int m_next = 0;
};

template <typename Map>
QString KeyAt(const Map &map, int i)
{
    return map.isEmpty() ? QString() : (map.cbegin() + i % map.size()).key();
}

void ReadEverything(const QAbstractItemModel *model, const QModelIndex &parent = QModelIndex())
{
    static const QVector<int> roles{Qt::DisplayRole, Qt::DecorationRole, Qt::EditRole, Qt::ToolTipRole,
                                    Qt::ForegroundRole, Qt::CheckStateRole, Qt::UserRole};
    const int rows = model->rowCount(parent);
    const int columns = model->columnCount(parent);
    for (int column = 0; column < columns; ++column) {
        for (int role : roles)
            model->headerData(column, Qt::Horizontal, role);
    }
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const QModelIndex cell = model->index(row, column, parent);
            if (!cell.isValid() || cell.model() != model || model->parent(cell) != parent)
                FuzzSupport::Fail("a cell inside the row and column counts is valid", "valid", "invalid");
            for (int role : roles)
                model->data(cell, role);
            model->flags(cell);
        }
        if (columns > 0 && model->hasChildren(model->index(row, 0, parent)))
            ReadEverything(model, model->index(row, 0, parent));
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***argv)
{
    FuzzSupport::SilenceMessages();
    FuzzSupport::Folder();
    // Check-mark icons are pixmaps and an id clash shows a tool tip: both need the
    // application object, which lives as long as the process.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int qtArgc = 1;
    static char *qtArgv[] = {(*argv)[0], nullptr};
    static QApplication *application = new QApplication(qtArgc, qtArgv);
    Q_UNUSED(application)
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QList<QByteArray> parts = FuzzSupport::SplitInput(data, size, 2 + FuzzSupport::kLayoutFiles);
    Actions actions(parts.takeFirst());
    FuzzSupport::ServeFolder(parts);
    MemoryFolder &folder = FuzzSupport::Folder();
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    if (store.GetProductsOriginalJson().isEmpty())
        return 0;

    Model facade(store);
    const QVector<QAbstractItemModel *> models{
        facade.GetSourceFeaturesModel(), facade.GetFeaturesModel(), facade.GetProductsModel(),
        facade.GetFeatureProductsModel(), facade.GetLayoutsModel(), facade.GetProductLayoutsModel(),
        facade.GetLicensesModel(), facade.GetProductLicensesModel(), facade.GetExtensionsModel(),
        facade.GetExtensionsProductModel(), facade.GetExtensionsLayoutModel(), facade.GetExtensionsLicenseModel()};

    for (int step = 0; step < 64 && !actions.atEnd(); ++step) {
        switch (actions.pick(10)) {
        case 0:
            facade.SelectFeature(KeyAt(store.GetFeatures(), actions.byte()));
            break;
        case 1: {
            const QVector<ProductData> &products = store.GetProducts().products;
            facade.SelectProduct(products.isEmpty() ? actions.text() : products.at(actions.pick(products.size())).id);
            break;
        }
        case 2:
            facade.SelectExtension(KeyAt(store.GetExtensions(), actions.byte()));
            break;
        case 3:
            facade.SetFilter(actions.text());
            break;
        case 4: {
            // A click on a check mark: the negated membership flag, written in the edit role.
            QAbstractItemModel *model = models.at(actions.pick(models.size()));
            const QModelIndex cell = model->index(actions.pick(model->rowCount()), actions.pick(model->columnCount()));
            model->setData(cell, !cell.data(Qt::UserRole).toBool(), Qt::EditRole);
            break;
        }
        case 5: {
            QAbstractItemModel *model = models.at(actions.pick(models.size()));
            const QModelIndex cell = model->index(actions.pick(model->rowCount()), actions.pick(model->columnCount()));
            model->setData(cell, actions.text(), Qt::EditRole);
            break;
        }
        case 6: {
            QAbstractItemModel *model = models.at(actions.pick(models.size()));
            model->insertRows(actions.pick(model->rowCount() + 1), 1);
            break;
        }
        case 7: {
            QAbstractItemModel *model = models.at(actions.pick(models.size()));
            model->removeRows(actions.pick(model->rowCount() + 1), 1 + actions.pick(2));
            break;
        }
        case 8:
            store.DuplicateFeatureFrom(KeyAt(store.GetFeatures(), actions.byte()), actions.text());
            break;
        case 9: {
            const QVector<ProductData> &products = store.GetProducts().products;
            store.DuplicateProductFrom(products.isEmpty() ? QString() : products.at(actions.pick(products.size())).id,
                                       actions.text());
            break;
        }
        }
        for (const QAbstractItemModel *model : models)
            ReadEverything(model);
    }

    store.UpdateResultJsons();
    facade.GetResultModel()->SetJson(store.GetProductsResultJson());
    ReadEverything(facade.GetResultModel());
    facade.GetDiffModel()->Regenerate(store.GetProductsResultJson(), store.GetProductsOriginalJson());
    ReadEverything(facade.GetDiffModel());

    FuzzSupport::CheckSaveIsFixedPoint(store, parts);
    return 0;
}
