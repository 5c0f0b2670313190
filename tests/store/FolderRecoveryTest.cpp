// The next open of a folder whose save was stopped finishes the save when its journal is in
// place, undoes it when it is not, and touches nothing when the journal cannot be trusted.
#include "FolderFiles.h"

#include "store/FolderTransaction.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ProductEditor;
using Outcome = FolderRecovery::Outcome;

Q_DECLARE_METATYPE(Outcome)

namespace {

const FolderFiles kOld{{"products/products.json", "old products"},
                       {"layouts/a.json", "old a"},
                       {"layouts/gone.json", "left out by the save"}};
const FolderFiles kNew{{"products/products.json", "new products"}, {"layouts/a.json", "new a"}};

// The save from kOld to kNew: two files written aside, one removed.
QVector<SaveJournalEntry> Entries()
{
    return {{"products/products.json", "products/.products.json.pe-save-aaaaaa", SaveJournal::Hash("new products")},
            {"layouts/a.json", "layouts/.a.json.pe-save-bbbbbb", SaveJournal::Hash("new a")},
            {"layouts/gone.json", QString(), QByteArray()}};
}

} // namespace

class FolderRecoveryTest : public QObject
{
    Q_OBJECT

private slots:
    void recover_data()
    {
        QTest::addColumn<QByteArray>("journal"); // at its name; empty: none
        QTest::addColumn<QByteArray>("pending"); // the journal under its temporary name
        QTest::addColumn<int>("done");           // entries the save had finished
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QString>("folder");     // "old", "new" or "as found"
        QTest::addColumn<QString>("told");       // in a note or the problem

        const QByteArray journal = SaveJournal::ToJson(Entries());
        QVector<SaveJournalEntry> wrongHash = Entries();
        wrongHash[1].sha256 = SaveJournal::Hash("something else");

        QTest::newRow("nothing interrupted") << QByteArray() << QByteArray() << 3 << Outcome::Clean << "new" << "";
        QTest::newRow("stopped while writing aside") << QByteArray() << QByteArray() << 0 << Outcome::RolledBack << "old"
                                                     << "layouts/.a.json.pe-save-bbbbbb: removed, the temporary file";
        QTest::newRow("stopped while writing the journal") << QByteArray() << journal << 0 << Outcome::RolledBack << "old"
                                                           << "/..product-editor-save.pe-save-cccccc: removed";
        QTest::newRow("journal in place, nothing replaced") << journal << QByteArray() << 0 << Outcome::RolledForward
                                                            << "new" << "products/products.json: written, finishing";
        QTest::newRow("journal in place, one file replaced") << journal << QByteArray() << 1 << Outcome::RolledForward
                                                             << "new" << "layouts/gone.json: removed, finishing";
        QTest::newRow("journal in place, every file replaced") << journal << QByteArray() << 3 << Outcome::RolledForward
                                                               << "new" << ".product-editor-save: removed, the interrupted save";
        QTest::newRow("journal cut short") << journal.left(40) << QByteArray() << 1 << Outcome::Refused << "as found"
                                           << "not valid JSON";
        QTest::newRow("journal of something else") << QByteArray("{\"files\": []}") << QByteArray() << 1
                                                   << Outcome::Refused << "as found" << "not a save journal";
        QTest::newRow("a file aside is not what the save wrote")
            << SaveJournal::ToJson(wrongHash) << QByteArray() << 1 << Outcome::Refused << "as found"
            << "layouts/.a.json.pe-save-bbbbbb does not hold what the save wrote";
    }

    void recover()
    {
        QFETCH(QByteArray, journal);
        QFETCH(QByteArray, pending);
        QFETCH(int, done);
        QFETCH(Outcome, outcome);
        QFETCH(QString, folder);
        QFETCH(QString, told);

        QTemporaryDir dir;
        FolderFiles found = kOld;
        for (const SaveJournalEntry &entry : Entries()) {
            if (!entry.staged.isEmpty())
                found.insert(entry.staged, kNew.value(entry.target));
        }
        if (!journal.isEmpty())
            found.insert(SaveJournal::FileName(), journal);
        if (!pending.isEmpty())
            found.insert("..product-editor-save.pe-save-cccccc", pending);
        for (const SaveJournalEntry &entry : Entries().mid(0, done)) {
            found.remove(entry.staged);
            found.remove(entry.target);
            if (!entry.staged.isEmpty())
                found.insert(entry.target, kNew.value(entry.target));
        }
        WriteFolderFiles(dir.path(), found);

        const FolderRecovery recovery = FolderTransaction::Recover(dir.path());
        QCOMPARE(recovery.outcome, outcome);
        const QString text = recovery.notes.join('\n') + (recovery.refusal ? recovery.refusal->message : QString());
        QVERIFY2(text.contains(told), qPrintable(text));
        QCOMPARE(recovery.refusal ? recovery.refusal->file : QString(),
                 outcome == Outcome::Refused ? dir.filePath(SaveJournal::FileName()) : QString());
        QCOMPARE(ReadFolderFiles(dir.path()), folder == "old" ? kOld : folder == "new" ? kNew : found);
    }
};

QTEST_GUILESS_MAIN(FolderRecoveryTest)
#include "FolderRecoveryTest.moc"
