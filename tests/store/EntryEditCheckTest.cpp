// Which edits of a definition file a history walk may skip for one entry: each row is
// also loaded and compared in full, and a skipped edit must hold no change of the entry.
#include "MemoryFolder.h"

#include "store/ChangeSubjects.h"
#include "store/EntryEditCheck.h"
#include "store/RecordComparison.h"
#include "store/RecordsSnapshot.h"

#include <QTest>

using namespace ProductEditor;
using Record = RecordChange::Record;

namespace {

const char kProducts[] = R"({
    "extensions": {"extension": [{"id": "stl", "title": "Mesh"}]},
    "features": {"feature": [
        {"id": "open", "title": "Open"},
        {"id": "save", "title": "Save [all] {now}"}
    ]},
    "products": {"product": [
        {"id": "p", "features": ["open", "save"], "licensing": {"base": "lic_p"}},
        {"id": "q", "features": ["save"], "licensing": {"base": "lic_q"}}
    ]}
})";

const char kLayouts[] = R"({"layouts": {"main": {"features": ["open"]}, "side": {"features": ["save"]}}})";

RecordsSnapshot Load(const QByteArray &products, const QByteArray &layouts)
{
    MemoryFolder folder;
    folder.addFile("products/products.json", products);
    folder.addFile("layouts/main.json", layouts);
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    return RecordsSnapshot::Take(store);
}

QByteArray Edited(const char *text, const QString &from, const QString &to)
{
    QByteArray bytes(text);
    return bytes.replace(from.toUtf8(), to.toUtf8());
}

} // namespace

class EntryEditCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void skips_data()
    {
        QTest::addColumn<bool>("productsFile");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<int>("record");
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("skipped");

        const int feature = int(Record::Feature), product = int(Record::Product), layout = int(Record::Layout),
                  license = int(Record::License);
        QTest::newRow("another feature retitled") << true << "\"Open\"" << "\"Open file\"" << feature << "save" << true;
        QTest::newRow("the entry retitled") << true << "\"Open\"" << "\"Open file\"" << feature << "open" << false;
        QTest::newRow("quotes and brackets in a title") << true << "{now}" << "[later] \\\"x\\\"" << feature << "open"
                                                        << true;
        QTest::newRow("another feature renamed") << true << "\"id\": \"save\"" << "\"id\": \"keep\"" << feature
                                                 << "open" << false;
        QTest::newRow("the entry joins a product") << true << "[\"save\"]" << "[\"save\", \"open\"]" << feature
                                                   << "open" << false;
        QTest::newRow("another feature joins a product") << true << "[\"save\"]" << "[\"open\", \"save\"]" << feature
                                                         << "save" << true;
        QTest::newRow("a feature joins another product") << true << "[\"save\"]" << "[\"save\", \"open\"]" << product
                                                         << "p" << true;
        QTest::newRow("a feature joins the product") << true << "[\"save\"]" << "[\"save\", \"open\"]" << product
                                                     << "q" << false;
        QTest::newRow("a feature text, for a license") << true << "\"Open\"" << "\"Open file\"" << license << "lic_p"
                                                       << true;
        QTest::newRow("a base license") << true << "\"lic_q\"" << "\"lic_r\"" << license << "lic_p" << false;
        QTest::newRow("an extension") << true << "\"Mesh\"" << "\"Meshes\"" << feature << "open" << false;
        QTest::newRow("not JSON") << true << "\"Open\"}" << "\"Open\"" << feature << "save" << false;
        QTest::newRow("the entry leaves a layout") << false << "[\"open\"]" << "[]" << feature << "open" << false;
        QTest::newRow("another feature leaves a layout") << false << "[\"open\"]" << "[]" << feature << "save" << true;
        QTest::newRow("another layout") << false << "[\"open\"]" << "[]" << layout << "side" << true;
        QTest::newRow("the layout") << false << "[\"open\"]" << "[]" << layout << "main" << false;
    }

    void skips()
    {
        QFETCH(bool, productsFile);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(int, record);
        QFETCH(QString, id);
        QFETCH(bool, skipped);
        const QByteArray before = productsFile ? kProducts : kLayouts;
        const QByteArray after = Edited(productsFile ? kProducts : kLayouts, from, to);
        QVERIFY(before != after);
        QCOMPARE(EditLeavesEntry(before, after, productsFile, Record(record), id), skipped);
        if (!skipped)
            return;
        const RecordChanges changes = productsFile ? CompareRecords(Load(before, kLayouts), Load(after, kLayouts))
                                                   : CompareRecords(Load(kProducts, before), Load(kProducts, after));
        QVERIFY(!changes.isEmpty());
        for (const RecordChange &change : changes)
            QVERIFY(!ChangeConcerns(change, Record(record), id));
    }
};

QTEST_GUILESS_MAIN(EntryEditCheckTest)
#include "EntryEditCheckTest.moc"
