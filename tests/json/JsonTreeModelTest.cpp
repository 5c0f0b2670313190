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

using namespace ProductEditor;

namespace {

QString Compact(const QJsonDocument &document)
{
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

// One line per row: "key=value" with children in parentheses, walked through the model.
QString Rows(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex key = model.index(row, 0, parent);
        QString text = key.data().toString() + QLatin1Char('=') + key.siblingAtColumn(1).data().toString();
        if (model.rowCount(key) > 0)
            text += QLatin1Char('(') + Rows(model, key) + QLatin1Char(')');
        rows << text;
    }
    return rows.join(QLatin1Char(' '));
}

} // namespace

class JsonTreeModelTest : public QObject
{
    Q_OBJECT

private slots:
    void loadBuildsTree();
    void itemTypes();
    void invalidJsonKeepsTree();
    void editSerialisesAsString();
    void serialisation_data();
    void serialisation();
    void topLevelArray();
    void loadFromFileAndDevice();
    void roles();
    void flags();
    void headers();
    void resultModelRoundTrip();
    void deepDocument();
};

void JsonTreeModelTest::loadBuildsTree()
{
    QSmartJsonModel model(QByteArray(R"({"b":1,"a":[true,"x"]})"));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(Rows(model), QStringLiteral("a=(0=true 1=x) b=1"));
    const QModelIndex a = model.index(0, 0);
    QCOMPARE(model.rowCount(a.siblingAtColumn(1)), 0);
    QCOMPARE(model.rowCount(model.index(1, 1)), 0);
    QCOMPARE(model.parent(model.index(1, 0, a)), a);
    QCOMPARE(model.parent(a), QModelIndex());
    QCOMPARE(model.index(2, 0, a), QModelIndex());
    QCOMPARE(model.columnCount(), 2);
}

void JsonTreeModelTest::itemTypes()
{
    QJsonTreeItem *root = QJsonTreeItem::load(QJsonValue(QJsonObject{{"b", 1}, {"a", QJsonArray{true, "x"}}}));
    QCOMPARE(root->key(), QStringLiteral("root"));
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(root->child(0)->type(), QJsonValue::Array);
    QCOMPARE(root->child(0)->child(0)->type(), QJsonValue::Bool);
    QCOMPARE(root->child(0)->child(1)->type(), QJsonValue::String);
    QCOMPARE(root->child(0)->child(1)->key(), QStringLiteral("1"));
    QCOMPARE(root->child(1)->type(), QJsonValue::Double);
    QCOMPARE(root->child(1)->value(), QStringLiteral("1"));
    QCOMPARE(root->child(1)->row(), 1);
    QCOMPARE(root->child(1)->parent(), root);
    QCOMPARE(root->row(), 0);
    QVERIFY(!root->child(2));
    QVERIFY(!root->child(-1));
    delete root;
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
    QCOMPARE(Rows(model), QStringLiteral("a=1"));
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

    QVERIFY(!model.setData(b, 3, Qt::DisplayRole));
    QVERIFY(!model.setData(b.siblingAtColumn(0), "k"));
    QVERIFY(!model.setData(QModelIndex(), "k"));
    QCOMPARE(spy.count(), 0);
}

void JsonTreeModelTest::serialisation_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("written");
    QTest::newRow("numbers, booleans and null come back as strings")
        << QByteArray(R"({"n":12,"f":1.5,"t":true,"z":null})") << R"({"f":"1.5","n":"12","t":"true","z":""})";
    QTest::newRow("nesting and order kept")
        << QByteArray(R"({"o":{"k":["a",{"x":"y"}]},"e":[]})") << R"({"e":[],"o":{"k":["a",{"x":"y"}]}})";
}

void JsonTreeModelTest::serialisation()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, written);
    QSmartJsonModel model(json);
    QCOMPARE(Compact(model.json()), written);
}

void JsonTreeModelTest::topLevelArray()
{
    QSmartJsonModel model(QByteArray(R"([1,{"a":"b"}])"));
    QCOMPARE(Rows(model), QStringLiteral("0=1 1=(a=b)"));
    QVERIFY(model.json().isArray());
    QCOMPARE(Compact(model.json()), QStringLiteral(R"(["1",{"a":"b"}])"));
}

void JsonTreeModelTest::loadFromFileAndDevice()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(R"({"f":"file"})");
    file.close();
    QSmartJsonModel fromFile(file.fileName());
    QCOMPARE(Rows(fromFile), QStringLiteral("f=file"));
    QVERIFY(!fromFile.load(file.fileName() + QStringLiteral(".missing")));
    QCOMPARE(Rows(fromFile), QStringLiteral("f=file"));

    QByteArray bytes(R"({"d":"device"})");
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QSmartJsonModel fromDevice(&buffer);
    QCOMPARE(Rows(fromDevice), QStringLiteral("d=device"));
}

void JsonTreeModelTest::roles()
{
    QSmartJsonModel model(QByteArray(R"({"k":"v"})"));
    const QModelIndex key = model.index(0, 0);
    QCOMPARE(key.data(Qt::EditRole), QVariant());
    QCOMPARE(key.siblingAtColumn(1).data(Qt::EditRole).toString(), QStringLiteral("v"));
    QCOMPARE(key.data(Qt::DecorationRole), QVariant());
    QCOMPARE(model.data(QModelIndex()), QVariant());
}

void JsonTreeModelTest::flags()
{
    QSmartJsonModel model(QByteArray(R"({"a":[1],"o":{},"s":"x"})"));
    const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    QCOMPARE(model.flags(model.index(0, 1)), plain);
    QCOMPARE(model.flags(model.index(1, 1)), plain);
    QCOMPARE(model.flags(model.index(2, 0)), plain);
    QCOMPARE(model.flags(model.index(2, 1)), plain | Qt::ItemIsEditable);
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags());
}

void JsonTreeModelTest::headers()
{
    QJsonModel model;
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Key"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Value"));
    QCOMPARE(model.headerData(2, Qt::Horizontal), QVariant(QString()));
    QCOMPARE(model.headerData(0, Qt::Vertical), QVariant());
    QCOMPARE(model.headerData(0, Qt::Horizontal, Qt::ToolTipRole), QVariant());
    QCOMPARE(model.rowCount(), 0);
}

void JsonTreeModelTest::resultModelRoundTrip()
{
    VantixResultModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QVERIFY(reset.isValid());
    model.SetJson(QJsonObject{{"id", "p"}, {"n", 3}, {"l", QJsonArray{"a", false}}});
    QCOMPARE(reset.count(), 1);
    QCOMPARE(Rows(model), QStringLiteral("id=p l=(0=a 1=false) n=3"));
    QCOMPARE(model.GetJson(), (QJsonObject{{"id", "p"}, {"n", "3"}, {"l", QJsonArray{"a", "false"}}}));
    model.SetJson(QJsonObject());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.GetJson(), QJsonObject());
}

void JsonTreeModelTest::deepDocument()
{
    // The parser's own nesting limit.
    QByteArray json;
    for (int i = 0; i < 1024; ++i)
        json += "{\"a\":";
    json += "1";
    for (int i = 0; i < 1024; ++i)
        json += "}";
    QSmartJsonModel model(json);
    QModelIndex index = model.index(0, 0);
    int depth = 0;
    while (model.rowCount(index) > 0) {
        index = model.index(0, 0, index);
        ++depth;
    }
    QCOMPARE(depth, 1023);
    QCOMPARE(index.siblingAtColumn(1).data().toString(), QStringLiteral("1"));
    QCOMPARE(model.json().toJson(QJsonDocument::Compact).count('{'), 1024);
}

QTEST_GUILESS_MAIN(JsonTreeModelTest)
#include "JsonTreeModelTest.moc"
