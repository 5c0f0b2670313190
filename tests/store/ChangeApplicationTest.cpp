#include "store/ChangeApplication.h"
#include "store/ChangeSubjects.h"
#include "store/ChangeWording.h"
#include "store/RecordComparison.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace ProductEditor;

Q_DECLARE_METATYPE(RecordChange)

namespace {

// Random edits of the kinds the window and a branch make, from small pools of names
// so that records come, go, come back and take each other's ids.
class RandomEditor
{
public:
    explicit RandomEditor(quint32 seed)
        : m_random(seed)
    {
    }

    void Edit(RecordsSnapshot &r)
    {
        switch (m_random.bounded(12)) {
        case 0: Move(r.features, Name("f")); break;
        case 1: r.features[Name("f")].title = Pick({"", "Open", "Save", "Open file"}); break;
        case 2: r.features[Name("f")].tooltip = Pick({"", "Opens", "Saves"}); break;
        case 3: Toggle(r.features[Name("f")].productIds, Name("p")); break;
        case 4: Toggle(r.features[Name("f")].layoutNames, Name("l")); break;
        case 5: r.features[Name("f")].visual ^= true; break;
        case 6: EditProduct(r); break;
        case 7: EditLayouts(r); break;
        case 8: r.features.remove(Name("f")); break;
        case 9: Toggle(r.extensions[Name("x")].importLicenses, Name("L")); break;
        case 10: r.extensions[Name("x")].title = Pick({"STL", "STEP"}); break;
        default: r.licenses[Name("L")] = Pick({"Basic", "Pro"}); break;
        }
    }

private:
    QString Name(const char *prefix) { return prefix + QString::number(m_random.bounded(4)); }
    QString Pick(std::initializer_list<const char *> texts)
    {
        return QString::fromLatin1(*(texts.begin() + m_random.bounded(int(texts.size()))));
    }

    static void Toggle(QSet<QString> &set, const QString &name)
    {
        if (!set.remove(name))
            set.insert(name);
    }

    template <typename Value>
    void Move(QMap<QString, Value> &records, const QString &id)
    {
        const QString to = id + QLatin1Char('m');
        if (records.contains(id) && !records.contains(to))
            records.insert(to, records.take(id));
    }

    // Products and layouts take their features' memberships along, as the store's
    // removal and the models' renames do.
    static void Follow(RecordsSnapshot &r, QSet<QString> VantixFeatureData::*names, const QString &from,
                       const QString &to)
    {
        for (VantixFeatureData &feature : r.features) {
            if ((feature.*names).remove(from) && !to.isEmpty())
                (feature.*names).insert(to);
        }
    }

    void EditProduct(RecordsSnapshot &r)
    {
        const QString id = Name("p");
        ProductData *product = r.products.Find(id);
        if (!product) {
            r.products.products.append(ProductData{id, Pick({"", "basic"}), {}, {}, {}, {}});
            return;
        }
        switch (m_random.bounded(6)) {
        case 0:
            Follow(r, &VantixFeatureData::productIds, id, QString());
            r.products.products.remove(int(product - r.products.products.data()));
            break;
        case 1:
            if (!r.products.Find(id + QLatin1Char('m'))) {
                product->id = id + QLatin1Char('m');
                Follow(r, &VantixFeatureData::productIds, id, product->id);
            }
            break;
        case 2: product->base = Pick({"", "basic", "pro"}); break;
        case 3: Toggle(product->modes, Name("l")); break;
        case 4: Toggle(product->extensions.open, Name("x")); break;
        default: {
            const QString feature = Name("f");
            Toggle(product->specificLicenses[feature], Name("L"));
            if (product->specificLicenses.value(feature).isEmpty())
                product->specificLicenses.remove(feature);
        }
        }
    }

    void EditLayouts(RecordsSnapshot &r)
    {
        const QString name = Name("l");
        if (!r.layouts.contains(name)) {
            r.layouts.insert(name, LayoutData());
        } else if (m_random.bounded(3) == 0) {
            r.layouts.remove(name);
            Follow(r, &VantixFeatureData::layoutNames, name, QString());
        } else {
            Toggle(r.layouts[name].export_as_scene, Name("x"));
        }
    }

    QRandomGenerator m_random;
};

// Products by id: the change set does not keep their order.
void SortProducts(RecordsSnapshot &records)
{
    std::sort(records.products.products.begin(), records.products.products.end(),
              [](const ProductData &a, const ProductData &b) { return a.id < b.id; });
}

} // namespace

class ChangeApplicationTest : public QObject
{
    Q_OBJECT

private slots:
    // Each seed makes a history of edited versions; every version is compared with
    // each earlier one, so that single edits and long branches are both checked.
    void applyingTheChangesGivesTheNewRecords()
    {
        for (quint32 seed = 1; seed <= 40; ++seed) {
            RandomEditor editor(seed);
            QVector<RecordsSnapshot> versions(1);
            for (int step = 0; step < 30; ++step) {
                RecordsSnapshot next = versions.last();
                editor.Edit(next);
                versions.append(next);
            }
            for (int to = 1; to < versions.size(); to += 3) {
                for (int from = 0; from < to; from += 4) {
                    const RecordChanges changes = CompareRecords(versions.at(from), versions.at(to));
                    RecordsSnapshot applied = versions.at(from), expected = versions.at(to);
                    QString error;
                    QVERIFY2(ApplyChanges(applied, changes, &error),
                             qPrintable(QStringLiteral("seed %1, %2 -> %3: %4").arg(seed).arg(from).arg(to).arg(error)));
                    SortProducts(applied);
                    SortProducts(expected);
                    QVERIFY2(applied == expected, qPrintable(QStringLiteral("seed %1, %2 -> %3").arg(seed).arg(from).arg(to)));
                }
            }
        }
    }

    void aChangeThatDoesNotFitIsRefused()
    {
        RecordsSnapshot records;
        records.features.insert("open", {"", "", "Open", true, false, {}, {}});
        RecordChange retitle(RecordChange::Record::Feature, RecordChange::Kind::Changed, "open");
        retitle.field = "title";
        retitle.before = "Open file";
        retitle.after = "Open";
        QString error;
        QVERIFY(!ApplyChanges(records, {retitle}, &error));
        QCOMPARE(error, "Cannot apply: feature open: title \"Open file\" -> \"Open\"");
        QVERIFY(!ApplyChanges(records, {RecordChange(RecordChange::Record::Feature, RecordChange::Kind::Added, "open")}));
    }

    void concerns_data()
    {
        using R = RecordChange::Record;
        using K = RecordChange::Kind;
        QTest::addColumn<RecordChange>("change");
        QTest::addColumn<QString>("concerned");

        auto make = [](R record, K kind, const char *id, const char *field, const char *before, const char *after,
                       const char *entry = "") {
            RecordChange change(record, kind, id);
            change.field = field;
            change.before = before;
            change.after = after;
            change.entry = entry;
            return change;
        };
        QTest::newRow("a feature joins a product")
            << make(R::Feature, K::Gained, "save", "products", "", "pro") << "feature save, product pro";
        QTest::newRow("a specific license")
            << make(R::Product, K::Lost, "pro", "specific", "L1", "", "save") << "feature save, product pro, license L1";
        QTest::newRow("an extension opened") << make(R::Product, K::Gained, "pro", "open", "", "x1")
                                             << "product pro, extension x1";
        QTest::newRow("a base license") << make(R::Product, K::Changed, "pro", "base", "L1", "b")
                                        << "product pro, license L1, license b";
        QTest::newRow("a renamed feature") << make(R::Feature, K::Renamed, "save", "", "", "save2")
                                           << "feature save, feature save2";
    }

    void concerns()
    {
        QFETCH(RecordChange, change);
        QFETCH(QString, concerned);

        QStringList found;
        const char *const nouns[] = {"feature", "product", "layout", "license", "extension"};
        for (int record = 0; record < 5; ++record) {
            for (const QString id : {"save", "save2", "pro", "L1", "x1", "b"}) {
                if (ChangeConcerns(change, RecordChange::Record(record), id))
                    found.append(QString("%1 %2").arg(nouns[record], id));
            }
        }
        QCOMPARE(found.join(", "), concerned);
    }
};

QTEST_GUILESS_MAIN(ChangeApplicationTest)
#include "ChangeApplicationTest.moc"
