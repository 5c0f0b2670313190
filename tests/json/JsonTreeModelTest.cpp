#include "json/QJsonModel.h"
#include "json/QJsonTreeItem.h"
#include "json/QSmartJsonModel.h"
#include "json/VantixResultModel.h"

#include <QAbstractItemModelTester>
#include <QBuffer>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

// "key:type=value" per row, children in parentheses, walked through the model.
QString Rows(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex key = model.index(row, 0, parent);
        const auto *node = static_cast<const QJsonTreeItem *>(key.internalPointer());
        rows << QStringLiteral("%1:%2=%3")
                    .arg(key.data().toString(), QString::number(node->type()), key.siblingAtColumn(1).data().toString())
                + (model.rowCount(key) ? QLatin1Char('(') + Rows(model, key) + QLatin1Char(')') : QString());
    }
    return rows.join(QLatin1Char(' '));
}

} // namespace

class JsonTreeModelTest : public QObject
{
    Q_OBJECT

private slots:
    void loadBuildsTree();
    void invalidJsonKeepsTree();
    void editSerialisesAsString();
    void serialisation_data();
    void serialisation();
    void loadFromFileAndDevice();
    void resultModelRoundTrip();
};

void JsonTreeModelTest::loadBuildsTree()
{
    QSmartJsonModel model(QByteArray(R"({"b":1,"a":[true,"x"],"o":{}})"));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(Rows(model), QStringLiteral("a:4=(0:1=true 1:3=x) b:2=1 o:5="));
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.rowCount(model.index(0, 1)), 0);
    QCOMPARE(model.index(2, 0, model.index(0, 0)), QModelIndex());

    const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    QCOMPARE(model.flags(model.index(0, 1)), plain);
    QCOMPARE(model.flags(model.index(2, 1)), plain);
    QCOMPARE(model.flags(model.index(1, 0)), plain);
    QCOMPARE(model.flags(model.index(1, 1)), plain | Qt::ItemIsEditable);
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags());
    QCOMPARE(model.index(1, 1).data(Qt::EditRole).toString(), QStringLiteral("1"));
    QVERIFY(!model.index(1, 0).data(Qt::EditRole).isValid());

    const QJsonModel plainModel;
    QCOMPARE(plainModel.rowCount(), 0);
    QCOMPARE(plainModel.headerData(0, Qt::Horizontal), QVariant(QStringLiteral("Key")));
    QCOMPARE(plainModel.headerData(1, Qt::Horizontal), QVariant(QStringLiteral("Value")));
    QCOMPARE(plainModel.headerData(2, Qt::Horizontal), QVariant(QString()));

    const std::unique_ptr<QJsonTreeItem> root(QJsonTreeItem::load(QJsonValue(QJsonArray{1})));
    QCOMPARE(root->key() + root->child(0)->key() + root->child(0)->value(), QStringLiteral("root01"));
    QCOMPARE(root->row(), 0);
    QVERIFY(!root->child(1) && !root->child(-1));
}

void JsonTreeModelTest::invalidJsonKeepsTree()
{
    QSmartJsonModel model(QByteArray(R"({"a":1})"));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy reset(&model, &QAbstractItemModel::modelAboutToBeReset);
    QVERIFY(reset.isValid());
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("cannot load json"));
    QVERIFY(!model.loadJson("{\"a\":"));
    QCOMPARE(reset.count(), 0);
    QCOMPARE(Rows(model), QStringLiteral("a:2=1"));
}

void JsonTreeModelTest::editSerialisesAsString()
{
    QSmartJsonModel model(QByteArray(R"({"b":1,"a":[true,"x"]})"));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy spy(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(spy.isValid());
    const QModelIndex b = model.index(1, 1);
    QVERIFY(model.setData(b, 2));
    QCOMPARE(spy.count(), 1);
    const QList<QVariant> arguments = spy.takeFirst();
    QCOMPARE(arguments.at(0).value<QModelIndex>(), b);
    QCOMPARE(arguments.at(1).value<QModelIndex>(), b);
    QCOMPARE(arguments.at(2).value<QVector<int>>(), QVector<int>{Qt::EditRole});
    QCOMPARE(model.json().object().value("b"), QJsonValue(QStringLiteral("2")));
    QCOMPARE(Rows(model), QStringLiteral("a:4=(0:1=true 1:3=x) b:2=2")); // the type stays as it was

    QVERIFY(!model.setData(b, 3, Qt::DisplayRole));
    QVERIFY(!model.setData(b.siblingAtColumn(0), "k"));
    QVERIFY(!model.setData(QModelIndex(), "k"));
    QCOMPARE(spy.count(), 0);
}

void JsonTreeModelTest::serialisation_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("numbers, booleans and null come back as strings")
        << QByteArray(R"({"n":12,"f":1.5,"t":true,"z":null})")
        << QByteArray(R"({"f":"1.5","n":"12","t":"true","z":""})");
    QTest::newRow("nesting and order kept")
        << QByteArray(R"({"o":{"k":["a",{"x":"y"}]},"e":[]})")
        << QByteArray(R"({"e":[],"o":{"k":["a",{"x":"y"}]}})");
    QTest::newRow("top-level array") << QByteArray(R"([1,{"a":"b"}])") << QByteArray(R"(["1",{"a":"b"}])");
    // The parser's own nesting limit.
    const QByteArray open = QByteArray("{\"a\":").repeated(1024);
    QTest::newRow("1024 levels") << open + "1" + QByteArray(1024, '}') << open + "\"1\"" + QByteArray(1024, '}');
}

void JsonTreeModelTest::serialisation()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, written);
    const QSmartJsonModel model(json);
    QCOMPARE(model.json().toJson(QJsonDocument::Compact), written);
}

void JsonTreeModelTest::loadFromFileAndDevice()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(R"({"f":"file"})");
    file.close();
    QSmartJsonModel model(file.fileName());
    QCOMPARE(Rows(model), QStringLiteral("f:3=file"));
    QVERIFY(!model.load(file.fileName() + QStringLiteral(".missing")));
    QCOMPARE(Rows(model), QStringLiteral("f:3=file"));

    QByteArray bytes(R"({"d":"device"})");
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(Rows(QSmartJsonModel(&buffer)), QStringLiteral("d:3=device"));
}

void JsonTreeModelTest::resultModelRoundTrip()
{
    VantixResultModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QVERIFY(reset.isValid());
    model.SetJson(QJsonObject{{"id", "p"}, {"n", 3}, {"l", QJsonArray{"a", false}}});
    QCOMPARE(reset.count(), 1);
    QCOMPARE(Rows(model), QStringLiteral("id:3=p l:4=(0:3=a 1:1=false) n:2=3"));
    QCOMPARE(model.GetJson(), (QJsonObject{{"id", "p"}, {"n", "3"}, {"l", QJsonArray{"a", "false"}}}));
    model.SetJson(QJsonObject());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.GetJson(), QJsonObject());
}

QTEST_GUILESS_MAIN(JsonTreeModelTest)
#include "JsonTreeModelTest.moc"
