#include "diff/DiffNodeChange.h"
#include "diff/JsonDiff.h"
#include "json/QJsonDiffTreeItem.h"
#include "store/ChangeWording.h"
#include "store/FollowingChanges.h"
#include "store/RecordComparison.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <functional>

using namespace ProductEditor;

using Edit = std::function<void(RecordsSnapshot &)>;
Q_DECLARE_METATYPE(Edit)

namespace {

RecordsSnapshot Base()
{
    RecordsSnapshot records;
    records.features.insert("open", {"", "", "Open", true, false, {"pro"}, {"cam"}});
    records.features.insert("save", {"", "", "Save", true, false, {"pro", "viewer"}, {}});
    records.features.insert("edit_delete", {"", "", "Delete", true, false, {}, {}});
    records.features.insert("spare", {}); // a new feature copies nothing from it
    ProductData pro{"pro", "basic", "", {}, {{"open", {"L1"}}}, {"cam"}};
    pro.extensions.open = {"step"};
    records.products.products = {pro, ProductData{"viewer", "free", "", {}, {}, {}}};
    records.layouts["cam"].open = {"step"};
    records.licenses = {{"basic", "Basic"}, {"L1", "L1"}};
    records.extensions.insert("stl", {false, false, false, false, "STL", "*.stl", {}, {"X"}});
    records.extensions.insert("step", {false, false, false, false, "STEP", "*.step", {}, {}});
    return records;
}

ProductData &Product(RecordsSnapshot &records, const QString &id)
{
    return *records.products.Find(id);
}

void WordRows(const QJsonTreeItem &node, QStringList &words)
{
    if (const auto change = RecordChangeOfDiffNode(static_cast<const QJsonDiffTreeItem &>(node)))
        words.append(WordChange(*change, ChangeWording::Statement));
    for (int i = 0; i < node.childCount(); ++i)
        WordRows(*node.child(i), words);
}

} // namespace

// Each row edits the records as the editor or a branch would; the changes are checked
// through their sentences, which is what reviewers and the Edit menu read.
class RecordChangesTest : public QObject
{
    Q_OBJECT

private slots:
    void wording_data()
    {
        QTest::addColumn<Edit>("edit");
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<QString>("name");

        QTest::newRow("nothing") << Edit([](RecordsSnapshot &) {}) << QStringList() << "Edit";
        QTest::newRow("feature into a product")
            << Edit([](RecordsSnapshot &r) { r.features["edit_delete"].productIds.insert("viewer"); })
            << QStringList{"feature edit_delete added to product viewer"}
            << "Mark feature edit_delete for product viewer";
        QTest::newRow("feature out of a layout")
            << Edit([](RecordsSnapshot &r) { r.features["open"].layoutNames.clear(); })
            << QStringList{"feature open removed from layout cam"} << "Unmark feature open for layout cam";
        QTest::newRow("title")
            << Edit([](RecordsSnapshot &r) { r.features["open"].title = "Open file"; })
            << QStringList{"feature open: title \"Open\" -> \"Open file\""}
            << "Set title of feature open";
        QTest::newRow("hidden") << Edit([](RecordsSnapshot &r) { r.features["save"].visual = false; })
                                << QStringList{"feature save: now hidden"} << "Hide feature save";
        QTest::newRow("two fields of one feature")
            << Edit([](RecordsSnapshot &r) {
                   r.features["open"].tooltip = "Opens";
                   r.features["open"].emergency = true;
               })
            << QStringList{"feature open: tool tip \"\" -> \"Opens\"", "feature open: now an emergency feature"}
            << "Edit tool tip and emergency of feature open";
        QTest::newRow("feature renamed")
            << Edit([](RecordsSnapshot &r) { r.features.insert("open_file", r.features.take("open")); })
            << QStringList{"feature renamed open -> open_file"} << "Rename feature open to open_file";
        QTest::newRow("feature renamed and moved to another product")
            << Edit([](RecordsSnapshot &r) {
                   r.features.insert("open_file", r.features.take("open"));
                   r.features["open_file"].productIds = {"viewer"};
               })
            << QStringList{"feature renamed open -> open_file", "feature open_file added to product viewer",
                           "feature open_file removed from product pro"}
            << "Rename feature open to open_file";
        QTest::newRow("an untitled feature is not recognised under a new id")
            << Edit([](RecordsSnapshot &r) {
                   r.features.insert("spare2", r.features.take("spare"));
                   r.features["spare2"].productIds = {"viewer"};
               })
            << QStringList{"feature spare removed", "feature spare2 added", "feature spare2 added to product viewer"}
            << "Edit 2 features (3 changes)";
        QTest::newRow("feature duplicated")
            << Edit([](RecordsSnapshot &r) { r.features.insert("save2", r.features["save"]); })
            << QStringList{"feature save2 \"Save\" added (duplicate of save)", "feature save2 added to product pro",
                           "feature save2 added to product viewer"}
            << "Duplicate feature save as save2";
        QTest::newRow("new feature") << Edit([](RecordsSnapshot &r) { r.features.insert("New_Feature", {}); })
                                     << QStringList{"feature New_Feature added"} << "Add feature New_Feature";
        QTest::newRow("product duplicated with its features")
            << Edit([](RecordsSnapshot &r) {
                   ProductData copy = Product(r, "pro");
                   copy.id = "pro2";
                   r.products.products.append(copy);
                   r.features["open"].productIds.insert("pro2");
                   r.features["save"].productIds.insert("pro2");
               })
            << QStringList{"feature open added to product pro2", "feature save added to product pro2",
                           "product pro2 added (duplicate of pro)", "product pro2: base license \"\" -> \"basic\"",
                           "product pro2: layout cam added", "product pro2: now opens step",
                           "product pro2: license L1 granted for open"}
            << "Duplicate product pro as pro2";
        QTest::newRow("product renamed, one feature moved along, one joining")
            << Edit([](RecordsSnapshot &r) {
                   Product(r, "viewer").id = "viewer2";
                   r.features["save"].productIds.remove("viewer");
                   r.features["save"].productIds.insert("viewer2");
                   r.features["edit_delete"].productIds.insert("viewer2");
               })
            << QStringList{"feature edit_delete added to product viewer2", "product renamed viewer -> viewer2"}
            << "Rename product viewer to viewer2";
        QTest::newRow("product removed from everywhere")
            << Edit([](RecordsSnapshot &r) {
                   r.products.products.removeLast();
                   r.features["save"].productIds.remove("viewer");
               })
            << QStringList{"product viewer removed"} << "Remove product viewer";
        QTest::newRow("base and layout of a product")
            << Edit([](RecordsSnapshot &r) {
                   Product(r, "viewer").base = "basic";
                   Product(r, "viewer").modes.insert("cam");
               })
            << QStringList{"product viewer: base license \"free\" -> \"basic\"", "product viewer: layout cam added"}
            << "Edit base license and layouts of product viewer";
        QTest::newRow("specific license")
            << Edit([](RecordsSnapshot &r) { Product(r, "pro").specificLicenses["save"].insert("L1"); })
            << QStringList{"product pro: license L1 granted for save"} << "Grant license L1 for save in product pro";
        QTest::newRow("layout opens")
            << Edit([](RecordsSnapshot &r) { r.layouts["cam"].open.insert("stl"); })
            << QStringList{"layout cam: now opens stl"} << "Allow layout cam to open stl";
        QTest::newRow("product exports as a scene")
            << Edit([](RecordsSnapshot &r) { Product(r, "pro").extensions.export_as_scene.insert("stl"); })
            << QStringList{"product pro: now exports stl as a scene (license X)"} << "Allow product pro to export stl as a scene";
        QTest::newRow("extension removed from everywhere")
            << Edit([](RecordsSnapshot &r) {
                   r.extensions.remove("step");
                   Product(r, "pro").extensions.open.clear();
                   r.layouts["cam"].open.clear();
               })
            << QStringList{"product pro: no longer opens step", "layout cam: no longer opens step",
                           "extension step \"STEP\" removed"}
            << "Remove extension step";
        QTest::newRow("export license removed")
            << Edit([](RecordsSnapshot &r) { r.extensions["stl"].exportLicenses.clear(); })
            << QStringList{"extension stl: export license X removed"} << "Remove export license X from extension stl";
        QTest::newRow("CAD format") << Edit([](RecordsSnapshot &r) { r.extensions["stl"].cad_support = true; })
                                    << QStringList{"extension stl: now a CAD format"}
                                    << "Mark extension stl as a CAD format";
        QTest::newRow("license text and a new license")
            << Edit([](RecordsSnapshot &r) {
                   r.licenses["basic"] = "Basic edition";
                   r.licenses["L2"] = "L1";
               })
            << QStringList{"license L2 \"L1\" added", "license basic: text \"Basic\" -> \"Basic edition\""}
            << "Edit 2 licenses (2 changes)";
        QTest::newRow("several records, in kind order")
            << Edit([](RecordsSnapshot &r) {
                   r.extensions["stl"].title = "Stereolithography";
                   Product(r, "pro").profile_suffix = "_pro";
                   r.features["save"].title = "Save all";
                   r.features["edit_delete"].statustip = "Deletes";
               })
            << QStringList{"feature edit_delete: status tip \"\" -> \"Deletes\"",
                           "feature save: title \"Save\" -> \"Save all\"",
                           "product pro: profile suffix \"\" -> \"_pro\"",
                           "extension stl: title \"STL\" -> \"Stereolithography\""}
            << "Edit 2 features, 1 product and 1 extension (4 changes)";
    }

    void wording()
    {
        QFETCH(Edit, edit);
        QFETCH(QStringList, statements);
        QFETCH(QString, name);

        const RecordsSnapshot before = Base();
        RecordsSnapshot after = before;
        edit(after);
        const RecordChanges changes = CompareRecords(before, after);
        QStringList words;
        for (const RecordChange &change : FoldFollowingChanges(changes))
            words.append(WordChange(change, ChangeWording::Statement));
        QCOMPARE(words, statements);
        QCOMPARE(NameEdit(changes), name);
    }

    // The rows of the Changes page's diff of a loaded and a regenerated document.
    void diffRows_data()
    {
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<QByteArray>("right");
        QTest::addColumn<QStringList>("statements");

        QTest::newRow("feature fields")
            << QByteArray(R"({"features":{"feature":[{"id":"open","title":"Open"}]}})")
            << QByteArray(R"({"features":{"feature":[{"id":"open","title":"Open file","visual":false}]}})")
            << QStringList{"feature open: now hidden", "feature open: title \"Open\" -> \"Open file\""};
        QTest::newRow("defaults and unknown keys are no change")
            << QByteArray(R"({"features":{"feature":[{"id":"open","visual":true,"colour":"red"}]}})")
            << QByteArray(R"({"features":{"feature":[{"id":"open"}]}})") << QStringList();
        QTest::newRow("records added and removed")
            << QByteArray(R"({"features":{"feature":[{"id":"a"}]},"products":{"product":[{"id":"p"}]}})")
            << QByteArray(R"({"features":{"feature":[{"id":"b"}]},"products":{"product":[]}})")
            << QStringList{"feature a removed", "feature b added", "product p removed"};
        QTest::newRow("a product's lists")
            << QByteArray(R"({"products":{"product":[{"id":"pro","features":["open"],"modes":["cam"],
                   "extensions":{"open":["step"],"import":[]},
                   "licensing":{"base":"a","specific":[{"id":"open","licenses":["L1"]}]}}]}})")
            << QByteArray(R"({"products":{"product":[{"id":"pro","features":["open","save"],"modes":[],
                   "extensions":{"open":[],"import":["stl"]},
                   "licensing":{"base":"b","specific":[{"id":"open","licenses":["L1","L2"]}]}}]}})")
            << QStringList{"feature save added to product pro", "product pro: base license \"a\" -> \"b\"",
                           "product pro: layout cam removed", "product pro: license L2 granted for open",
                           "product pro: no longer opens step", "product pro: now imports stl"};
        QTest::newRow("an extension and its coverage")
            << QByteArray(R"({"extensions":{"extension":[{"id":"stl","cad_support":true}],
                   "lic_coveradge":{"export":[{"id":"stl","lic":["X"]}]}}})")
            << QByteArray(R"({"extensions":{"extension":[{"id":"stl"}],"lic_coveradge":{"export":[{"id":"stl","lic":[]}]}}})")
            << QStringList{"extension stl: export license X removed", "extension stl: no longer a CAD format"};
        QTest::newRow("a layout document")
            << QByteArray(R"({"layouts":{"cam":{"features":["open"],"extensions":{"open":[]}}}})")
            << QByteArray(R"({"layouts":{"cam":{"features":[],"extensions":{"open":["step"]}}}})")
            << QStringList{"feature open removed from layout cam", "layout cam: now opens step"};
    }

    void diffRows()
    {
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, right);
        QFETCH(QStringList, statements);

        const auto tree = DiffJson(QJsonDocument::fromJson(left).object(), QJsonDocument::fromJson(right).object());
        QStringList words;
        if (tree)
            WordRows(*tree, words);
        words.sort();
        QCOMPARE(words, statements);
    }
};

QTEST_GUILESS_MAIN(RecordChangesTest)
#include "RecordChangesTest.moc"
